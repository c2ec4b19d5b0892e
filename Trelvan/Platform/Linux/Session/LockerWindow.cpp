#include "Platform/Linux/Session/LockerWindow.hpp"

#include "Platform/Linux/X11/RootProperties.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

namespace trelvan {

namespace {

/// After an event that a locker may have caused; some take the keyboard only when an open menu is closed.
constexpr std::array lookTimes{Seconds{0.02}, Seconds{0.1}, Seconds{0.5}, Seconds{2.0}};

/// Their usual names are taken away, for Qt has them too.
constexpr int focusIn = 9;
constexpr int focusOut = 10;

constexpr const char* saverStatus = "_SCREENSAVER_STATUS";

/// The same for every client of a server; Xlib keeps it to itself.
unsigned long resourceMask() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const unsigned long mask =
        xcb_connection_has_error(connection) == 0 ? xcb_get_setup(connection)->resource_id_mask : 0x1FFFFF;
    xcb_disconnect(connection);
    return mask;
}

bool isOwn(Window window) {
    return std::ranges::any_of(QGuiApplication::topLevelWindows(), [window](const QWindow* own) {
        return own->handle() != nullptr && own->winId() == window;
    });
}

/// The root's children, the lowest first.
std::vector<Window> childrenOfRoot(Display* display) {
    Window root = x11::none;
    Window parent = x11::none;
    Window* children = nullptr;
    unsigned count = 0;
    std::vector<Window> result;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) != 0)
        result.assign(children, children + count);
    if (children != nullptr) XFree(children);
    return result;
}

}  // namespace

LockerWindow::LockerWindow(std::unique_ptr<XConnection> connection, Timers& timers,
                           std::function<void()> changed)
    : connection_(std::move(connection)),
      timers_(timers),
      changed_(std::move(changed)),
      pump_(std::make_unique<XEventPump>(*connection_)),
      idMask_(resourceMask()) {
    Display* display = connection_->display();
    XSetWindowAttributes attributes{};
    attributes.override_redirect = x11::yes;
    probe_ = XCreateWindow(display, connection_->root(), -1, -1, 1, 1, 0, 0, InputOnly, CopyFromParent,
                           CWOverrideRedirect, &attributes);
    XSelectInput(display, connection_->root(),
                 SubstructureNotifyMask | StructureNotifyMask | FocusChangeMask | PropertyChangeMask);
    XWindowAttributes root;
    XGetWindowAttributes(display, connection_->root(), &root);
    width_ = root.width;
    height_ = root.height;
    pump_->add(*this);
    readWindows();
    readSaver();
    look();
}

LockerWindow::~LockerWindow() {
    pump_->remove(*this);
}

void LockerWindow::readWindows() {
    for (const Window window : childrenOfRoot(connection_->display())) consider(window);
}

void LockerWindow::readSaver() {
    // First what it does: nothing, or the name of one of its states.
    isSaverOn_ = RootProperties(*connection_).number(saverStatus).value_or(0) != 0;
}

void LockerWindow::handle(_XEvent& event) {
    switch (event.type) {
        case MapNotify:
            if (event.xmap.override_redirect == 0) return;
            consider(event.xmap.window);
            break;
        case ConfigureNotify:
            if (!noteSize(event)) return;
            break;
        case UnmapNotify:
            forget(event.xunmap.window);
            break;
        case DestroyNotify:
            forget(event.xdestroywindow.window);
            break;
        case focusIn:
        case focusOut:
            break;
        case PropertyNotify:
            if (event.xproperty.atom != connection_->atom(saverStatus)) return;
            readSaver();
            break;
        default:
            return;
    }
    if (!covering_.empty() || isSaverOn_ || isLocked() != wasLocked_) look();
}

bool LockerWindow::noteSize(const _XEvent& event) {
    const auto& change = event.xconfigure;
    if (change.window == connection_->root()) {
        width_ = change.width;
        height_ = change.height;
        readWindows();
        return true;
    }
    if (change.override_redirect == 0) return false;
    // Menus and messages come in numbers; only what is as large as the screen is looked at.
    const bool isKnown = std::ranges::find(covering_, change.window) != covering_.end();
    if (!isKnown && (change.width < width_ || change.height < height_)) return false;
    consider(change.window);
    return true;
}

