#include "Platform/Linux/Guard/GrabWindow.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

namespace trelvan {

GrabWindow::GrabWindow(XConnection& connection, PressedState& page)
    : connection_(connection), page_(page), questionAtom_(connection.atom(question)) {}

void GrabWindow::show() {
    Display* display = connection_.display();
    if (window_ == 0) {
        XSetWindowAttributes attributes{};
        attributes.override_redirect = x11::yes;
        attributes.event_mask = StructureNotifyMask;
        window_ = XCreateWindow(display, connection_.root(), -1, -1, 1, 1, 0, 0, InputOnly, CopyFromParent,
                                CWOverrideRedirect | CWEventMask, &attributes);
    }
    shownSince_ = NextRequest(display);
    XMapWindow(display, window_);
    page_.grabWindow = static_cast<std::uint32_t>(window_);
}

void GrabWindow::close() {
    page_.grabWindow = 0;
    if (window_ == 0) return;
    // Somebody else may have destroyed it.
    const XErrorScope scope(connection_.display());
    XDestroyWindow(connection_.display(), window_);
    window_ = 0;
}

bool GrabWindow::isLost(const _XEvent& event) {
    if (window_ == 0) return false;
    if (event.type == DestroyNotify && event.xdestroywindow.window == window_) {
        window_ = 0;
        return true;
    }
    return event.type == UnmapNotify && event.xunmap.window == window_ && event.xunmap.serial >= shownSince_;
}

void GrabWindow::answer(const _XEvent& event) {
    if (event.type != ClientMessage || event.xclient.window != window_) return;
    if (event.xclient.message_type != questionAtom_) return;
    page_.answered = static_cast<std::uint32_t>(event.xclient.data.l[0]);
}

}  // namespace trelvan
