#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <X11/Xlib.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>
#include <vector>

/// The time from a hardware event, written into the X server's device, to its arrival at an ordinary client,
/// with the program and without, at 1,000 events a second. Prints a line a round and the best of all rounds;
/// its status is 1 when an event is lost.
namespace trelvan::desktop {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int eventsPerRound = 2000;
constexpr int rounds = 5;
constexpr std::chrono::microseconds interval{1000};
/// The first events wake processes and fill caches.
constexpr int warmUp = 100;
constexpr int button = 9;

enum class Event { motion, press };

struct Result {
    double median = 0;
    double late = 0;  ///< 99th percentile
};

/// The pointer's place after each motion: to and fro inside the window, no place twice within a second.
int offset(int event) {
    constexpr int span = 400;
    const int phase = (event + 1) % (2 * span);
    return phase < span ? phase : 2 * span - phase;
}

/// Notes when each of a round's events reaches the client, on a thread of its own as a client's process
/// would.
class Receiver {
  public:
    Receiver(ClientWindow& client, Event kind) : window(client), expected(kind), from(client.pointer().x) {
        window.forget();
        thread = std::thread([this] { run(); });
    }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver() { finish(std::chrono::seconds{0}); }

    /// The arrivals once all are there; fewer when some are not within the bound.
    const std::vector<Clock::time_point>& finish(std::chrono::seconds bound) {
        const auto end = Clock::now() + bound;
        while (count < eventsPerRound && Clock::now() < end) std::this_thread::sleep_for(interval);
        stopping = true;
        if (thread.joinable()) thread.join();
        return arrivals;
    }

  private:
    void run() {
        Display* display = window.connection().get();
        pollfd readable{.fd = ConnectionNumber(display), .events = POLLIN, .revents = 0};
        while (!stopping && arrivals.size() < eventsPerRound) {
            if (XEventsQueued(display, QueuedAfterReading) == 0) {
                ::poll(&readable, 1, 50);
                continue;
            }
            XEvent event{};
            XNextEvent(display, &event);
            take(event, Clock::now());
        }
    }

    void take(const XEvent& event, Clock::time_point now) {
        if (expected == Event::press) {
            if (event.type == ButtonPress || event.type == ButtonRelease) arrivals.push_back(now);
        } else if (event.type == MotionNotify) {
            // Where the server has made one motion of two, both arrive with it.
            do {
                arrivals.push_back(now);
            } while (arrivals.size() < eventsPerRound &&
                     from + offset(static_cast<int>(arrivals.size()) - 1) != event.xmotion.x_root);
        }
        count = static_cast<int>(arrivals.size());
    }

    ClientWindow& window;
    Event expected;
    int from;
    std::vector<Clock::time_point> arrivals;
    std::atomic<int> count{0};
    std::atomic<bool> stopping{false};
    std::thread thread;
};

Result measure(VirtualDesktop& desktop, ClientWindow& client, Event kind) {
    client.warpPointer({client.middle().x - 200, client.middle().y});
    HardwareDevice& device = desktop.trackball();
    // The pointer may still be on its way from an earlier round.
    device.move(0, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds{50});
    Receiver receiver(client, kind);
    std::vector<Clock::time_point> sent;
    sent.reserve(eventsPerRound);
    device.setWaiting(false);
    const auto begin = Clock::now();
    for (int event = 0; event < eventsPerRound; ++event) {
        std::this_thread::sleep_until(begin + event * interval);
        sent.push_back(Clock::now());
        if (kind == Event::motion) {
            device.move(offset(event) - (event == 0 ? 0 : offset(event - 1)), 0);
        } else {
            event % 2 == 0 ? device.press(button) : device.release(button);
        }
    }
    const auto& arrivals = receiver.finish(std::chrono::seconds{5});
    device.settle();
    device.setWaiting(true);
    if (arrivals.size() != sent.size()) throw std::runtime_error("events were lost");

    std::vector<double> delays;
    for (std::size_t event = warmUp; event < sent.size(); ++event) {
        delays.push_back(Microseconds(arrivals[event] - sent[event]).count());
    }
    std::ranges::sort(delays);
    return {.median = delays[delays.size() / 2], .late = delays[delays.size() * 99 / 100]};
}

void print(const char* name, Event kind, const Result& without, const Result& with) {
    std::printf("%-6s %-7s %9.0f %9.0f %9.0f %9.0f %9.0f\n", name, kind == Event::motion ? "motion" : "press",
                without.median, without.late, with.median, with.late, with.median - without.median);
    std::fflush(stdout);
}

/// The least disturbed of two results: other programs only ever add.
Result better(const Result& one, const Result& other) {
    return {.median = std::min(one.median, other.median), .late = std::min(one.late, other.late)};
}

void run() {
    VirtualDesktop desktop;
    ClientWindow client(desktop.displayName());
    constexpr std::array kinds{Event::motion, Event::press};
    std::array<Result, 2> bestWithout{};
    std::array<Result, 2> bestWith{};
    std::printf("microseconds from the device to a client, %d events a second\n",
                static_cast<int>(std::chrono::seconds{1} / interval));
    std::printf("%-6s %-7s %9s %9s %9s %9s %9s\n", "round", "event", "without:", "99 %", "with:", "99 %",
                "added");
    for (int round = 0; round < rounds; ++round) {
        std::array<Result, 2> without{};
        for (const std::size_t kind : {0U, 1U}) without[kind] = measure(desktop, client, kinds[kind]);
        const TrelvanProcess program(desktop, Settings().map(3, "Copiar"));
        for (const std::size_t kind : {0U, 1U}) {
            const Result with = measure(desktop, client, kinds[kind]);
            print(std::to_string(round + 1).c_str(), kinds[kind], without[kind], with);
            bestWithout[kind] = round == 0 ? without[kind] : better(bestWithout[kind], without[kind]);
            bestWith[kind] = round == 0 ? with : better(bestWith[kind], with);
        }
    }
    for (const std::size_t kind : {0U, 1U}) print("best", kinds[kind], bestWithout[kind], bestWith[kind]);
}

}  // namespace
}  // namespace trelvan::desktop

int main() {
    try {
        trelvan::desktop::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "latency_benchmark: %s\n", error.what());
        return 1;
    }
    return 0;
}
