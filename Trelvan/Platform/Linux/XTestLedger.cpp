#include "Platform/Linux/XTestLedger.hpp"

#include "Platform/Linux/X11.hpp"

namespace trelvan {

void XTestLedger::button(int xButton, bool down) {
    buttons_.set(static_cast<std::size_t>(xButton), down);
    XTestFakeButtonEvent(display_, static_cast<unsigned>(xButton), down, CurrentTime);
}

void XTestLedger::key(int keycode, bool down) {
    keys_.set(static_cast<std::size_t>(keycode), down);
    XTestFakeKeyEvent(display_, static_cast<unsigned>(keycode), down, CurrentTime);
}

void XTestLedger::releaseAll() {
    if (buttons_.none() && keys_.none()) return;
    for (int code = 0; code < 256; ++code) {
        if (buttons_.test(static_cast<std::size_t>(code))) button(code, false);
        if (keys_.test(static_cast<std::size_t>(code))) key(code, false);
    }
    XSync(display_, x11::no);
}

}  // namespace trelvan
