#include "Core/EventMonitor.hpp"
#include "Support/MonitorFixture.hpp"

#include <gmock/gmock.h>

#include <string>

namespace trelvan {
namespace {

using test::MonitorFixture;
using testing::ElementsAre;
using testing::IsEmpty;

class EventMonitorShapingTest : public MonitorFixture {
  protected:
    void store(std::string_view key, DefaultsValue value) {
        desktop.defaults.insert_or_assign(std::string(key), std::move(value));
    }
};

// Loading and saving

TEST_F(EventMonitorShapingTest, NothingStoredGivesInitialValuesAndWritesNothing) {
    load();
    EXPECT_EQ(monitor->scrollSpeedVertical, 1.0);
    EXPECT_FALSE(monitor->horizontalScrollEnabled);
    EXPECT_EQ(monitor->scrollSpeedHorizontal, 1.0);
    EXPECT_FALSE(monitor->swapScrollDirection);
    EXPECT_EQ(monitor->mouseSpeed, 1.0);
    EXPECT_TRUE(monitor->advancedMouseSpeedEnabled);
    EXPECT_EQ(monitor->mouseAcceleration, 0.6);
    EXPECT_THAT(desktop.defaults, IsEmpty());
}

TEST_F(EventMonitorShapingTest, ScrollSpeedsAndAccelerationAreClamped) {
    store(EventMonitor::scrollSpeedVerticalKey, 0.1);
    store(EventMonitor::scrollSpeedHorizontalKey, 7.0);
    store(EventMonitor::mouseAccelerationKey, -0.5);
    load();
    EXPECT_EQ(monitor->scrollSpeedVertical, 0.2);
    EXPECT_EQ(monitor->scrollSpeedHorizontal, 3.0);
    EXPECT_EQ(monitor->mouseAcceleration, 0.0);
    EXPECT_EQ(desktop.defaults.at("trackball_scroll_speed_vertical"), DefaultsValue{0.1});
}

TEST_F(EventMonitorShapingTest, FastMouseSpeedIsResetAndWrittenBack) {
    for (const double stored : {1.8, 2.5, 0.4, 1.41, 2.0}) {
        store(EventMonitor::mouseSpeedKey, stored);
        load();
        EXPECT_EQ(monitor->mouseSpeed, 1.0) << stored;
        EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue{1.0}) << stored;
    }
    // What is written into the user's file is said.
    EXPECT_EQ(desktop.messages(LogLevel::warning),
              std::vector<std::string>(5,
                                       "La velocidad del puntero guardada no se acepta: vuelve a 1.0, "
                                       "también en los ajustes"));
}

TEST_F(EventMonitorShapingTest, MouseSpeedUpToTheLimitStays) {
    for (const double stored : {0.5, 1.0, 1.2, 1.4}) {
        store(EventMonitor::mouseSpeedKey, stored);
        load();
        EXPECT_EQ(monitor->mouseSpeed, stored);
        EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue{stored});
    }
}

TEST_F(EventMonitorShapingTest, WrongKindUnderADoubleKeyIsIgnored) {
    store(EventMonitor::mouseSpeedKey, std::string("fast"));
    store(EventMonitor::scrollSpeedVerticalKey, Data{"2"});
    store(EventMonitor::mouseAccelerationKey, std::string("0.1"));
    load();
    EXPECT_EQ(monitor->mouseSpeed, 1.0);
    EXPECT_EQ(monitor->scrollSpeedVertical, 1.0);
    EXPECT_EQ(monitor->mouseAcceleration, 0.6);
    EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue{std::string("fast")});
}

TEST_F(EventMonitorShapingTest, StoredTruthValuesAreTaken) {
    store(EventMonitor::horizontalScrollEnabledKey, true);
    store(EventMonitor::swapScrollDirectionKey, std::int64_t{1});
    store(EventMonitor::advancedMouseSpeedEnabledKey, false);
    load();
    EXPECT_TRUE(monitor->horizontalScrollEnabled);
    EXPECT_TRUE(monitor->swapScrollDirection);
    EXPECT_FALSE(monitor->advancedMouseSpeedEnabled);
}

TEST_F(EventMonitorShapingTest, SettingsAreSavedOnlyWhenAskedFor) {
    load();
    monitor->mouseSpeed = 1.8;
    monitor->scrollSpeedVertical = 0.4;
    monitor->swapScrollDirection = true;
    EXPECT_THAT(desktop.defaults, IsEmpty());
    monitor->persistSpeedSettings();
    EXPECT_EQ(desktop.defaults.size(), 7U);
    EXPECT_EQ(desktop.defaults.at("trackball_scroll_speed_vertical"), DefaultsValue{0.4});
    EXPECT_EQ(desktop.defaults.at("trackball_horizontal_scroll_enabled"), DefaultsValue{false});
    EXPECT_EQ(desktop.defaults.at("trackball_scroll_speed_horizontal"), DefaultsValue{1.0});
    EXPECT_EQ(desktop.defaults.at("trackball_swap_scroll_direction"), DefaultsValue{true});
    EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue{1.8});
    EXPECT_EQ(desktop.defaults.at("trackball_advanced_mouse_speed_enabled"), DefaultsValue{true});
    EXPECT_EQ(desktop.defaults.at("trackball_mouse_acceleration"), DefaultsValue{0.6});
}

// Scroll

