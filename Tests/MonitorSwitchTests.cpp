#include "Core/MonitorSwitch.hpp"
#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

class MonitorSwitchTest : public testing::Test {
  protected:
    void SetUp() override {
        app.appear();
        desktop.time.runDue();
        ASSERT_TRUE(app.eventMonitor->isRunning);
    }
    [[nodiscard]] bool isRunning() const { return app.eventMonitor->isRunning; }

    test::TestDesktop desktop;
    test::FakePanels panels;
    TrelvanApp app{desktop, panels, desktop.logger};
};

TEST_F(MonitorSwitchTest, StoppedMonitorStaysStoppedAlthoughThePermissionIsThere) {
    app.monitorSwitch.stop();
    desktop.time.runFor(Seconds{7200});
    EXPECT_FALSE(isRunning());
    EXPECT_TRUE(app.monitorSwitch.isOff);
    EXPECT_FALSE(app.monitorSwitch.pausedUntil().has_value());
    app.monitorSwitch.start();
    desktop.time.runDue();
    EXPECT_TRUE(isRunning());
    EXPECT_FALSE(app.monitorSwitch.isOff);
}

TEST_F(MonitorSwitchTest, MonitorThatWasStoppedByAnotherHandIsStartedByTheTrigger) {
    app.eventMonitor->stop();
    desktop.time.runFor(Seconds{2});
    EXPECT_TRUE(isRunning());
}

TEST_F(MonitorSwitchTest, PausedMonitorStartsAgainAfterItsTime) {
    app.monitorSwitch.pauseFor(Seconds{3600});
    EXPECT_TRUE(app.monitorSwitch.pausedUntil().has_value());
    desktop.time.runFor(Seconds{3596});
    EXPECT_FALSE(isRunning());
    desktop.time.runFor(Seconds{6});
    EXPECT_TRUE(isRunning());
    EXPECT_FALSE(app.monitorSwitch.pausedUntil().has_value());
}

TEST_F(MonitorSwitchTest, SleepCountsForThePauseAndATimeOfDaySetBackDoesNotProlongIt) {
    app.monitorSwitch.pauseFor(Seconds{3600});
    desktop.time.shiftTimeOfDay(Seconds{3600});
    desktop.time.runFor(Seconds{2});
    EXPECT_TRUE(isRunning());
    app.monitorSwitch.pauseFor(Seconds{3600});
    desktop.time.shiftTimeOfDay(Seconds{-36000});
    desktop.time.runFor(Seconds{3602});
    EXPECT_TRUE(isRunning());
}

TEST_F(MonitorSwitchTest, StopDuringAPauseEndsThePauseForGood) {
    app.monitorSwitch.pauseFor(Seconds{3600});
    app.monitorSwitch.stop();
    desktop.time.runFor(Seconds{4000});
    EXPECT_FALSE(isRunning());
}

}  // namespace
}  // namespace trelvan
