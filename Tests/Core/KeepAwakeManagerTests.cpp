#include "Core/KeepAwakeFixture.hpp"

#include <limits>
#include <utility>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;

class KeepAwakeManagerTest : public test::KeepAwakeFixture {};

// Loading

TEST_F(KeepAwakeManagerTest, AbsentSettingsTakeTheirDefaults) {
    const auto& keepAwake = load();
    EXPECT_FALSE(keepAwake.isEnabled);
    EXPECT_EQ(keepAwake.idleThresholdMinutes, 3.0);
    EXPECT_EQ(keepAwake.moveEveryMinutes, 1.0);
    EXPECT_EQ(keepAwake.autoStopPreset, AutoStopPreset::never);
    EXPECT_FALSE(keepAwake.isCurrentlyAway);
    EXPECT_EQ(keepAwake.nextMoveInSeconds.get(), std::nullopt);
    EXPECT_EQ(keepAwake.remainingAutoStopSeconds.get(), std::nullopt);
    EXPECT_EQ(keepAwake.lastMoveDate.get(), std::nullopt);
    EXPECT_EQ(keepAwake.lastErrorMessage.get(), std::nullopt);
}

TEST_F(KeepAwakeManagerTest, StoredNumbersAreClampedWhenLoaded) {
    const auto loaded = [this](DefaultsValue threshold, DefaultsValue interval) {
        desktop.defaults["keep_awake_idle_threshold_minutes"] = std::move(threshold);
        desktop.defaults["keep_awake_move_every_minutes"] = std::move(interval);
        load();
        return std::pair{manager->idleThresholdMinutes.get(), manager->moveEveryMinutes.get()};
    };
    EXPECT_EQ(loaded(0.5, 90.0), (std::pair{1.0, 60.0}));
    EXPECT_EQ(loaded(500.0, 0.25), (std::pair{120.0, 1.0}));
    EXPECT_EQ(loaded(1.0, 60.0), (std::pair{1.0, 60.0}));
    EXPECT_EQ(loaded(120.0, 1.5), (std::pair{120.0, 1.5}));
    EXPECT_EQ(loaded(std::int64_t{7}, std::int64_t{-4}), (std::pair{7.0, 1.0}));
    EXPECT_EQ(loaded(std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()),
              (std::pair{120.0, 1.0}));
}

TEST_F(KeepAwakeManagerTest, MistypedValuesTakeTheirDefaults) {
    for (const DefaultsValue& wrong :
         {DefaultsValue{std::string("true")}, DefaultsValue{std::int64_t{1}}, DefaultsValue{Data{"1"}}}) {
        desktop.defaults["keep_awake_enabled"] = wrong;
        EXPECT_FALSE(load().isEnabled);
    }
    for (const DefaultsValue& wrong :
         {DefaultsValue{std::string("10")}, DefaultsValue{true}, DefaultsValue{Data{"10"}}}) {
        desktop.defaults["keep_awake_idle_threshold_minutes"] = wrong;
        desktop.defaults["keep_awake_move_every_minutes"] = wrong;
        load();
        EXPECT_EQ(manager->idleThresholdMinutes, 3.0);
        EXPECT_EQ(manager->moveEveryMinutes, 1.0);
    }
}

TEST_F(KeepAwakeManagerTest, PresetLoadsByItsRawValueAndUnknownTextsAsNever) {
    const auto loaded = [this](DefaultsValue stored) {
        desktop.defaults["keep_awake_auto_stop_preset"] = std::move(stored);
        return load().autoStopPreset.get();
    };
    for (const auto preset : allCases<AutoStopPreset>())
        EXPECT_EQ(loaded(std::string(rawValue(preset))), preset);
    EXPECT_EQ(loaded(std::string("threeHours")), AutoStopPreset::never);
    EXPECT_EQ(loaded(std::string("ONEHOUR")), AutoStopPreset::never);
    EXPECT_EQ(loaded(3600.0), AutoStopPreset::never);
}

TEST_F(KeepAwakeManagerTest, LoadingWritesNothing) {
    desktop.defaults["keep_awake_idle_threshold_minutes"] = 500.0;
    const auto before = desktop.defaults;
    load();
    EXPECT_EQ(desktop.defaults, before);
}

TEST_F(KeepAwakeManagerTest, EnabledWhenLoadedWatchesAtOnce) {
    EXPECT_THAT(loadEnabled().nextMoveInSeconds.get(), Optional(180));
    runUntil(240);
    EXPECT_THAT(nudges(), ElementsAre(240));
}

// Settings