TEST_F(EventMonitorShapingTest, DefaultSettingsLeaveScrollAlone) {
    start();
    EXPECT_EQ(scroll(-3, 2), TapAnswer::deliver);
    const auto event = lastEvent();
    EXPECT_EQ(event.scrollDeltaAxis1, -3);
    EXPECT_EQ(event.scrollDeltaAxis2, 2);
    EXPECT_EQ(event.scrollPointDeltaAxis1, -30);
    EXPECT_EQ(event.scrollPointDeltaAxis2, 20);
}

TEST_F(EventMonitorShapingTest, SwapAloneIsWrittenIntoLinesAndPoints) {
    start();
    monitor->swapScrollDirection = true;
    scroll(-1, 2);
    const auto event = lastEvent();
    EXPECT_EQ(event.scrollDeltaAxis2, -2);
    EXPECT_EQ(event.scrollDeltaAxis1, 1);
    EXPECT_EQ(event.scrollPointDeltaAxis2, -2);
    EXPECT_EQ(event.scrollPointDeltaAxis1, 1);
}

TEST_F(EventMonitorShapingTest, SlowVerticalScrollNeverVanishes) {
    start();
    monitor->scrollSpeedVertical = 0.2;
    scroll(1);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 1);
    scroll(3);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 1);
    scroll(-10);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, -2);
}

TEST_F(EventMonitorShapingTest, HorizontalIsScaledOnlyWhenEnabled) {
    start();
    monitor->scrollSpeedHorizontal = 3.0;
    monitor->scrollSpeedVertical = 2.0;
    scroll(2, 2);
    EXPECT_EQ(lastEvent().scrollDeltaAxis2, 2);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 4);
    monitor->horizontalScrollEnabled = true;
    monitor->scrollSpeedVertical = 1.0;
    scroll(2, 2);
    EXPECT_EQ(lastEvent().scrollDeltaAxis2, 6);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 2);
    EXPECT_EQ(lastEvent().scrollPointDeltaAxis1, 2);
}

// Pointer

TEST_F(EventMonitorShapingTest, SpeedOneLeavesMotionAlone) {
    start();
    EXPECT_EQ(move(5, -5), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().deltaX, 5);
    EXPECT_THAT(desktop.all<trace::PostedMouse>(), IsEmpty());
}

TEST_F(EventMonitorShapingTest, MarkedMotionPassesUntouched) {
    start();
    monitor->mouseSpeed = 0.5;
    EXPECT_EQ(move(8, 8, 0x54524B4D), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().deltaX, 8);
    EXPECT_THAT(desktop.all<trace::PostedMouse>(), IsEmpty());
}

TEST_F(EventMonitorShapingTest, AdvancedModePostsAMarkedCopyThatComesBackUntouched) {
    start();
    monitor->mouseSpeed = 0.5;
    EXPECT_EQ(move(8, -4), TapAnswer::swallow);
    EXPECT_THAT(desktop.all<trace::PostedMouse>(),
                ElementsAre(trace::PostedMouse{
                    EventType::mouseMoved, 0, {716, 452}, 4, -2, 0x54524B4D, TapLocation::hid}));
    desktop.time.runDue();
    const auto events = desktop.all<trace::Event>();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_TRUE(events[1].marked);
    EXPECT_EQ(events[1].answer, TapAnswer::deliver);
    EXPECT_EQ(events[1].event.deltaX, 4);
    EXPECT_EQ(desktop.all<trace::PostedMouse>().size(), 1U);
}

TEST_F(EventMonitorShapingTest, CopyThatCannotBeMadeLetsTheEventPassUnchanged) {
    start();
    monitor->mouseSpeed = 0.5;
    desktop.failures.eventCopy = true;
    EXPECT_EQ(move(8, -4), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().deltaX, 8);
    EXPECT_EQ(lastEvent().deltaY, -4);
}

TEST_F(EventMonitorShapingTest, SimpleModeRewritesTheDeltasOnly) {
    start();
    monitor->mouseSpeed = 0.5;
    monitor->advancedMouseSpeedEnabled = false;
    for (const auto type : {EventType::mouseMoved, EventType::leftMouseDragged, EventType::rightMouseDragged,
                            EventType::otherMouseDragged}) {
        EXPECT_EQ(send({.type = type, .deltaX = 3, .deltaY = 0}), TapAnswer::deliver);
        EXPECT_EQ(lastEvent().deltaX, 2);
        EXPECT_EQ(lastEvent().location, desktop.pointer);
    }
    EXPECT_THAT(desktop.all<trace::PostedMouse>(), IsEmpty());
}

TEST_F(EventMonitorShapingTest, UnchangedResultPassesTheEvent) {
    start();
    monitor->mouseSpeed = 2.0;
    EXPECT_EQ(move(1, 0), TapAnswer::deliver);
    EXPECT_EQ(move(0, 0), TapAnswer::deliver);
    EXPECT_THAT(desktop.all<trace::PostedMouse>(), IsEmpty());
}

TEST_F(EventMonitorShapingTest, StopForgetsTheResiduals) {
    start();
    monitor->advancedMouseSpeedEnabled = false;
    monitor->mouseSpeed = 2.0;
    monitor->mouseAcceleration = 1.0;
    // Gain 1 + 3/8 on 3 points: 4.125, and 0.125 is left over each time.
    const auto fourth = [this] {
        for (int event = 0; event < 3; ++event) move(3, 0);
        move(3, 0);
        return lastEvent().deltaX;
    };
    EXPECT_EQ(fourth(), 5);
    for (int event = 0; event < 3; ++event) move(3, 0);
    monitor->stop();
    desktop.time.runDue();
    monitor->start();
    EXPECT_EQ(fourth(), 5);
}

}  // namespace
}  // namespace trelvan