void LockerWindow::consider(unsigned long window) {
    const bool isKnown = std::ranges::find(covering_, window) != covering_.end();
    if (isOwn(window)) return;
    if (!isCovering(window) || isManagers(window)) {
        if (isKnown) forget(window);
        return;
    }
    if (isKnown) return;
    covering_.push_back(window);
    const XErrorScope scope(connection_->display());
    // A grab on the window itself is seen there only.
    XSelectInput(connection_->display(), window, FocusChangeMask);
}

void LockerWindow::forget(unsigned long window) {
    std::erase(covering_, window);
    if (locker_ == window) locker_ = 0;
}

void LockerWindow::look() {
    decide();
    again_.reset();
    if (mayBecomeLocked()) lookAgain(0);
}

void LockerWindow::lookAgain(std::size_t time) {
    again_ = timers_.once(lookTimes[time], [this, time] {
        // The timer must not go while it calls.
        const auto timer = std::move(again_);
        decide();
        if (time + 1 < lookTimes.size() && mayBecomeLocked()) lookAgain(time + 1);
    });
}

void LockerWindow::decide() {
    const bool isHeld = (!covering_.empty() || isSaverOn_) && isKeyboardHeld();
    // What XScreenSaver wrote stays behind when it is killed.
    saverLocks_ = isHeld && isSaverOn_;
    if (!isHeld) {
        locker_ = 0;
    } else if (locker_ == 0) {
        const auto found = std::ranges::find_if(covering_, [this](unsigned long window) {
            return isOnTop(window) && !hasManagedWindows(clientOf(window));
        });
        if (found != covering_.end()) locker_ = *found;
    }
    if (std::exchange(wasLocked_, isLocked()) != isLocked()) changed_();
}

bool LockerWindow::isCovering(unsigned long window) const {
    Display* display = connection_->display();
    // The window may be gone by now.
    const XErrorScope scope(display);
    XWindowAttributes seen;
    if (XGetWindowAttributes(display, window, &seen) == 0 || seen.override_redirect == 0) return false;
    return seen.map_state == IsViewable && seen.x <= 0 && seen.y <= 0 && seen.x + seen.width >= width_ &&
           seen.y + seen.height >= height_;
}

bool LockerWindow::isManagers(unsigned long window) const {
    const unsigned long client = clientOf(window);
    // The server's own, such as the window that compositing draws on.
    if (client == 0) return true;
    const auto manager = RootProperties(*connection_).number("_NET_SUPPORTING_WM_CHECK");
    return manager && clientOf(*manager) == client;
}

bool LockerWindow::hasManagedWindows(unsigned long client) const {
    const auto managed = RootProperties(*connection_).numbers("_NET_CLIENT_LIST");
    return std::ranges::any_of(managed, [&](unsigned long window) { return clientOf(window) == client; });
}

bool LockerWindow::isOnTop(unsigned long window) const {
    Display* display = connection_->display();
    const XErrorScope scope(display);
    const auto children = childrenOfRoot(display);
    for (auto above = children.rbegin(); above != children.rend() && *above != window; ++above) {
        const unsigned long client = clientOf(*above);
        if (client == 0 || client == clientOf(window) || isOwn(*above)) continue;
        XWindowAttributes attributes;
        if (XGetWindowAttributes(display, *above, &attributes) == 0) continue;
        if (attributes.map_state == IsViewable && attributes.c_class == InputOutput) return false;
    }
    return true;
}

bool LockerWindow::isKeyboardHeld() const {
    Display* display = connection_->display();
    const int answer = XGrabKeyboard(display, probe_, x11::no, GrabModeAsync, GrabModeAsync, CurrentTime);
    // A server that looks at the window last would have let go of nothing of anybody's.
    if (answer == GrabSuccess) XUngrabKeyboard(display, CurrentTime);
    return answer == AlreadyGrabbed;
}

}  // namespace trelvan
