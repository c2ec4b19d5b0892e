#include "Platform/Linux/Poster/X11InputState.hpp"

#include "Platform/Linux/Tap/PointerControl.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Platform/Linux/XTest/XTestDevices.hpp"

#include <chrono>
#include <limits>
#include <memory>
#include <optional>

namespace trelvan {

namespace {

constexpr Seconds motionPause{0.5};

/// How long ago any input came at all, as the server's screen saver counts it; none where it does not.
std::optional<std::chrono::milliseconds> millisecondsSinceAnyInput(Display* display, Window root) {
    int firstEvent = 0;
    int firstError = 0;
    if (!XScreenSaverQueryExtension(display, &firstEvent, &firstError)) return std::nullopt;
    const std::unique_ptr<XScreenSaverInfo, decltype(&XFree)> info(XScreenSaverAllocInfo(), &XFree);
    if (!info || !XScreenSaverQueryInfo(display, root, info.get())) return std::nullopt;
    return std::chrono::milliseconds(info->idle);
}

}  // namespace

X11InputState::X11InputState(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity,
                             Timers& timers, X11EventPoster& poster)
    : pump_(pump),
      modifiers_(modifiers),
      activity_(activity),
      timers_(timers),
      poster_(poster),
      xtestPointer_(xtestDevice(pump.connection().display(), XTestDevice::pointer)),
      xtestKeyboard_(xtestDevice(pump.connection().display(), XTestDevice::keyboard)) {
    noteFormerActivity();
    select(true);
    pump_.add(*this);
}

X11InputState::~X11InputState() {
    pump_.remove(*this);
}

void X11InputState::select(bool withMotion) {
    looksAtMotion_ = withMotion;
    const auto& connection = pump_.connection();
    x11::EventMask events(XIAllMasterDevices, {XI_RawKeyPress, XI_RawKeyRelease, XI_RawButtonPress});
    x11::EventMask all(XIAllMasterDevices,
                       {XI_RawKeyPress, XI_RawKeyRelease, XI_RawButtonPress, XI_RawMotion});
    XISelectEvents(connection.display(), connection.root(), (withMotion ? all : events).get(), 1);
}

void X11InputState::noteFormerActivity() {
    // What kind of event came last before the start nobody tells; that there was none of any kind since is
    // the nearest that can be known.
    const auto& connection = pump_.connection();
    const auto idle = millisecondsSinceAnyInput(connection.display(), connection.root());
    if (!idle) return;
    const auto when = std::chrono::steady_clock::now() - *idle;
    for (const auto type : {EventType::mouseMoved, EventType::leftMouseDown, EventType::rightMouseDown,
                            EventType::otherMouseDown, EventType::scrollWheel, EventType::keyDown})
        activity_.note(type, when);
}

double X11InputState::secondsSinceLast(EventType type) const {
    const auto last = activity_.last(type);
    if (last == ActivityLog::Time{}) return std::numeric_limits<double>::max();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - last).count();
}

bool X11InputState::isOwn(int sourceDevice) const {
    const bool isSynthetic = sourceDevice == xtestPointer_ || sourceDevice == xtestKeyboard_;
    return isSynthetic && (poster_.hasJustPosted() || activity_.hasJustMoved());
}

void X11InputState::handle(_XEvent& event) {
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    if (event.xcookie.data == nullptr) return;
    const auto& raw = *static_cast<const XIRawEvent*>(event.xcookie.data);
    if (isOwn(raw.sourceid)) return;
    switch (event.xcookie.evtype) {
        case XI_RawKeyPress:
            activity_.note(EventType::keyDown);
            break;
        case XI_RawKeyRelease:
            activity_.note(EventType::keyUp);
            poster_.physicalKeyReleased();
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

void X11InputState::sawMotion() {
    if (!looksAtMotion_) return;
    activity_.note(EventType::mouseMoved);
    select(false);
    rearm_ = timers_.once(motionPause, [this] { select(true); });
}

}  // namespace trelvan
