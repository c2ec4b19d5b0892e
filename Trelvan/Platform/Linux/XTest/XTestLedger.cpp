#include "Platform/Linux/XTest/XTestLedger.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

void XTestLedger::button(int xButton, bool down) {
    if (down) pressed_.buttons.set(xButton, true);
    XTestFakeButtonEvent(display_, static_cast<unsigned>(xButton), down, CurrentTime);
    if (down) return;
    // The account may be closed only when nothing of it is left in this process.
    XFlush(display_);
    pressed_.buttons.set(xButton, false);
}

void XTestLedger::key(int keycode, bool down) {
    if (down) pressed_.keys.set(keycode, true);
    XTestFakeKeyEvent(display_, static_cast<unsigned>(keycode), down, CurrentTime);
    if (down) return;
    XFlush(display_);
    pressed_.keys.set(keycode, false);
}

void XTestLedger::releaseAll() {
    const CodeSet buttons = pressed_.buttons.all();
    const CodeSet keys = pressed_.keys.all();
    if (buttons.none() && keys.none()) return;
    for (int code = 0; code < 256; ++code) {
        if (buttons.test(static_cast<std::size_t>(code))) button(code, false);
        if (keys.test(static_cast<std::size_t>(code))) key(code, false);
    }
    XSync(display_, x11::no);
}

}  // namespace trelvan
