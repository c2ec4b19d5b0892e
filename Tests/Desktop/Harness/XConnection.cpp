#include "Desktop/Harness/XConnection.hpp"

#include <stdexcept>

namespace trelvan::desktop {

XConnection::XConnection(const std::string& displayName) : connection(XOpenDisplay(displayName.c_str())) {
    if (connection == nullptr) throw std::runtime_error("no X server at " + displayName);
}

XConnection::~XConnection() {
    XCloseDisplay(connection);
}

std::vector<long> XConnection::property(Window window, const char* name) const {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* bytes = nullptr;
    std::vector<long> values;
    if (XGetWindowProperty(connection, window, atom(name), 0, 1024, False, AnyPropertyType, &type, &format,
                           &count, &rest, &bytes) != Success) {
        return values;
    }
    if (format == 32) {
        const auto* numbers = reinterpret_cast<const long*>(bytes);  // Xlib hands 32-bit items out as long
        values.assign(numbers, numbers + count);
    }
    if (bytes != nullptr) XFree(bytes);
    return values;
}

void XConnection::activate(Window window) const {
    constexpr long fromAPager = 2;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = atom("_NET_ACTIVE_WINDOW");
    event.xclient.format = 32;
    event.xclient.data.l[0] = fromAPager;
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection, root(), False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(connection);
}

void XConnection::setText(Window window, const char* name, const std::string& text) const {
    XChangeProperty(connection, window, atom(name), atom("UTF8_STRING"), 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    XSync(connection, False);
}

void XConnection::sendToRoot(const char* message, long value) const {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = root();
    event.xclient.message_type = atom(message);
    event.xclient.format = 32;
    event.xclient.data.l[0] = value;
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection, root(), False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(connection);
}

}  // namespace trelvan::desktop
