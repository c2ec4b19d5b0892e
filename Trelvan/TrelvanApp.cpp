#include "TrelvanApp.hpp"

#include "Core/ButtonMapper.hpp"

#include <utility>

namespace trelvan {

TrelvanApp::TrelvanApp(Platform& platform, SmartButtonPanels& panels, Logger& logger, UuidSource uuids,
                       EventTap* tap)
    : profileManager(platform.userDefaults(), logger, uuids),
      eventMonitor(std::make_shared<EventMonitor>(
          EventMonitor::Ports{.tap = tap != nullptr ? *tap : platform.eventTap(),
                              .poster = platform.eventPoster(),
                              .screens = platform.screens(),
                              .defaults = platform.userDefaults(),
                              .mainQueue = platform.mainQueue(),
                              .clock = platform.clock(),
                              .session = platform.sessionState()},
          [this]() -> PermissionsManager& { return permissions; }, logger)),
      permissions(platform.accessibilityTrust(), platform.scriptRunner(), logger),
      loginManager(platform.loginItem(), logger),
      keepAwakeManager({.input = platform.inputState(),
                        .poster = platform.eventPoster(),
                        .screens = platform.screens(),
                        .defaults = platform.userDefaults(),
                        .clock = platform.clock(),
                        .mainQueue = platform.mainQueue(),
                        .timers = platform.timers(),
                        .inhibitor = platform.idleInhibitor()}),
      smartButtonController(std::make_shared<SmartButtonController>(
          SmartButtonController::Ports{.screens = platform.screens(),
                                       .poster = platform.eventPoster(),
                                       .workspace = platform.workspace(),
                                       .background = platform.backgroundQueue(),
                                       .mainQueue = platform.mainQueue(),
                                       .session = platform.sessionState()},
          panels, logger)),
      notificationPoster({.center = platform.notifications(),
                          .bundle = platform.bundleInfo(),
                          .defaults = platform.userDefaults(),
                          .mainQueue = platform.mainQueue()},
                         std::move(uuids)),
      capsLockNotifier({.input = platform.inputState(),
                        .monitors = platform.keyMonitors(),
                        .timers = platform.timers(),
                        .defaults = platform.userDefaults()},
                       notificationPoster),
      micMuteNotifier(
          {.audio = platform.audioInput(), .timers = platform.timers(), .defaults = platform.userDefaults()},
          notificationPoster),
      missingViewNotifier(platform.systemViews(), notificationPoster),
      monitorSwitch(*eventMonitor, platform.clock()),
      platform_(platform),
      logger_(logger),
      alive_(std::make_shared<TrelvanApp*>(this)) {
    platform_.notifications().setDelegate(&notificationDelegate_);
    platform_.mainQueue().after(notifierDelay, [weak = std::weak_ptr(alive_)] {
        if (const auto app = weak.lock()) (*app)->startNotifiers();
    });
}

TrelvanApp::~TrelvanApp() {
    platform_.notifications().setDelegate(nullptr);
    permissionTimer_.reset();
    permissionObserver_.reset();
    eventMonitor->stop();
    eventMonitor->onButtonEvent = nullptr;
    smartButtonController->onMissing = nullptr;
}

void TrelvanApp::appear() {
    if (std::exchange(appeared_, true)) return;
    setupMonitor();
    watchPermission();
}

void TrelvanApp::startNotifiers() {
    capsLockNotifier.start();
    micMuteNotifier.start();
}

void TrelvanApp::setupMonitor() {
    startNotifiers();
    const auto mapper = std::make_shared<ButtonMapper>(
        ButtonMapper::Ports{.input = platform_.inputState(),
                            .poster = platform_.eventPoster(),
                            .background = platform_.backgroundQueue(),
                            .mainQueue = platform_.mainQueue(),
                            .screens = platform_.screens(),
                            .workspace = platform_.workspace(),
                            .hotKeys = platform_.hotKeyTable(),
                            .views = platform_.systemViews(),
                            .scripts = platform_.scriptRunner(),
                            .shortcuts = platform_.actionShortcuts(),
                            .session = platform_.sessionState()},
        [this] { return profileManager.activeSnapshot(); }, smartButtonController, logger_);
    eventMonitor->onButtonEvent = [mapper](std::int64_t buttonNumber, EventFlags flags) {
        return mapper->execute(buttonNumber, flags);
    };
    smartButtonController->onMissing = [this](const SmartButtonApp& app) {
        notificationPoster.announce("smart-button-missing",
                                    "Smart Button: " + app.name + " was not found (" + app.path + ")",
                                    "Smart Button: no se encontró " + app.name + " (" + app.path + ")");
    };
    permissions.refresh();
    if (permissions.accessibilityGranted) eventMonitor->start();
}

void TrelvanApp::watchPermission() {
    permissionObserver_ = permissions.accessibilityGranted.observe([this](bool granted) {
        if (!granted || permissions.accessibilityGranted) return;
        // Observers are told before the change; the start looks at the permission itself.
        platform_.mainQueue().async([weak = std::weak_ptr(alive_)] {
            if (const auto app = weak.lock()) (*app)->startIfPermitted();
        });
    });
    permissionTimer_ = platform_.timers().every(permissionInterval, [this] {
        permissions.refresh();
        startIfPermitted();
    });
}

void TrelvanApp::startIfPermitted() {
    monitorSwitch.refresh();
    if (permissions.accessibilityGranted && !eventMonitor->isRunning && !monitorSwitch.isOff)
        eventMonitor->start();
}

}  // namespace trelvan