TEST_F(KeepAwakeManagerTest, SettersWriteWhatTheyAreGivenWithoutClamping) {
    auto& keepAwake = load();
    keepAwake.idleThresholdMinutes = 0.25;
    keepAwake.moveEveryMinutes = 75;
    keepAwake.autoStopPreset = AutoStopPreset::fourHours;
    keepAwake.isEnabled = true;
    EXPECT_EQ(keepAwake.idleThresholdMinutes, 0.25);
    EXPECT_EQ(desktop.defaults["keep_awake_idle_threshold_minutes"], DefaultsValue{0.25});
    EXPECT_EQ(desktop.defaults["keep_awake_move_every_minutes"], DefaultsValue{75.0});
    EXPECT_EQ(desktop.defaults["keep_awake_auto_stop_preset"], DefaultsValue{std::string("fourHours")});
    EXPECT_EQ(desktop.defaults["keep_awake_enabled"], DefaultsValue{true});
    keepAwake.isEnabled = false;
    EXPECT_EQ(desktop.defaults["keep_awake_enabled"], DefaultsValue{false});
}

TEST_F(KeepAwakeManagerTest, SettingTheSameValueAgainStoresItAgain) {
    auto& keepAwake = load();
    keepAwake.isEnabled = false;
    EXPECT_EQ(desktop.defaults["keep_awake_enabled"], DefaultsValue{false});
}

TEST_F(KeepAwakeManagerTest, ChangedThresholdHoldsFromTheNextTick) {
    auto& keepAwake = loadEnabled();
    runUntil(90);
    keepAwake.idleThresholdMinutes = 1;
    EXPECT_FALSE(keepAwake.isCurrentlyAway);
    runUntil(91);
    EXPECT_TRUE(keepAwake.isCurrentlyAway);
}

// Being away

TEST_F(KeepAwakeManagerTest, CountdownToBeingAwayIsRoundedUp) {
    auto& keepAwake = loadEnabled();
    runUntil(0.5);
    userMoves();
    runUntil(1);
    // Half a second idle: 179.5 are left.
    EXPECT_THAT(keepAwake.nextMoveInSeconds.get(), Optional(180));
    runUntil(2);
    EXPECT_THAT(keepAwake.nextMoveInSeconds.get(), Optional(179));
}

TEST_F(KeepAwakeManagerTest, UserIsAwayFromExactlyTheThresholdOn) {
    auto& keepAwake = loadEnabled();
    runUntil(179);
    EXPECT_FALSE(keepAwake.isCurrentlyAway);
    EXPECT_THAT(keepAwake.nextMoveInSeconds.get(), Optional(1));
    runUntil(180);
    EXPECT_TRUE(keepAwake.isCurrentlyAway);
    // From here it counts to the nudge.
    EXPECT_THAT(keepAwake.nextMoveInSeconds.get(), Optional(60));
    EXPECT_THAT(moves(), IsEmpty());
}

TEST_F(KeepAwakeManagerTest, NudgesComeAtTheIntervalWhileAway) {
    desktop.defaults["keep_awake_idle_threshold_minutes"] = 2.0;
    desktop.defaults["keep_awake_move_every_minutes"] = 1.5;
    loadEnabled();
    runUntil(500);
    EXPECT_THAT(nudges(), ElementsAre(210, 300, 390, 480));
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(70));
}

TEST_F(KeepAwakeManagerTest, UserAwayForLongIsNudgedTheMomentItIsEnabled) {
    load();
    runUntil(1000.5);
    manager->isEnabled = true;
    EXPECT_THAT(nudges(), ElementsAre(1000.5));
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(0));
    runUntil(1001.5);
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(59));
}

TEST_F(KeepAwakeManagerTest, EachKindOfPresenceEndsBeingAway) {
    loadEnabled();
    runUntil(200);
    const auto comesBack = [this](auto use) {
        EXPECT_TRUE(manager->isCurrentlyAway);
        use();
        desktop.time.runFor(Seconds{1});
        EXPECT_FALSE(manager->isCurrentlyAway);
        desktop.time.runFor(Seconds{200});
    };
    comesBack([this] { desktop.send({.type = EventType::mouseMoved}); });
    comesBack([this] { desktop.send({.type = EventType::leftMouseDown}); });
    comesBack([this] { desktop.send({.type = EventType::rightMouseDown}); });
    comesBack([this] { desktop.sendKey({.type = EventType::keyDown, .characters = "a"}); });
}

TEST_F(KeepAwakeManagerTest, ScrollingAndOtherButtonsAreNoPresence) {
    loadEnabled();
    runUntil(200);
    for (const auto type : {EventType::scrollWheel, EventType::otherMouseDown, EventType::leftMouseUp,
                            EventType::leftMouseDragged, EventType::keyUp, EventType::flagsChanged}) {
        desktop.send({.type = type});
    }
    runUntil(201);
    EXPECT_TRUE(manager->isCurrentlyAway);
}

TEST_F(KeepAwakeManagerTest, NoNudgeWhileTheUserIsThere) {
    loadEnabled();
    for (int minute = 1; minute <= 60; ++minute) {
        runUntil(minute * 60.0);
        userMoves();
    }
    EXPECT_THAT(moves(), IsEmpty());
}

