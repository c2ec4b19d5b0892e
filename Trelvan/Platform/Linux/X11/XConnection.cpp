#include "Platform/Linux/X11/XConnection.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <cstdlib>
#include <string>

namespace trelvan {

std::variant<std::unique_ptr<XConnection>, PlatformFailure> XConnection::open() {
    const char* name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') {
        return PlatformFailure{"no display: DISPLAY is not set", "no hay pantalla: DISPLAY no está definida"};
    }
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        const std::string quoted = "\"" + std::string(name) + "\"";
        return PlatformFailure{"cannot open display " + quoted, "no se puede abrir la pantalla " + quoted};
    }
    auto connection = std::unique_ptr<XConnection>(new XConnection(display));
    if (const std::string missing(connection->queryExtensions()); !missing.empty()) {
        return PlatformFailure{"the X server lacks the extension " + missing,
                               "al servidor X le falta la extensión " + missing};
    }
    return connection;
}

XConnection::~XConnection() {
    XCloseDisplay(display_);
}

std::string_view XConnection::queryExtensions() {
    int firstEvent = 0;
    int firstError = 0;
    if (!XQueryExtension(display_, "XInputExtension", &inputOpcode_, &firstEvent, &firstError)) {
        return "XInputExtension";
    }
    XErrorScope::nameExtension(inputOpcode_, "XInputExtension");
    // 2.1 is what delivers raw events to the holder of a grab; 2.2 is the oldest that is asked for by name.
    int major = 2;
    int minor = 2;
    if (XIQueryVersion(display_, &major, &minor) != x11::success || major * 100 + minor < 202) {
        return "XInputExtension 2.2";
    }
    int event = 0;
    int error = 0;
    if (!XTestQueryExtension(display_, &event, &error, &major, &minor)) {
        return "XTEST";
    }
    // A window manager may hold the whole server while the user drags a window, and waits for the very
    // movements that this program passes on.
    XTestGrabControl(display_, x11::yes);
    int opcode = 0;
    if (XQueryExtension(display_, "XTEST", &opcode, &event, &error))
        XErrorScope::nameExtension(opcode, "XTEST");
    major = XkbMajorVersion;
    minor = XkbMinorVersion;
    if (!XkbQueryExtension(display_, &opcode, &keyboardEventBase_, &error, &major, &minor)) {
        return "XKEYBOARD";
    }
    XErrorScope::nameExtension(opcode, "XKEYBOARD");
    return {};
}

unsigned long XConnection::root() const {
    return DefaultRootWindow(display_);
}

int XConnection::descriptor() const {
    return ConnectionNumber(display_);
}

void XConnection::suspendScreenSaver(bool on) const {
    int event = 0;
    int error = 0;
    int major = 0;
    int minor = 0;
    if (!XScreenSaverQueryExtension(display_, &event, &error)) return;
    // 1.1 is the first that can.
    if (!XScreenSaverQueryVersion(display_, &major, &minor) || major * 100 + minor < 101) return;
    XScreenSaverSuspend(display_, on ? x11::yes : x11::no);
    XFlush(display_);
}

unsigned long XConnection::atom(const char* name) const {
    return XInternAtom(display_, name, x11::no);
}

}  // namespace trelvan
