#include "Platform/Linux/XConnection.hpp"

#include "Platform/Linux/X11.hpp"

#include <cstdlib>

namespace trelvan {

std::variant<std::unique_ptr<XConnection>, std::string> XConnection::open() {
    const char* name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') return "no display: DISPLAY is not set";
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) return "cannot open display \"" + std::string(name) + "\"";
    auto connection = std::unique_ptr<XConnection>(new XConnection(display));
    if (auto missing = connection->queryExtensions(); !missing.empty()) return missing;
    return connection;
}

XConnection::~XConnection() {
    XCloseDisplay(display_);
}

std::string XConnection::queryExtensions() {
    int firstEvent = 0;
    int firstError = 0;
    if (!XQueryExtension(display_, "XInputExtension", &inputOpcode_, &firstEvent, &firstError)) {
        return "X server lacks the XInputExtension extension";
    }
    // 2.1 is what delivers raw events to the holder of a grab; 2.2 is the oldest that is asked for by name.
    int major = 2;
    int minor = 2;
    if (XIQueryVersion(display_, &major, &minor) != x11::success || major * 100 + minor < 202) {
        return "X server lacks the XInputExtension extension in version 2.2 or later";
    }
    int event = 0;
    int error = 0;
    if (!XTestQueryExtension(display_, &event, &error, &major, &minor)) {
        return "X server lacks the XTEST extension";
    }
    int opcode = 0;
    major = XkbMajorVersion;
    minor = XkbMinorVersion;
    if (!XkbQueryExtension(display_, &opcode, &keyboardEventBase_, &error, &major, &minor)) {
        return "X server lacks the XKEYBOARD extension";
    }
    return {};
}

unsigned long XConnection::root() const {
    return DefaultRootWindow(display_);
}

int XConnection::descriptor() const {
    return ConnectionNumber(display_);
}

unsigned long XConnection::atom(const char* name) const {
    return XInternAtom(display_, name, x11::no);
}

}  // namespace trelvan
