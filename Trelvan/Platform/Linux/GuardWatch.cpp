#include "Platform/Linux/GuardWatch.hpp"

#include "Platform/Linux/GrabWindow.hpp"
#include "Platform/Linux/HeldRelease.hpp"
#include "Platform/Linux/X11.hpp"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <optional>
#include <utility>

namespace trelvan {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long the main loop may take for its answer, and how often it is asked at most.
constexpr milliseconds patience{500};
/// The server may still be reading the last requests of a program that has ended.
constexpr milliseconds afterTheEnd{100};

HeldPageFile* fileOfProcess = nullptr;

/// With the server everything that was held is gone.
[[noreturn]] int onConnectionLost(Display* /*display*/) {
    fileOfProcess->remove();
    _exit(0);
}

class Watch {
  public:
    Watch(Display* display, HeldPage& page, int owner)
        : display_(display),
          page_(page),
          owner_(owner),
          question_(XInternAtom(display, GrabWindow::question, x11::no)) {}

    /// Returns when the program has ended.
    void run() {
        select(true);
        while (!waitForOwner(std::nullopt)) {
            if (!sawInput()) continue;
            select(false);
            ask();
            // The question stands behind all that came before it: as long as the loop comes on, it is only
            // late.
            do {
                if (waitForOwner(Clock::now() + patience)) return;
            } while (!isAnswered() && comesOn());
            judge();
            XSync(display_, x11::yes);
            select(true);
        }
    }

  private:
    /// Waits for input as well where no time is given. Whether the program has ended.
    [[nodiscard]] bool waitForOwner(std::optional<Clock::time_point> until) {
        std::array<pollfd, 2> ends{pollfd{.fd = owner_, .events = POLLIN, .revents = 0},
                                   pollfd{.fd = ConnectionNumber(display_), .events = POLLIN, .revents = 0}};
        if (!until) {
            if (XPending(display_) == 0) poll(ends.data(), 2, -1);
            return ends[0].revents != 0;
        }
        for (auto now = Clock::now(); now < *until && ends[0].revents == 0; now = Clock::now()) {
            const auto left = std::chrono::ceil<milliseconds>(*until - now);
            poll(ends.data(), 1, static_cast<int>(left.count()));
        }
        return ends[0].revents != 0;
    }

    void select(bool on) {
        x11::EventMask input(XIAllDevices, {XI_RawMotion, XI_RawButtonPress});
        x11::EventMask nothing(XIAllDevices, {});
        XISelectEvents(display_, DefaultRootWindow(display_), on ? input.get() : nothing.get(), 1);
        XFlush(display_);
    }

    [[nodiscard]] bool sawInput() {
        bool seen = false;
        while (XPending(display_) > 0) {
            XEvent event;
            XNextEvent(display_, &event);
            seen = seen || event.type == GenericEvent;
        }
        return seen;
    }

    void ask() {
        window_ = page_.freed == 0 ? page_.grabWindow.load() : 0;
        if (window_ == 0) return;
        ++asked_;
        handled_ = page_.handled;
        down_ = {page_.byPoster.buttons.all(), page_.byPoster.keys.all()};
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window_;
        event.xclient.message_type = question_;
        event.xclient.format = 32;
        event.xclient.data.l[0] = asked_;
        XSendEvent(display_, window_, x11::no, NoEventMask, &event);
        XFlush(display_);
    }

    [[nodiscard]] bool isAnswered() const {
        return window_ == 0 || page_.answered == asked_ || page_.grabWindow != window_;
    }

    /// Whether the main loop has handled anything since this was last asked.
    [[nodiscard]] bool comesOn() {
        const std::uint32_t now = page_.handled;
        return std::exchange(handled_, now) != now;
    }

    void judge() {
        if (isAnswered()) return;
        // From here on the main loop drops what it has not handled yet.
        page_.freed = 1;
        // The posting thread may well be at work: what went down since the question is its own affair.
        const Owed stuck{
            .buttons = page_.byTap.buttons.all() | (page_.byPoster.buttons.all() & down_.buttons),
            .keys = page_.byPoster.keys.all() & down_.keys,
            .lent = page_.lent.all()};
        release(display_, stuck);
        page_.byTap.buttons.clear(stuck.buttons);
        page_.byPoster.buttons.clear(stuck.buttons & down_.buttons);
        page_.byPoster.keys.clear(stuck.keys);
        page_.lent.clear(stuck.lent);
        // The releases first: back on the pointer, a button that is up changes nothing by its own release.
        XUnmapWindow(display_, window_);
        XSync(display_, x11::no);
    }

    struct Down {
        CodeSet buttons;
        CodeSet keys;
    };

    Display* display_;
    HeldPage& page_;
    int owner_;
    Atom question_;
    Window window_ = 0;
    std::uint32_t asked_ = 0;
    std::uint32_t handled_ = 0;
    Down down_;
};

}  // namespace

void watchOver(HeldPageFile& file, int owner) {
    fileOfProcess = &file;
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    XSetIOErrorHandler(&onConnectionLost);
    Display* display = XOpenDisplay(nullptr);
    int opcode = 0;
    int event = 0;
    int error = 0;
    int major = 2;
    int minor = 2;
    if (display == nullptr || !XQueryExtension(display, "XInputExtension", &opcode, &event, &error) ||
        XIQueryVersion(display, &major, &minor) != x11::success ||
        !XTestQueryExtension(display, &event, &error, &major, &minor)) {
        return;
    }
    XTestGrabControl(display, x11::yes);
    Watch(display, file.page(), owner).run();
    const Owed debts = owedBy(file.page());
    if (debts.any()) {
        release(display, debts);
        poll(nullptr, 0, static_cast<int>(afterTheEnd.count()));
        release(display, debts);
    }
    file.remove();
    XCloseDisplay(display);
}

}  // namespace trelvan
