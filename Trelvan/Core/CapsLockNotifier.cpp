#include "Core/CapsLockNotifier.hpp"

#include "Core/Settings/Setting.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"

namespace trelvan {

namespace {

constexpr std::string_view notificationKind = "caps-lock";

constexpr bool isCapsLockOn(EventFlags flags) {
    return (flags & flag::alphaShift) != 0;
}

}  // namespace

void CapsLockNotifier::start() {
    // The timer counts too: a system that refuses both monitors must not make a second start announce anew.
    if (localMonitor_ || globalMonitor_ || pollingTimer_) return;
    poster_.requestAuthorization();
    lastCapsState_ = isCapsLockOn(ports_.input.flags(EventSourceState::hidSystem));
    constexpr std::uint64_t mask = maskBit(EventType::flagsChanged);
    localMonitor_ = ports_.monitors.addLocal(mask, [this](const KeyMonitorEvent& event) {
        handle(event);
        return KeyMonitors::LocalAnswer::passOn;
    });
    globalMonitor_ = ports_.monitors.addGlobal(mask, [this](const KeyMonitorEvent& event) { handle(event); });
    pollingTimer_ = ports_.timers.every(pollInterval, [this] { pollCapsLockState(); });
}

void CapsLockNotifier::handle(const KeyMonitorEvent& event) {
    noteState(event.flags);
}

void CapsLockNotifier::pollCapsLockState() {
    noteState(ports_.input.flags(EventSourceState::hidSystem));
}

void CapsLockNotifier::noteState(EventFlags flags) {
    const bool isOn = isCapsLockOn(flags);
    if (lastCapsState_ == isOn) return;
    // Also while nothing is to be posted, so that what is switched on later announces no old change.
    lastCapsState_ = isOn;
    if (!storedValue<bool>(setting::row("notifyCapsLock"), ports_.defaults)) return;
    if (isOn) {
        poster_.announce(notificationKind, "Caps On", "Caps activado");
    } else {
        poster_.announce(notificationKind, "Caps Off", "Caps desactivado");
    }
}

}  // namespace trelvan
