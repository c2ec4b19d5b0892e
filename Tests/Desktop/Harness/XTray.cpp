#include "Desktop/Harness/XTray.hpp"

#include "Desktop/Harness/Wait.hpp"

#include <stdexcept>

namespace trelvan::desktop {
namespace {

constexpr const char* selection = "_NET_SYSTEM_TRAY_S0";
constexpr long requestDock = 0;

}  // namespace

XTray::XTray(const std::string& displayName) : server(displayName) {
    Display* display = server.get();
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = BlackPixel(display, DefaultScreen(display));
    strip = XCreateWindow(display, server.root(), left, 0, 4 * iconSide, iconSide, 0, CopyFromParent,
                          InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
    XSelectInput(display, strip, SubstructureNotifyMask);
    XMapRaised(display, strip);
    XSetSelectionOwner(display, server.atom(selection), strip, CurrentTime);
    if (XGetSelectionOwner(display, server.atom(selection)) != strip)
        throw std::runtime_error("the tray's selection is taken");
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = server.root();
    event.xclient.message_type = server.atom("MANAGER");
    event.xclient.format = 32;
    event.xclient.data.l[0] = CurrentTime;
    event.xclient.data.l[1] = static_cast<long>(server.atom(selection));
    event.xclient.data.l[2] = static_cast<long>(strip);
    XSendEvent(display, server.root(), False, StructureNotifyMask, &event);
    XSync(display, False);
}

XTray::~XTray() {
    // The programs' windows are not to go with the strip.
    for (const Window icon : icons) XReparentWindow(server.get(), icon, server.root(), 0, 0);
    XSync(server.get(), False);
}

void XTray::readPending() {
    Display* display = server.get();
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == DestroyNotify) std::erase(icons, event.xdestroywindow.window);
        if (event.type != ClientMessage ||
            event.xclient.message_type != server.atom("_NET_SYSTEM_TRAY_OPCODE") ||
            event.xclient.data.l[1] != requestDock)
            continue;
        const auto icon = static_cast<Window>(event.xclient.data.l[2]);
        XAddToSaveSet(display, icon);
        XReparentWindow(display, icon, strip, static_cast<int>(icons.size()) * iconSide, 0);
        XResizeWindow(display, icon, iconSide, iconSide);
        XMapWindow(display, icon);
        XSync(display, False);
        icons.push_back(icon);
    }
}

Window XTray::waitForIcon() {
    waitUntil([this] {
        readPending();
        return !icons.empty() && isShown(icons.back());
    });
    return icons.empty() ? 0 : icons.back();
}

bool XTray::isShown(Window icon) const {
    XWindowAttributes attributes;
    return XGetWindowAttributes(server.get(), icon, &attributes) != 0 && attributes.map_state == IsViewable;
}

}  // namespace trelvan::desktop
