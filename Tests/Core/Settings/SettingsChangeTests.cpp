// Settings that another program changes while the services run.

#include "Core/KeepAwakeFixture.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Core/ProfileManager.hpp"
#include "Support/CapturingLog.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Support/MonitorFixture.hpp"
#include "Support/SequentialUuids.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

// Profiles

class ProfilesChangeTest : public testing::Test {
  protected:
    static Data named(const std::string& name,
                      const std::string& id = "0B0E3F0A-0000-4000-8000-000000000001") {
        return Data{R"([{"id":")" + id + R"(","name":")" + name + R"(","mappings":[]}])"};
    }
    void change(const std::string& key, DefaultsValue value) {
        defaults.values.insert_or_assign(key, std::move(value));
        defaults.tellOutsideChange({key});
    }
    [[nodiscard]] std::string activeName() const { return manager.activeProfile().name; }

    test::FakeUserDefaults defaults;
    test::CapturingLog log;
    ProfileManager manager{defaults, log.logger, test::sequentialUuids()};
};

TEST_F(ProfilesChangeTest, NewProfilesAreInForceWithTheNextPress) {
    EXPECT_EQ(manager.activeSnapshot()->profile().name, "Default");
    change("trackball_profiles", named("Edited"));
    EXPECT_EQ(activeName(), "Edited");
    EXPECT_EQ(manager.activeSnapshot()->profile().name, "Edited");
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfilesChangeTest, OtherChoiceOfTheActiveProfileIsTaken) {
    const auto second = manager.createProfile("Second");
    change("trackball_active_profile", second.id.text());
    EXPECT_EQ(activeName(), "Second");
}

TEST_F(ProfilesChangeTest, UnreadableProfilesLeaveThoseInUseAndAreReportedWithTheirPlace) {
    change("trackball_profiles", named("Good"));
    change("trackball_profiles",
           Data{R"([{"name":"Bad","mappings":[{"buttonNumber":3,"buttonLabel":"","action":"Copy"}]}])"});
    EXPECT_EQ(activeName(), "Good");
    ASSERT_TRUE(manager.problem.get());
    EXPECT_THAT(manager.problem.get()->english, HasSubstr("[0].mappings[0].action"));
    EXPECT_THAT(manager.problem.get()->spanish, HasSubstr("[0].mappings[0].action"));
    EXPECT_THAT(log.lines.back().message, HasSubstr("Perfiles cargados"));
    EXPECT_THAT(defaults.copies, IsEmpty());
    change("trackball_profiles", named("Mended"));
    EXPECT_EQ(activeName(), "Mended");
    EXPECT_FALSE(manager.problem.get());
}

TEST_F(ProfilesChangeTest, SaveOverAnUnfinishedEditPutsItAsideFirst) {
    change("trackball_profiles", Data{"[{"});
    manager.createProfile("Mine");
    ASSERT_EQ(defaults.copies.size(), 1U);
    EXPECT_EQ(defaults.copies.front().data.bytes, "[{");
    EXPECT_FALSE(manager.problem.get());
}

TEST_F(ProfilesChangeTest, RemovedProfilesAreTheDefaultOneAgain) {
    change("trackball_profiles", named("Edited"));
    defaults.values.clear();
    defaults.tellOutsideChange({"trackball_profiles"});
    EXPECT_EQ(activeName(), "Default");
}

TEST_F(ProfilesChangeTest, OtherSettingsLeaveTheProfilesAlone) {
    bool isTold = false;
    const auto watch = manager.profiles.observe([&](const auto&) { isTold = true; });
    change("general_language", std::string("Español"));
    EXPECT_FALSE(isTold);
}

// Shaping

class ShapingChangeTest : public test::MonitorFixture {
  protected:
    void change(const std::string& key, DefaultsValue value) {
        desktop.defaults.insert_or_assign(key, std::move(value));
        desktop.userDefaults().tellOutsideChange({key});
    }
};

TEST_F(ShapingChangeTest, NewValuesHoldForTheNextEvent) {
    start();
    change("trackball_scroll_speed_vertical", 2.0);
    scroll(3);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 6);
    change("trackball_swap_scroll_direction", true);
    scroll(3);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, -6);
}

TEST_F(ShapingChangeTest, OnlyWhatChangedIsTaken) {
    load();
    monitor->mouseSpeed = 1.7;
    change("trackball_scroll_speed_vertical", 2.0);
    EXPECT_EQ(monitor->mouseSpeed, 1.7);
    EXPECT_EQ(monitor->scrollSpeedVertical, 2.0);
}

TEST_F(ShapingChangeTest, RemovedSettingHasItsDefaultAndAWrongKindChangesNothing) {
    desktop.defaults["trackball_mouse_acceleration"] = 0.1;
    load();
    change("trackball_mouse_acceleration", std::string("fast"));
    EXPECT_EQ(monitor->mouseAcceleration, 0.1);
    desktop.defaults.erase("trackball_mouse_acceleration");
    desktop.userDefaults().tellOutsideChange({"trackball_mouse_acceleration"});
    EXPECT_EQ(monitor->mouseAcceleration, 0.6);
}

TEST_F(ShapingChangeTest, WildSpeedIsResetAsAtALaunch) {
    load();
    change("trackball_mouse_speed", 1.8);
    EXPECT_EQ(monitor->mouseSpeed, 1.0);
    EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue{1.0});
}

// Keep Awake

class KeepAwakeChangeTest : public test::KeepAwakeFixture {
  protected:
    void change(const std::string& key, DefaultsValue value) {
        desktop.defaults.insert_or_assign(key, std::move(value));
        desktop.userDefaults().tellOutsideChange({key});
    }
};

TEST_F(KeepAwakeChangeTest, SwitchedOnAndOffByHand_StartsAndStops) {
    load();
    change("keep_awake_enabled", true);
    EXPECT_TRUE(manager->isEnabled);
    runUntil(180);
    EXPECT_TRUE(manager->isCurrentlyAway);
    change("keep_awake_enabled", false);
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_FALSE(manager->isCurrentlyAway);
    EXPECT_EQ(manager->nextMoveInSeconds.get(), std::nullopt);
}

TEST_F(KeepAwakeChangeTest, NewThresholdCountsFromTheNextTick) {
    loadEnabled();
    change("keep_awake_idle_threshold_minutes", 500.0);
    EXPECT_EQ(manager->idleThresholdMinutes, 120.0);
    runUntil(300);
    EXPECT_FALSE(manager->isCurrentlyAway);
    EXPECT_EQ(desktop.defaults.at("keep_awake_idle_threshold_minutes"), DefaultsValue{500.0});
}

TEST_F(KeepAwakeChangeTest, OtherPreset_StartsTheCountdownAnewAndTheSameOneDoesNot) {
    loadEnabled();
    change("keep_awake_auto_stop_preset", std::string("oneHour"));
    runUntil(600);
    change("keep_awake_auto_stop_preset", std::string("oneHour"));
    runUntil(601);
    EXPECT_EQ(manager->remainingAutoStopSeconds.get(), 2999);
    runUntil(3600);
    EXPECT_FALSE(manager->isEnabled);
}

}  // namespace
}  // namespace trelvan
