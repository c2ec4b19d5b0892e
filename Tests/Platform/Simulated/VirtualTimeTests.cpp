#include "Platform/Simulated/VirtualTime.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;

class VirtualTimeTest : public testing::Test {
  protected:
    /// A job that writes its name and the moment it ran at.
    std::function<void()> note(std::string name) {
        return [this, name] {
            order.push_back(name + "@" + std::to_string(static_cast<int>(time.uptime().count() * 1000)));
        };
    }
    VirtualTime time;
    std::vector<std::string> order;
};

TEST_F(VirtualTimeTest, NothingRunsByItself) {
    time.async(note("a"));
    EXPECT_TRUE(order.empty());
}

TEST_F(VirtualTimeTest, JobsRunByMomentThenByOrderOfEntry) {
    time.after(Seconds{0.002}, note("late"));
    time.async(note("first"));
    time.background().async(note("second"));
    time.after(Seconds{0.001}, note("middle"));
    time.runFor(Seconds{1});
    EXPECT_THAT(order, ElementsAre("first@0", "second@0", "middle@1", "late@2"));
    EXPECT_EQ(time.uptime(), Seconds{1});
}

TEST_F(VirtualTimeTest, TimerRepeatsUntilItsHandleIsGone) {
    auto timer = time.every(Seconds{0.4}, note("tick"));
    time.runFor(Seconds{1});
    timer.reset();
    time.runFor(Seconds{1});
    EXPECT_THAT(order, ElementsAre("tick@400", "tick@800"));
}

TEST_F(VirtualTimeTest, TimerMayEndItself) {
    std::unique_ptr<Timers::Timer> timer;
    timer = time.every(Seconds{0.1}, [&] {
        order.emplace_back("tick");
        timer.reset();
    });
    time.runFor(Seconds{1});
    EXPECT_THAT(order, ElementsAre("tick"));
}

TEST_F(VirtualTimeTest, OneShotTimerFiresOnce) {
    const auto timer = time.once(Seconds{0.5}, note("once"));
    time.runFor(Seconds{3});
    EXPECT_THAT(order, ElementsAre("once@500"));
}

TEST_F(VirtualTimeTest, HopAskedTwiceRunsOnceAndCanBeAskedAgain) {
    const auto task = time.makeCoalescedTask(note("task"));
    task->request();
    task->request();
    time.runDue();
    task->request();
    time.runDue();
    EXPECT_THAT(order, ElementsAre("task@0", "task@0"));
}

TEST_F(VirtualTimeTest, HopDoesNotRunAfterItsHandleIsGone) {
    auto task = time.makeCoalescedTask(note("task"));
    task->request();
    task.reset();
    time.runDue();
    EXPECT_TRUE(order.empty());
}

TEST_F(VirtualTimeTest, EndWaitsForBackgroundButNotForTimers) {
    const auto timer = time.every(Seconds{1}, note("tick"));
    time.background().after(Seconds{1.5}, note("work"));
    time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(order, ElementsAre("tick@1000", "work@1500"));
}

}  // namespace
}  // namespace trelvan
