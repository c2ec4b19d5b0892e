#include "Desktop/DesktopTest.hpp"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <iostream>
#include <thread>

/// A mouse that reports 8,000 times a second.
namespace trelvan::desktop {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int perMillisecond = 8;
constexpr int seconds = 10;
/// So often a press or release comes in place of a movement.
constexpr int pressEvery = 50;
/// The server drops events when some thousands wait, so the mouse makes sure of it this often.
constexpr int millisecondsBetweenSettles = 16;

/// The program's memory in KiB and its processor time so far in seconds, as the kernel counts them.
struct Usage {
    long memory = 0;
    double processor = 0;
};

Usage usage(pid_t process) {
    Usage result;
    const std::string folder = "/proc/" + std::to_string(process);
    std::ifstream status(folder + "/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") status >> result.memory;
    }
    std::ifstream stat(folder + "/stat");
    std::string ignored;
    std::getline(stat, ignored, ')');
    for (int field = 3; field < 14; ++field) stat >> ignored;
    double user = 0;
    double system = 0;
    stat >> user >> system;
    result.processor = (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    return result;
}

class HighRateTest : public DesktopTest {
  protected:
    void TearDown() override {
        trackball().setWaiting(true);
        trackball().settle();
        DesktopTest::TearDown();
    }

    /// One report of the mouse: a zigzag that stays inside the window, or a button.
    void report(int number) {
        if (number % pressEvery == 0) {
            const bool down = number / pressEvery % 2 == 0;
            down ? trackball().press(9) : trackball().release(9);
            expected.push_back({down ? Kind::buttonPress : Kind::buttonRelease, at});
            return;
        }
        const Position by{number / 300 % 2 == 0 ? 1 : -1, number / 200 % 2 == 0 ? 1 : -1};
        trackball().move(by.x, by.y);
        at = {at.x + by.x, at.y + by.y};
        expected.push_back({Kind::motion, at});
    }

    struct Seen {
        Kind kind = Kind::motion;
        Position at;
        friend bool operator==(const Seen&, const Seen&) = default;
    };

    /// What the client received, from the first report on, in the same form.
    std::vector<Seen> seen() {
        std::vector<Seen> result;
        for (const ClientEvent& event : client().events()) {
            if (event.button == 0 || event.button == 9) result.push_back({event.kind, {event.x, event.y}});
        }
        return result;
    }

    Position at;
    std::vector<Seen> expected;
};

TEST_F(HighRateTest, EveryEventOfTenSecondsArrivesInOrderAndMemoryStays) {
    start(Settings().map(3, "Copiar"));
    at = client().pointer();
    trackball().setWaiting(false);
    const auto begin = Clock::now();
    Usage settled;
    for (int tick = 0; tick < seconds * 1000; ++tick) {
        for (int event = 0; event < perMillisecond; ++event) report(tick * perMillisecond + event);
        if (tick % millisecondsBetweenSettles == 0) trackball().settle();
        (void)client().events();
        if (tick == 1000) settled = usage(program().id());
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(tick + 1));
    }
    trackball().settle();
    const std::chrono::duration<double> sending = Clock::now() - begin;
    const auto sent = expected.size();
    EXPECT_TRUE(client().waitFor([&](const auto& all) { return all.size() >= sent; }));
    const std::chrono::duration<double> arriving = Clock::now() - begin;
    const Usage after = usage(program().id());
    trackball().setWaiting(true);
    trackball().releaseAll();
    passSentinel();

    auto arrived = seen();
    EXPECT_EQ(arrived.size(), sent);
    arrived.resize(sent);
    const auto [ours, theirs] = std::mismatch(expected.begin(), expected.end(), arrived.begin());
    EXPECT_EQ(ours, expected.end()) << "first difference at event " << ours - expected.begin();

    const double rate = static_cast<double>(sent) / sending.count();
    const double share = 100 * (after.processor - settled.processor) / (arriving.count() - 1);
    std::cout << std::lround(rate) << " events a second, the last "
              << std::lround((arriving - sending).count() * 1e3) << " ms after it was sent; "
              << std::lround(share) << " % of a processor, memory " << settled.memory << " to "
              << after.memory << " KiB\n";
    EXPECT_LT(after.memory - settled.memory, 1024);
}

/// More clicks than the program can serve, for a while.
class FloodTest : public HighRateTest {
  protected:
    static constexpr int clicksPerMillisecond = 16;
    static constexpr int floodSeconds = 5;

    /// Clicks away, and says how large the program was before, at most and in the end, in KiB.
    void flood(const std::function<void(int)>& click) {
        before = usage(program().id()).memory;
        trackball().setWaiting(false);
        const auto begin = Clock::now();
        for (int tick = 0; tick < floodSeconds * 1000; ++tick) {
            for (int count = 0; count < clicksPerMillisecond; ++count)
                click(tick * clicksPerMillisecond + count);
            if (tick % 8 == 0) trackball().settle();
            if (tick % 100 == 0) {
                (void)client().events();
                client().forget();
                most = std::max(most, usage(program().id()).memory);
            }
            std::this_thread::sleep_until(begin + std::chrono::milliseconds(tick + 1));
        }
        trackball().settle();
        const std::chrono::duration<double> sending = Clock::now() - begin;
        trackball().setWaiting(true);
        trackball().releaseAll();
        most = std::max(most, usage(program().id()).memory);
        client().forget();
        // The sentinel comes after everything that still waits.
        trackball().click(sentinelButton);
        EXPECT_TRUE(client().waitFor(
            [&](const auto&) {
                most = std::max(most, usage(program().id()).memory);
                return client().count(Kind::buttonRelease, sentinelButton) > 0;
            },
            std::chrono::seconds{60}));
        const std::chrono::duration<double> arriving = Clock::now() - begin;
        after = usage(program().id()).memory;
        std::cout << std::lround(clicksPerMillisecond * floodSeconds * 1000 / sending.count())
                  << " clicks a second, the last " << std::lround((arriving - sending).count() * 1e3)
                  << " ms after it was sent; memory " << before << ", at most " << most << ", in the end "
                  << after << " KiB\n";
        EXPECT_LT(most - before, allowed);
        EXPECT_LT((arriving - sending).count(), 2.0) << "what waits has piled up";
    }

    /// How much larger the program may get, in KiB. What it gets to depends on what else the machine does.
    static constexpr long allowed = 64 * 1024;
    long before = 0;
    long most = 0;
    long after = 0;
};

TEST_F(FloodTest, ClicksThatPass_DoNotPileUp) {
    start(Settings().map(3, "Copiar"));
    flood([this](int) { trackball().click(9); });
}

TEST_F(FloodTest, ClicksThatFire_DoNotPileUpAndLeaveNothingHeld) {
    start(Settings().map(3, "Copiar").map(4, "Pegar"));
    flood([this](int number) { trackball().click(xButton(3 + number % 2)); });
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
}

TEST_F(FloodTest, TurnsThatFire_DoNotPileUpAndLeaveNothingHeld) {
    start(Settings().map(-100, "Copiar").map(-101, "Pegar"));
    flood([this](int number) { trackball().scrollVertical(number / 1000 % 2 == 0 ? 1 : -1); });
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
}

}  // namespace
}  // namespace trelvan::desktop