TEST_F(KeepAwakeManagerTest, AwayAgainAfterALongReturnIsNudgedAtTheThreshold) {
    loadEnabled();
    runUntil(245);
    EXPECT_THAT(nudges(), ElementsAre(240));
    userMoves();
    runUntil(700);
    // The last nudge is longer ago than the interval when the threshold is reached at 425.
    EXPECT_THAT(nudges(), ElementsAre(240, 425, 485, 545, 605, 665));
}

TEST_F(KeepAwakeManagerTest, EnablingAnewForgetsTheLastNudge) {
    loadEnabled();
    runUntil(241);
    manager->isEnabled = false;
    userMoves();
    manager->isEnabled = true;
    runUntil(241 + 239);
    EXPECT_THAT(nudges(), ElementsAre(240));
    runUntil(241 + 240);
    EXPECT_THAT(nudges(), ElementsAre(240, 481));
}

// The nudge

TEST_F(KeepAwakeManagerTest, NudgeGoesOnePointAsideAndBackAndAlternates) {
    loadEnabled();
    runUntil(240.11);
    EXPECT_THAT(moves(), ElementsAre(Point{721, 450}));
    runUntil(240.121);
    EXPECT_THAT(moves(), ElementsAre(Point{721, 450}, Point{720, 450}));
    EXPECT_EQ(desktop.pointer, (Point{720, 450}));
    runUntil(301);
    EXPECT_THAT(moves(), ElementsAre(Point{721, 450}, Point{720, 450}, Point{719, 450}, Point{720, 450}));
    EXPECT_THAT(desktop.all<trace::PostedMouse>().front(),
                Eq(trace::PostedMouse{EventType::mouseMoved, 0, {721, 450}, 0, 0, 0, TapLocation::hid}));
    EXPECT_THAT(manager->lastMoveDate.get(),
                Optional(std::chrono::system_clock::time_point(std::chrono::seconds(300))));
}

TEST_F(KeepAwakeManagerTest, NudgeKeepsTwoPointsFromTheEdges) {
    desktop.pointer = {1440, 0};
    loadEnabled();
    runUntil(241);
    EXPECT_THAT(moves(), ElementsAre(Point{1438, 2}, Point{1440, 0}));
    desktop.entries.clear();
    desktop.pointer = {0, 900};
    runUntil(301);
    EXPECT_THAT(moves(), ElementsAre(Point{2, 898}, Point{0, 900}));
}

TEST_F(KeepAwakeManagerTest, EdgesAreThoseOfTheMainScreen) {
    desktop.screenFrames = {{0, 0, 1000, 800}, {1000, 0, 1440, 900}};
    desktop.pointer = {1500, 100};
    loadEnabled();
    runUntil(241);
    EXPECT_THAT(moves(), ElementsAre(Point{998, 100}, Point{1500, 100}));
}

TEST_F(KeepAwakeManagerTest, WithoutScreensADueNudgeOnlySetsTheMessage) {
    desktop.screenFrames.clear();
    loadEnabled();
    runUntil(250);
    EXPECT_THAT(desktop.entries, IsEmpty());
    EXPECT_THAT(manager->lastErrorMessage.get(), Optional(Eq("No active screen available.")));
    EXPECT_EQ(manager->lastMoveDate.get(), std::nullopt);
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(0));
    // It stays due, and comes with the screen.
    desktop.screenFrames = {{0, 0, 1440, 900}};
    runUntil(251);
    EXPECT_THAT(nudges(), ElementsAre(251));
}

TEST_F(KeepAwakeManagerTest, EventThatCannotBeMadeSetsTheMessageUntilTheNextStart) {
    desktop.failures.eventCreate = true;
    loadEnabled();
    runUntil(241);
    EXPECT_THAT(moves(), IsEmpty());
    EXPECT_THAT(manager->lastErrorMessage.get(), Optional(Eq("Unable to create mouse event.")));
    // It was tried: the next one is due an interval later.
    EXPECT_THAT(manager->nextMoveInSeconds.get(), Optional(59));
    EXPECT_THAT(manager->lastMoveDate.get(),
                Optional(std::chrono::system_clock::time_point(std::chrono::seconds(240))));
    desktop.failures.eventCreate = false;
    runUntil(301);
    EXPECT_THAT(manager->lastErrorMessage.get(), Optional(Eq("Unable to create mouse event.")));
    manager->isEnabled = false;
    EXPECT_EQ(manager->lastErrorMessage.get(), std::nullopt);
}

TEST_F(KeepAwakeManagerTest, StoppedDuringANudgeStillPutsThePointerBack) {
    loadEnabled();
    runUntil(240.05);
    manager->isEnabled = false;
    runUntil(241);
    EXPECT_EQ(desktop.pointer, (Point{720, 450}));
}

TEST_F(KeepAwakeManagerTest, EndDuringANudgeLeavesThePointerWhereItIs) {
    loadEnabled();
    runUntil(240.05);
    manager.reset();
    runUntil(1000);
    EXPECT_THAT(moves(), ElementsAre(Point{721, 450}));
}

}  // namespace
}  // namespace trelvan
