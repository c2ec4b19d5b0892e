#include "Platform/Linux/X11/DisplayOwner.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <unistd.h>

#include <memory>

namespace trelvan {

namespace {

constexpr const char* processProperty = "_NET_WM_PID";

long processOf(const XConnection& connection, Window window) {
    // The other program may end at any moment.
    const XErrorScope scope(connection.display());
    Atom type = x11::none;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    const int result = XGetWindowProperty(connection.display(), window, connection.atom(processProperty), 0,
                                          1, x11::no, XA_CARDINAL, &type, &format, &count, &rest, &data);
    const std::unique_ptr<unsigned char, decltype(&XFree)> owner(data, &XFree);
    if (result != x11::success || format != 32 || count != 1 || data == nullptr) return 0;
    return *reinterpret_cast<const long*>(data);
}

/// Nobody else can become the owner between the question and the answer.
class HeldServer {
  public:
    explicit HeldServer(Display* display) : display_(display) { XGrabServer(display); }
    HeldServer(const HeldServer&) = delete;
    HeldServer& operator=(const HeldServer&) = delete;
    ~HeldServer() {
        XUngrabServer(display_);
        XFlush(display_);
    }

  private:
    Display* display_;
};

}  // namespace

std::optional<DisplayOwner::Other> DisplayOwner::take(const XConnection& connection) {
    Display* display = connection.display();
    const Atom atom = connection.atom(selection);
    const HeldServer held(display);
    if (const Window other = XGetSelectionOwner(display, atom); other != x11::none)
        return Other{processOf(connection, other)};
    const Window window =
        XCreateWindow(display, connection.root(), -1, -1, 1, 1, 0, 0, InputOnly, CopyFromParent, 0, nullptr);
    const long process = getpid();
    XChangeProperty(display, window, connection.atom(processProperty), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&process), 1);
    XSetSelectionOwner(display, atom, window, CurrentTime);
    return std::nullopt;
}

}  // namespace trelvan
