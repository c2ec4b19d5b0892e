#include "Core/KeepAwakeFixture.hpp"

#include <utility>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class KeepAwakeManagerStopTest : public test::KeepAwakeFixture {};

// Switching off

TEST_F(KeepAwakeManagerStopTest, SwitchingOffResetsWhatIsShown) {
    desktop.defaults["keep_awake_auto_stop_preset"] = std::string("oneDay");
    loadEnabled();
    runUntil(250);
    manager->isEnabled = false;
    EXPECT_FALSE(manager->isCurrentlyAway);
    EXPECT_EQ(manager->nextMoveInSeconds.get(), std::nullopt);
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
    // What was done stays known.
    EXPECT_NE(manager->lastMoveDate.get(), std::nullopt);
    desktop.entries.clear();
    runUntil(100000);
    EXPECT_THAT(desktop.entries, IsEmpty());
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(KeepAwakeManagerStopTest, EachPresetSwitchesOffAfterItsTime) {
    const std::pair<AutoStopPreset, int> lengths[] = {{AutoStopPreset::oneHour, 3600},
                                                      {AutoStopPreset::twoHours, 7200},
                                                      {AutoStopPreset::fourHours, 14400},
                                                      {AutoStopPreset::eightHours, 28800},
                                                      {AutoStopPreset::oneDay, 86400}};
    for (const auto& [preset, length] : lengths) {
        load().autoStopPreset = preset;
        const double start = desktop.time.uptime().count();
        manager->isEnabled = true;
        EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(length));
        runUntil(start + length - 1);
        EXPECT_TRUE(manager->isEnabled) << length;
        EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(1));
        runUntil(start + length);
        EXPECT_FALSE(manager->isEnabled) << length;
        EXPECT_EQ(desktop.defaults["keep_awake_enabled"], DefaultsValue{false});
        EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
    }
}

TEST_F(KeepAwakeManagerStopTest, AutoStopOfARunThatWasStoppedByHandDoesNotComeLater) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    manager->isEnabled = true;
    runUntil(100);
    manager->isEnabled = false;
    desktop.defaults.erase("keep_awake_enabled");
    runUntil(4000);
    EXPECT_FALSE(desktop.defaults.contains("keep_awake_enabled"));
}

TEST_F(KeepAwakeManagerStopTest, NeverHasNoCountdownAndNoEnd) {
    loadEnabled();
    runUntil(200000);
    EXPECT_TRUE(manager->isEnabled);
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
}

TEST_F(KeepAwakeManagerStopTest, RemainingSecondsAreWholeOnes) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    runUntil(0.25);
    manager->isEnabled = true;
    runUntil(1);
    // The preset is looked at by the tick, which comes a whole second after the start.
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(3600));
    runUntil(1.5);
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(3599));
    manager->autoStopPreset = AutoStopPreset::oneHour;
    runUntil(2.5);
    // Three quarters of a second later: 3599.25 are left.
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(3599));
}

TEST_F(KeepAwakeManagerStopTest, ChangedPresetRestartsTheCountdown) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    manager->isEnabled = true;
    runUntil(3000);
    manager->autoStopPreset = AutoStopPreset::twoHours;
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(7200));
    runUntil(3000 + 7199);
    EXPECT_TRUE(manager->isEnabled);
    runUntil(3000 + 7200);
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(KeepAwakeManagerStopTest, PresetChangedToNeverTakesTheCountdownAway) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    manager->isEnabled = true;
    runUntil(100);
    manager->autoStopPreset = AutoStopPreset::never;
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
    runUntil(10000);
    EXPECT_TRUE(manager->isEnabled);
}

TEST_F(KeepAwakeManagerStopTest, PresetChangedWhileOffSchedulesNothing) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), std::nullopt);
    desktop.defaults.erase("keep_awake_enabled");
    runUntil(4000);
    EXPECT_FALSE(desktop.defaults.contains("keep_awake_enabled"));
}

TEST_F(KeepAwakeManagerStopTest, EnabledTwiceRestartsTheCountdownOnly) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    manager->isEnabled = true;
    runUntil(270);
    manager->isEnabled = true;
    EXPECT_THAT(manager->remainingAutoStopSeconds.get(), Optional(3600));
    runUntil(300);
    // One watch, which still knows its last nudge.
    EXPECT_THAT(nudges(), ElementsAre(240, 300));
    runUntil(270 + 3600);
    EXPECT_FALSE(manager->isEnabled);
}

// The inhibitor

TEST_F(KeepAwakeManagerStopTest, IdleIsInhibitedWhileTheUserIsAway) {
    loadEnabled();
    runUntil(179);
    EXPECT_EQ(desktop.idleHolds, 0);
    runUntil(180);
    EXPECT_EQ(desktop.idleHolds, 1);
    runUntil(1000);
    EXPECT_EQ(desktop.idleHolds, 1);
    userMoves();
    runUntil(1001);
    EXPECT_EQ(desktop.idleHolds, 0);
}

TEST_F(KeepAwakeManagerStopTest, InhibitionEndsWithStopAutoStopAndTheManager) {
    load().autoStopPreset = AutoStopPreset::oneHour;
    runUntil(200);
    manager->isEnabled = true;
    EXPECT_EQ(desktop.idleHolds, 1);
    manager->isEnabled = false;
    EXPECT_EQ(desktop.idleHolds, 0);
    manager->isEnabled = true;
    EXPECT_EQ(desktop.idleHolds, 1);
    runUntil(200 + 3600);
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_EQ(desktop.idleHolds, 0);
    manager->isEnabled = true;
    EXPECT_EQ(desktop.idleHolds, 1);
    manager.reset();
    EXPECT_EQ(desktop.idleHolds, 0);
}

TEST_F(KeepAwakeManagerStopTest, NothingIsInhibitedWhileItIsOff) {
    load();
    runUntil(10000);
    EXPECT_EQ(desktop.idleHolds, 0);
}

// A whole night

TEST_F(KeepAwakeManagerStopTest, NightPassesWithoutTheDesktopEverIdleForLong) {
    load().autoStopPreset = AutoStopPreset::eightHours;
    runUntil(10);
    userMoves();
    manager->isEnabled = true;
    constexpr double evening = 10;
    constexpr double morning = evening + 8 * 3600;
    runUntil(morning - 1);
    EXPECT_TRUE(manager->isEnabled);
    EXPECT_EQ(desktop.idleHolds, 1);

    const auto moments = nudges();
    // From the threshold and an interval on, once a minute.
    ASSERT_EQ(moments.size(), static_cast<std::size_t>((8 * 3600 - 240 - 60) / 60 + 1));
    EXPECT_EQ(moments.front(), evening + 240);
    for (std::size_t index = 1; index < moments.size(); ++index)
        ASSERT_EQ(moments[index] - moments[index - 1], 60) << index;
    // Each to one side in turn, and each followed by its way back.
    const auto places = moves();
    ASSERT_EQ(places.size(), 2 * moments.size());
    for (std::size_t index = 0; index < places.size(); index += 2) {
        ASSERT_EQ(places[index], (Point{index % 4 == 0 ? 721.0 : 719.0, 450})) << index;
        ASSERT_EQ(places[index + 1], (Point{720, 450})) << index;
    }

    runUntil(morning);
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_EQ(desktop.idleHolds, 0);
    desktop.entries.clear();
    runUntil(morning + 8 * 3600);
    EXPECT_THAT(desktop.entries, IsEmpty());
}

}  // namespace
}  // namespace trelvan
