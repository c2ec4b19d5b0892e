#include "Platform/Linux/Guard/GuardWatch.hpp"

#include "Platform/Linux/Guard/GrabWindow.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/XTest/PendingReleases.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace trelvan {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long the main loop may take for its answer, and how often it is asked at most.
constexpr milliseconds timeout{500};
/// What an idle main loop takes for its answer at most, and how often it is looked for meanwhile.
constexpr milliseconds moment{50};
constexpr milliseconds glance{5};
/// The server may still be reading the last requests of a program that has ended.
constexpr milliseconds afterTheEnd{100};
/// A program that lost the server as this process did ends within this.
constexpr milliseconds endOfBoth{2000};

PressedStateFile* fileOfProcess = nullptr;

/// With the server everything that was held is gone.
[[noreturn]] int onConnectionLost(Display* /*display*/) {
    fileOfProcess->remove();
    _exit(0);
}

class Watch {
  public:
    Watch(Display* display, PressedState& page, int owner)
        : display_(display),
          page_(page),
          owner_(owner),
          question_(XInternAtom(display, GrabWindow::question, x11::no)) {}

    /// Returns when the program has ended.
    void run() {
        select(true);
        while (waitForInput()) {
            // What comes while a question is out is not looked at: a pointer in motion would wake this
            // process a thousand times a second. But it may have come after the answer, to a program that was
            // stopped after it. So there is one more question, asked when whatever comes next is seen again.
            do {
                select(false);
                if (!question()) return;
                XSync(display_, x11::yes);
                select(true);
            } while (!answersAtOnce());
        }
    }

  private:
    /// Asks, gives the program its time and draws the consequences. False when it has ended.
    [[nodiscard]] bool question() {
        ask();
        // The question stands behind all that came before it: as long as the loop comes on, it is only late.
        do {
            if (!waitForOwner()) return false;
        } while (!isAnswered() && hasProgressed());
        judge();
        return true;
    }

    /// Asks and waits for a moment only. A program that has ended is found out by the next wait for input.
    [[nodiscard]] bool answersAtOnce() {
        ask();
        const auto until = Clock::now() + moment;
        while (!isAnswered()) {
            if (Clock::now() >= until) return false;
            pollfd end{.fd = owner_, .events = POLLIN, .revents = 0};
            poll(&end, 1, static_cast<int>(glance.count()));
            if (end.revents != 0 && !hearOwner()) return true;
        }
        return true;
    }

    /// False when the program has ended.
    [[nodiscard]] bool waitForInput() {
        while (!sawInput()) {
            std::array<pollfd, 2> ends{
                pollfd{.fd = owner_, .events = POLLIN, .revents = 0},
                pollfd{.fd = ConnectionNumber(display_), .events = POLLIN, .revents = 0}};
            poll(ends.data(), ends.size(), -1);
            if (ends[0].revents == 0) continue;
            if (!hearOwner()) return false;
            select(true);
        }
        return true;
    }

    /// Waits for as long as the program may take for an answer. False when it has ended.
    [[nodiscard]] bool waitForOwner() {
        const auto until = Clock::now() + timeout;
        for (auto now = Clock::now(); now < until; now = Clock::now()) {
            const auto left = std::chrono::ceil<milliseconds>(until - now);
            pollfd end{.fd = owner_, .events = POLLIN, .revents = 0};
            poll(&end, 1, static_cast<int>(left.count()));
            if (end.revents != 0 && !hearOwner()) return false;
        }
        return true;
    }

    /// Reads what the program has sent to wake this process. False when it has ended.
    [[nodiscard]] bool hearOwner() const {
        std::array<char, 64> bytes{};
        const auto count = recv(owner_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
    }

    /// Keys count as input while the program stands between them and the applications.
    void select(bool on) {
        x11::EventMask nothing(XIAllDevices, {});
        x11::EventMask pointers(XIAllDevices, {XI_RawMotion, XI_RawButtonPress, XI_RawButtonRelease});
        x11::EventMask all(XIAllDevices, {XI_RawMotion, XI_RawButtonPress, XI_RawButtonRelease,
                                          XI_RawKeyPress, XI_RawKeyRelease});
        const bool withKeys = page_.covering.any() || page_.menuKeys != 0;
        auto& wanted = on ? (withKeys ? all : pointers) : nothing;
        XISelectEvents(display_, DefaultRootWindow(display_), wanted.get(), 1);
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
    [[nodiscard]] bool hasProgressed() {
        const std::uint32_t now = page_.handled;
        return std::exchange(handled_, now) != now;
    }

    void judge() {
        if (isAnswered()) return;
        // From here on the main loop drops what it has not handled yet.
        page_.freed = 1;
        // The posting thread may well be at work: what went down since the question is its own affair.
        const PendingReleases stuck{
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
        page_.covering.take([this](std::uint32_t window) { XUnmapWindow(display_, window); });
        // Keys can only be taken from a client together with its connection; it has nothing else on this one.
        if (const std::uint32_t keys = page_.menuKeys.exchange(0); keys != 0) XKillClient(display_, keys);
        XSync(display_, x11::no);
    }

    struct Down {
        CodeSet buttons;
        CodeSet keys;
    };

    Display* display_;
    PressedState& page_;
    int owner_;
    Atom question_;
    Window window_ = 0;
    /// Goes on where a guard before this one ended: an answer to it is none to this one.
    std::uint32_t asked_ = page_.answered;
    std::uint32_t handled_ = 0;
    Down down_;
};

/// A connection with what a guard needs; null without.
Display* openDisplay() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) return nullptr;
    int opcode = 0;
    int event = 0;
    int error = 0;
    int major = 2;
    int minor = 2;
    if (XQueryExtension(display, "XInputExtension", &opcode, &event, &error) &&
        XIQueryVersion(display, &major, &minor) == x11::success &&
        XTestQueryExtension(display, &event, &error, &major, &minor)) {
        XTestGrabControl(display, x11::yes);
        return display;
    }
    XCloseDisplay(display);
    return nullptr;
}

}  // namespace

void watchOver(PressedStateFile& file, int owner) {
    fileOfProcess = &file;
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    XSetIOErrorHandler(&onConnectionLost);
    Display* display = openDisplay();
    if (display != nullptr) {
        Watch(display, file.page(), owner).run();
    } else {
        // With a server that is gone the program goes too, and nobody would be left to remove the file.
        pollfd end{.fd = owner, .events = 0, .revents = 0};
        if (poll(&end, 1, static_cast<int>(endOfBoth.count())) <= 0) return;
        display = openDisplay();
        if (display == nullptr) return file.remove();
    }
    const PendingReleases debts = pendingReleasesIn(file.page());
    if (debts.any()) {
        release(display, debts);
        poll(nullptr, 0, static_cast<int>(afterTheEnd.count()));
        release(display, debts);
    }
    file.remove();
    XCloseDisplay(display);
}

}  // namespace trelvan
