#include "Platform/Linux/Tap/EscapeHold.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

EscapeHold::EscapeHold(XEventPump& pump, Timers& timers, std::function<void()> onHeld)
    : pump_(pump), timers_(timers), onHeld_(std::move(onHeld)) {
    pump_.add(*this);
}

EscapeHold::~EscapeHold() {
    pump_.remove(*this);
}

void EscapeHold::handle(_XEvent& event) {
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    const int type = event.xcookie.evtype;
    if (event.xcookie.data == nullptr || (type != XI_RawKeyPress && type != XI_RawKeyRelease)) return;
    // Any other key ends the hold as well: then it is a combination.
    timer_.reset();
    const auto keycode = static_cast<::KeyCode>(static_cast<const XIRawEvent*>(event.xcookie.data)->detail);
    if (type != XI_RawKeyPress) return;
    if (XkbKeycodeToKeysym(pump_.connection().display(), keycode, 0, 0) != XK_Escape) return;
    timer_ = timers_.once(length, onHeld_);
}

}  // namespace trelvan
