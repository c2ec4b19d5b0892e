#include "Core/KeepAwakeFixture.hpp"

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// The time of day jumps: the computer slept, or somebody set the clock.
class KeepAwakeManagerClockTest : public test::KeepAwakeFixture {
  protected:
    void enableFor(AutoStopPreset preset) {
        load().autoStopPreset = preset;
        manager->isEnabled = true;
    }
    void jump(double seconds) { desktop.time.shiftTimeOfDay(Seconds{seconds}); }
};

TEST_F(KeepAwakeManagerClockTest, SleptTimeIsUsedUp) {
    enableFor(AutoStopPreset::oneHour);
    runUntil(600);
    jump(1800);
    runUntil(601);
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(3600 - 601 - 1800));
    runUntil(1799);
    EXPECT_TRUE(manager->isEnabled);
    runUntil(1800);
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_EQ(desktop.defaults["keep_awake_enabled"], DefaultsValue{false});
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
}

TEST_F(KeepAwakeManagerClockTest, ComputerThatSleptLongerThanThePreset_SwitchesOffAtTheFirstTick) {
    enableFor(AutoStopPreset::twoHours);
    runUntil(1000);
    jump(8 * 3600);
    desktop.entries.clear();
    runUntil(1001);
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_EQ(desktop.idleHolds, 0);
    EXPECT_TRUE(desktop.all<trace::PostedMouse>().empty()) << "it is over, no nudge comes first";
    runUntil(100000);
    EXPECT_TRUE(desktop.all<trace::PostedMouse>().empty());
}

TEST_F(KeepAwakeManagerClockTest, ClockSetBack_GivesNoMoreThanThePreset) {
    enableFor(AutoStopPreset::oneHour);
    runUntil(1800);
    jump(-100000);
    runUntil(1801);
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(1799));
    runUntil(3599);
    EXPECT_TRUE(manager->isEnabled);
    runUntil(3600);
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(KeepAwakeManagerClockTest, ClockSetBackBeforeASleep_DoesNotGiveTheSleepBack) {
    enableFor(AutoStopPreset::oneHour);
    runUntil(600);
    jump(-7200);
    runUntil(1200);
    jump(2400);
    runUntil(1201);
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(KeepAwakeManagerClockTest, ClockSetBack_DoesNotHoldTheNudgesBack) {
    loadEnabled();
    runUntil(240);
    EXPECT_THAT(nudges(), ElementsAre(240));
    jump(-86400);
    runUntil(299);
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(1));
    runUntil(420);
    EXPECT_THAT(nudges(), ElementsAre(240, 300, 360, 420));
}

TEST_F(KeepAwakeManagerClockTest, NudgeIsDueAtOnceAfterSleep) {
    loadEnabled();
    runUntil(240);
    runUntil(250);
    jump(3600);
    runUntil(251);
    EXPECT_THAT(nudges(), ElementsAre(240, 251));
}

TEST_F(KeepAwakeManagerClockTest, LastMoveDateIsTheTimeOfDay) {
    jump(50000);
    loadEnabled();
    runUntil(240);
    EXPECT_THAT(manager->lastMoveDate.get(),
                Optional(std::chrono::system_clock::time_point(std::chrono::seconds(50240))));
}

TEST_F(KeepAwakeManagerClockTest, FirstNudgeComesAnIntervalAfterTheThreshold) {
    load().idleThresholdMinutes = 5;
    manager->moveEveryMinutes = 2;
    manager->isEnabled = true;
    runUntil(700);
    EXPECT_THAT(nudges(), ElementsAre(420, 540, 660));
}

TEST_F(KeepAwakeManagerClockTest, WherePostedEventsAreActivity_TheUserCountsAsBackAfterEachNudge) {
    desktop.postedCountsAsActivity = true;
    loadEnabled();
    runUntil(240);
    EXPECT_THAT(nudges(), ElementsAre(240));
    runUntil(241);
    EXPECT_FALSE(manager->isCurrentlyAway);
    // The way back is posted a little later and counts too; then the threshold has to pass again.
    runUntil(420);
    EXPECT_FALSE(manager->isCurrentlyAway);
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(1));
    runUntil(421);
    EXPECT_THAT(nudges(), ElementsAre(240, 421));
}

}  // namespace
}  // namespace trelvan
