#include "Platform/Simulated/SimulatedDesktop.hpp"

#include "Platform/Simulated/SimulatedInput.hpp"
#include "Platform/Simulated/SimulatedServices.hpp"
#include "Platform/Simulated/SimulatedSystem.hpp"

namespace trelvan {

/// The ports, each a small class of its own.
struct SimulatedDesktop::Parts {
    explicit Parts(SimulatedDesktop& desktop)
        : input(desktop),
          tap(desktop),
          poster(desktop, tap, input),
          screens(desktop),
          defaults(desktop),
          workspace(desktop),
          trust(desktop),
          scripts(desktop),
          hotKeys(desktop),
          views(desktop),
          notifications(desktop),
          keyMonitors(desktop),
          audioInput(desktop),
          loginItem(desktop),
          bundleInfo(desktop),
          idleInhibitor(desktop),
          appearance(desktop),
          instance(desktop),
          traceLog(desktop) {}

    SimulatedInputState input;
    SimulatedTap tap;
    SimulatedPoster poster;
    SimulatedScreens screens;
    SimulatedSession session;
    SimulatedDefaults defaults;
    SimulatedWorkspace workspace;
    SimulatedTrust trust;
    SimulatedScripts scripts;
    SimulatedHotKeys hotKeys;
    SimulatedViews views;
    SimulatedNotifications notifications;
    SimulatedKeyMonitors keyMonitors;
    SimulatedMenuInput menuInput;
    SimulatedAudioInput audioInput;
    SimulatedLoginItem loginItem;
    SimulatedBundleInfo bundleInfo;
    SimulatedIdleInhibitor idleInhibitor;
    SimulatedAppearance appearance;
    SimulatedStatusArea statusArea;
    SimulatedInstance instance;
    SimulatedLog traceLog;
};

SimulatedDesktop::SimulatedDesktop(const ActionShortcuts& shortcuts)
    : shortcuts_(shortcuts), parts_(std::make_unique<Parts>(*this)) {
    disk["/Users/me"] = {SimulatedItem::Kind::folder, ""};
    logger.connect(
        &parts_->traceLog, nullptr, [](void* clock) { return static_cast<VirtualTime*>(clock)->now(); },
        &time);
}

SimulatedDesktop::~SimulatedDesktop() = default;

void SimulatedDesktop::settleDefaults() {
    if (unmadeDefaults.empty()) return;
    for (auto& [key, make] : std::exchange(unmadeDefaults, {})) {
        if (auto value = make()) defaults.insert_or_assign(key, std::move(*value));
    }
}

TapAnswer SimulatedDesktop::send(TapEvent event) {
    parts_->input.note(event.type);
    return parts_->tap.send(event);
}

KeyMonitors::LocalAnswer SimulatedDesktop::sendKey(const KeyMonitorEvent& event) {
    parts_->input.note(event.type);
    return parts_->keyMonitors.send(event);
}

void SimulatedDesktop::switchCapsLock(bool on, bool monitored) {
    capsLock = on;
    if (!monitored) return parts_->input.note(EventType::flagsChanged);
    sendKey({.type = EventType::flagsChanged,
             .keyCode = key::capsLock,
             .flags = parts_->input.flags(EventSourceState::hidSystem),
             .characters = {}});
}

void SimulatedDesktop::bringToFront(std::string bundleIdentifier) {
    frontmost = std::move(bundleIdentifier);
    parts_->workspace.frontmostChanged();
}

void SimulatedDesktop::changeLoginItem(LoginItem::Status status) {
    loginStatus = status;
    parts_->loginItem.tellWatchers();
}

void SimulatedDesktop::changeSession(bool locked, bool active) {
    parts_->session.change(locked, active);
}

bool SimulatedDesktop::isFrontmost() const {
    const auto own = bundle.find("CFBundleIdentifier");
    return own != bundle.end() && frontmost == own->second;
}

void SimulatedDesktop::disableTap(EventType why) {
    parts_->tap.disable(why);
}
bool SimulatedDesktop::tapExists() const {
    return parts_->tap.exists();
}
bool SimulatedDesktop::tapEnabled() const {
    return parts_->tap.enabled();
}
int SimulatedDesktop::tapsCreated() const {
    return parts_->tap.created();
}

EventTap& SimulatedDesktop::eventTap() {
    return parts_->tap;
}
EventPoster& SimulatedDesktop::eventPoster() {
    return parts_->poster;
}
InputState& SimulatedDesktop::inputState() {
    return parts_->input;
}
Screens& SimulatedDesktop::screens() {
    return parts_->screens;
}
const SessionState& SimulatedDesktop::sessionState() {
    return parts_->session;
}
UserDefaults& SimulatedDesktop::userDefaults() {
    return parts_->defaults;
}
Workspace& SimulatedDesktop::workspace() {
    return parts_->workspace;
}
AccessibilityTrust& SimulatedDesktop::accessibilityTrust() {
    return parts_->trust;
}
ScriptRunner& SimulatedDesktop::scriptRunner() {
    return parts_->scripts;
}
HotKeyTable& SimulatedDesktop::hotKeyTable() {
    return parts_->hotKeys;
}
SystemViews& SimulatedDesktop::systemViews() {
    return parts_->views;
}
Notifications& SimulatedDesktop::notifications() {
    return parts_->notifications;
}
KeyMonitors& SimulatedDesktop::keyMonitors() {
    return parts_->keyMonitors;
}
SimulatedMenuInput& SimulatedDesktop::menuInput() {
    return parts_->menuInput;
}
AudioInput& SimulatedDesktop::audioInput() {
    return parts_->audioInput;
}
LoginItem& SimulatedDesktop::loginItem() {
    return parts_->loginItem;
}
const BundleInfo& SimulatedDesktop::bundleInfo() {
    return parts_->bundleInfo;
}
const Appearance& SimulatedDesktop::appearance() {
    return parts_->appearance;
}
StatusArea& SimulatedDesktop::statusArea() {
    return parts_->statusArea;
}
SingleInstance& SimulatedDesktop::singleInstance() {
    return parts_->instance;
}

void SimulatedDesktop::showStatusArea() {
    parts_->statusArea.found();
}
bool SimulatedDesktop::startAgain() {
    return parts_->instance.startAgain();
}
void SimulatedDesktop::changeAppearance(bool dark, std::optional<Rgb> accent) {
    prefersDark = dark;
    accentColor = accent;
    parts_->appearance.tellChange();
}
IdleInhibitor& SimulatedDesktop::idleInhibitor() {
    return parts_->idleInhibitor;
}

}  // namespace trelvan
