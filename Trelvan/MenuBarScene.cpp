#include "MenuBarScene.hpp"

#include "UI/SmartButtonWindows.hpp"

#include <ctime>
#include <utility>

namespace trelvan {

namespace {

std::string timeOfDay(MonitorSwitch::Date moment) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    char text[8]{};
    const std::tm* local = std::localtime(&seconds);
    if (local != nullptr) std::strftime(text, sizeof text, "%H:%M", local);
    return text;
}

}  // namespace

MenuBarScene::MenuBarScene(TrelvanApp& app, Platform& platform, std::function<void()> quit)
    : app_(app),
      platform_(platform),
      quit_(std::move(quit)),
      settings_(platform.userDefaults()),
      window_(services()),
      refreshTask_(platform.mainQueue().makeCoalescedTask([this] { refresh(); })) {
    app_.smartButtonController->editorContentProvider = [this] {
        editorState_.selectedTab = SettingsTab::smartButton;
        return std::make_unique<SmartButtonWindows::WidgetContent>(
            std::make_unique<SettingsView>(services(), editorState_, standardPanels(), false));
    };
    // Observers are told before the change.
    const auto soon = [this](const auto& /*newValue*/) { refreshTask_->request(); };
    subscriptions_.push_back(app_.eventMonitor->isRunning.observe(soon));
    subscriptions_.push_back(app_.monitorSwitch.isOff.observe(soon));
    subscriptions_.push_back(app_.profileManager.profiles.observe(soon));
    subscriptions_.push_back(app_.profileManager.activeProfileID.observe(soon));
    subscriptions_.push_back(app_.keepAwakeManager.isEnabled.observe(soon));
    subscriptions_.push_back(settings_.observe([this] { refreshTask_->request(); }));
    subscriptions_.push_back(platform_.sessionState().observe([this](bool usable) {
        // An open menu holds keyboard and pointer, which the locker wants.
        if (!usable && item_) item_->closeMenu();
    }));
}

MenuBarScene::~MenuBarScene() {
    app_.smartButtonController->editorContentProvider = nullptr;
}

SettingsServices MenuBarScene::services() {
    return {.monitor = *app_.eventMonitor,
            .monitorSwitch = app_.monitorSwitch,
            .profiles = app_.profileManager,
            .permissions = app_.permissions,
            .login = app_.loginManager,
            .keepAwake = app_.keepAwakeManager,
            .smartButton = *app_.smartButtonController,
            .settings = settings_,
            .bundle = platform_.bundleInfo(),
            .appearance = platform_.appearance(),
            .clock = platform_.clock(),
            .timers = platform_.timers(),
            .mainQueue = platform_.mainQueue(),
            .openAccessibilitySettings = [this]() -> std::optional<UiText> {
                if (const auto advice = platform_.accessibilityTrust().advice())
                    return UiText(TextPair{advice->english, advice->spanish});
                platform_.workspace().openUrl(PermissionsManager::accessibilityPrefsURL);
                return std::nullopt;
            }};
}

SingleInstance::Reach MenuBarScene::start() {
    if (platform_.statusArea().isThere()) {
        showItem();
    } else {
        subscriptions_.push_back(platform_.statusArea().whenThere([this] { showItem(); }));
    }
    app_.appear();
    return platform_.singleInstance().serve([this] { showWindow(); });
}

void MenuBarScene::showItem() {
    if (item_) return;
    item_ = std::make_unique<MenuBarItem>();
    item_->onClick = [this](const QRect& place) { window_.toggle(place); };
    item_->onChoose = [this](const MenuEntry& entry) { choose(entry); };
    refresh();
}

void MenuBarScene::refresh() {
    if (!item_) return;
    item_->setMenu(menuEntries(menuState()), settings_.language());
    item_->show(menuBarLabel(app_.eventMonitor->isRunning, platform_.bundleInfo()));
}

MenuState MenuBarScene::menuState() const {
    MenuState state{.language = settings_.language(),
                    .isRunning = app_.eventMonitor->isRunning,
                    .pausedUntil = std::nullopt,
                    .profiles = {},
                    .activeProfile = app_.profileManager.activeProfile().id,
                    .keepsAwake = app_.keepAwakeManager.isEnabled};
    if (const auto until = app_.monitorSwitch.pausedUntil()) state.pausedUntil = timeOfDay(*until);
    for (const TrackballProfile& profile : app_.profileManager.profiles.get())
        state.profiles.emplace_back(profile.id, profile.name);
    return state;
}

void MenuBarScene::choose(const MenuEntry& entry) {
    switch (entry.command) {
        case MenuCommand::open:
            return window_.open();
        case MenuCommand::start:
            return app_.monitorSwitch.start();
        case MenuCommand::stop:
            return app_.monitorSwitch.stop();
        case MenuCommand::pause:
            return app_.monitorSwitch.pauseFor(pauseLength);
        case MenuCommand::profile:
            for (const TrackballProfile& profile : app_.profileManager.profiles.get()) {
                if (profile.id == entry.profile)
                    return app_.profileManager.setActive(TrackballProfile(profile));
            }
            return;
        case MenuCommand::keepAwake:
            return app_.keepAwakeManager.setEnabled(!app_.keepAwakeManager.isEnabled);
        case MenuCommand::quit:
            return quit_();
    }
}

}  // namespace trelvan
