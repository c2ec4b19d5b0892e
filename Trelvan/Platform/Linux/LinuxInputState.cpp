#include "Platform/Linux/LinuxInputState.hpp"

#include "Platform/Linux/ButtonNumbers.hpp"
#include "Platform/Linux/X11.hpp"

#include <limits>
#include <memory>

namespace trelvan {

namespace {

constexpr Seconds motionPause{0.5};

/// Seconds since any input at all, as the server's screen saver counts them; very large where it does not.
double secondsSinceAnyInput(Display* display, Window root) {
    int firstEvent = 0;
    int firstError = 0;
    if (!XScreenSaverQueryExtension(display, &firstEvent, &firstError)) {
        return std::numeric_limits<double>::max();
    }
    const std::unique_ptr<XScreenSaverInfo, decltype(&XFree)> info(XScreenSaverAllocInfo(), &XFree);
    if (!info || !XScreenSaverQueryInfo(display, root, info.get())) return std::numeric_limits<double>::max();
    return static_cast<double>(info->idle) / 1000.0;
}

}  // namespace

LinuxInputState::LinuxInputState(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity,
                                 Timers& timers, std::function<void()> onKeyReleased)
    : pump_(pump),
      modifiers_(modifiers),
      activity_(activity),
      timers_(timers),
      onKeyReleased_(std::move(onKeyReleased)) {
    select(true);
    pump_.add(*this);
}

LinuxInputState::~LinuxInputState() {
    pump_.remove(*this);
}

void LinuxInputState::select(bool withMotion) {
    looksAtMotion_ = withMotion;
    const auto& connection = pump_.connection();
    x11::EventMask events(XIAllMasterDevices, {XI_RawKeyPress, XI_RawKeyRelease, XI_RawButtonPress});
    x11::EventMask all(XIAllMasterDevices,
                       {XI_RawKeyPress, XI_RawKeyRelease, XI_RawButtonPress, XI_RawMotion});
    XISelectEvents(connection.display(), connection.root(), (withMotion ? all : events).get(), 1);
}

double LinuxInputState::secondsSinceLast(EventType type) const {
    const auto last = activity_.last(type);
    // Nothing seen since the start: nothing of any kind is the nearest that can be known.
    if (last == ActivityLog::Time{}) {
        return secondsSinceAnyInput(pump_.connection().display(), pump_.connection().root());
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - last).count();
}

void LinuxInputState::handle(_XEvent& event) {
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    if (event.xcookie.data == nullptr) return;
    const auto& raw = *static_cast<const XIRawEvent*>(event.xcookie.data);
    switch (event.xcookie.evtype) {
        case XI_RawKeyPress:
            activity_.note(EventType::keyDown);
            break;
        case XI_RawKeyRelease:
            activity_.note(EventType::keyUp);
            onKeyReleased_();
            break;
        case XI_RawButtonPress:
            if (const auto number = quartzButton(raw.detail)) {
                activity_.note(buttonType(*number, true));
            } else {
                activity_.note(EventType::scrollWheel);
            }
            break;
        case XI_RawMotion:
            sawMotion();
            break;
        default:
            break;
    }
}

void LinuxInputState::sawMotion() {
    if (!looksAtMotion_) return;
    activity_.note(EventType::mouseMoved);
    select(false);
    rearm_ = timers_.once(motionPause, [this] { select(true); });
}

}  // namespace trelvan
