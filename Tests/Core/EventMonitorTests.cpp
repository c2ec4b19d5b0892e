#include "Core/EventMonitor.hpp"
#include "Support/MonitorFixture.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

// Types 1, 3, 5, 6, 7, 22, 25, 26 and 27.
static_assert(EventMonitor::eventMask == 0x0E4000EA);

using test::MonitorFixture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class EventMonitorTest : public MonitorFixture {};

// Life cycle

TEST_F(EventMonitorTest, StartInstallsTheTapAndPublishesOneTurnLater) {
    load().start();
    EXPECT_TRUE(desktop.tapEnabled());
    EXPECT_FALSE(monitor->isRunning);
    desktop.time.runDue();
    EXPECT_TRUE(monitor->isRunning);
    EXPECT_THAT(desktop.messages(LogLevel::info), Contains("EventMonitor iniciado ✅"));
}

TEST_F(EventMonitorTest, StartTwiceInstallsOneTap) {
    load().start();
    monitor->start();
    desktop.time.runDue();
    monitor->start();
    EXPECT_EQ(desktop.tapsCreated(), 1);
}

TEST_F(EventMonitorTest, StartWithoutPermissionAsksForItAndStaysStopped) {
    desktop.accessibility = false;
    permissions.refresh();
    load().start();
    desktop.time.runDue();
    EXPECT_FALSE(monitor->isRunning);
    EXPECT_FALSE(desktop.tapExists());
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("No hay permiso de Accesibilidad — no se puede crear EventTap"));
    EXPECT_EQ(desktop.all<trace::Prompted>().size(), 1U);
}

TEST_F(EventMonitorTest, RefusedTapIsAnErrorAndLaterStartSucceeds) {
    desktop.failures.tapCreate = true;
    load().start();
    desktop.time.runDue();
    EXPECT_FALSE(monitor->isRunning);
    EXPECT_THAT(desktop.messages(LogLevel::error),
                ElementsAre("CGEvent.tapCreate falló — verifica permisos de Accesibilidad"));
    desktop.failures.tapCreate = false;
    monitor->start();
    desktop.time.runDue();
    EXPECT_TRUE(monitor->isRunning);
}

TEST_F(EventMonitorTest, StopRemovesTheTapAndForgetsHeldButtons) {
    start();
    handleButtons();
    down(3);
    monitor->stop();
    desktop.time.runDue();
    EXPECT_FALSE(monitor->isRunning);
    EXPECT_FALSE(desktop.tapExists());
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "EventMonitor detenido");
    monitor->start();
    // The release is not taken for that of the forgotten press: the handler is asked.
    consumes = false;
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(calls.size(), 2U);
}

TEST_F(EventMonitorTest, StopWhenStoppedOnlyLogs) {
    load().stop();
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "EventMonitor detenido");
}

TEST_F(EventMonitorTest, TapKeepsTheMonitorAliveUntilStop) {
    start();
    const std::weak_ptr<EventMonitor> watched = monitor;
    monitor.reset();
    ASSERT_FALSE(watched.expired());
    EXPECT_EQ(down(3), TapAnswer::deliver);
    watched.lock()->stop();
    EXPECT_TRUE(watched.expired());
    desktop.time.runDue();
}

TEST_F(EventMonitorTest, TapDisabledByTheSystemIsEnabledAgain) {
    start();
    for (const auto why : {EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}) {
        desktop.disableTap(why);
        EXPECT_TRUE(desktop.tapEnabled());
    }
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("EventTap reactivado tras deshabilitación del sistema",
                            "EventTap reactivado tras deshabilitación del sistema"));
}

// Buttons

TEST_F(EventMonitorTest, ConsumedPressSwallowsItsReleaseWithoutASecondCall) {
    start();
    handleButtons();
    EXPECT_EQ(button(EventType::otherMouseDown, 3, flag::shift), TapAnswer::swallow);
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_THAT(calls, ElementsAre(Call(3, flag::shift)));
    EXPECT_THAT(desktop.messages(LogLevel::debug),
                ElementsAre("Evento botón 3 consumido en down (swallowed)",
                            "Evento botón 3 ya manejado en down; no se repite en up"));
}

TEST_F(EventMonitorTest, DeclinedPressIsOfferedAgainOnRelease) {
    start();
    handleButtons();
    consumes = false;
    EXPECT_EQ(down(3), TapAnswer::deliver);
    consumes = true;
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_THAT(calls, ElementsAre(Call(3, 0), Call(3, 0)));
    EXPECT_THAT(desktop.messages(LogLevel::debug), ElementsAre("Evento botón 3 consumido (swallowed)"));
}

TEST_F(EventMonitorTest, DeclinedPressAndReleasePass) {
    start();
    handleButtons();
    consumes = false;
    EXPECT_EQ(down(4), TapAnswer::deliver);
    EXPECT_EQ(up(4), TapAnswer::deliver);
    EXPECT_THAT(desktop.messages(LogLevel::debug), IsEmpty());
}

TEST_F(EventMonitorTest, ButtonsAreKeptApart) {
    start();
    handleButtons();
    EXPECT_EQ(down(3), TapAnswer::swallow);
    consumes = false;
    EXPECT_EQ(down(70), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_EQ(up(70), TapAnswer::deliver);
    EXPECT_THAT(calls, ElementsAre(Call(3, 0), Call(70, 0), Call(70, 0)));
}

TEST_F(EventMonitorTest, LeftAndRightPressesAreSwallowedOnlyWhenConsumed) {
    start();
    handleButtons();
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::swallow);
    EXPECT_EQ(button(EventType::rightMouseDown, 1), TapAnswer::swallow);
    consumes = false;
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::rightMouseDown, 1), TapAnswer::deliver);
    EXPECT_EQ(calls.size(), 4U);
}

TEST_F(EventMonitorTest, LeftAndRightReleasesAreNotTapped) {
    start();
    handleButtons();
    EXPECT_EQ(button(EventType::leftMouseUp, 0), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::rightMouseUp, 1), TapAnswer::deliver);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_THAT(desktop.all<trace::Event>(), IsEmpty());
}

TEST_F(EventMonitorTest, WithoutHandlerEverythingPasses) {
    start();
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(scroll(1), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::deliver);
}

// Bypass

TEST_F(EventMonitorTest, SystemMenuOpenOtherButtonsPassButAreRecorded) {
    start();
    handleButtons();
    desktop.frontmost = "com.apple.systemuiserver";
    EXPECT_EQ(down(3), TapAnswer::deliver);
    desktop.time.runDue();
    ASSERT_TRUE(monitor->lastEvent.get().has_value());
    EXPECT_EQ(monitor->lastEvent.get()->type, "otherMouseDown");
    EXPECT_EQ(up(3), TapAnswer::deliver);
    desktop.time.runDue();
    EXPECT_EQ(monitor->lastEvent.get()->type, "otherMouseUp");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(EventMonitorTest, SystemMenuOpenLeftPressStillReachesTheHandler) {
    start();
    handleButtons();
    desktop.frontmost = "com.apple.systemuiserver";
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::swallow);
    EXPECT_EQ(calls.size(), 1U);
}

TEST_F(EventMonitorTest, StripAtTheFarEdgeOfAScreenIsBypassed) {
    start();
    handleButtons();
    desktop.screenFrames = {{0, 0, 1440, 900}, {1440, 0, 800, 600}};
    desktop.pointer = {10, 843.9};
    EXPECT_EQ(down(3), TapAnswer::swallow);
    up(3);
    desktop.pointer = {10, 844};
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::swallow);
    desktop.pointer = {1500, 544};
    EXPECT_EQ(down(3), TapAnswer::deliver);
    // Below the second screen no frame contains the location.
    desktop.pointer = {1500, 600};
    EXPECT_EQ(down(3), TapAnswer::swallow);
}

// Own windows

TEST_F(EventMonitorTest, OverOwnWindowScrollAndMotionPassUnchanged) {
    start();
    handleButtons();
    monitor->mouseSpeed = 0.5;
    monitor->scrollSpeedVertical = 3.0;
    desktop.windows = {{.frame = {700, 400, 100, 100}}};
    EXPECT_EQ(scroll(2), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 2);
    EXPECT_EQ(move(8, 8), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().deltaX, 8);
    EXPECT_THAT(calls, IsEmpty());
    desktop.time.runDue();
    EXPECT_FALSE(monitor->lastEvent.get().has_value());
}

TEST_F(EventMonitorTest, OverOwnWindowButtonsReachHandlerAndHistory) {
    start();
    handleButtons();
    desktop.windows = {{.frame = {700, 400, 100, 100}}};
    EXPECT_EQ(down(3), TapAnswer::swallow);
    desktop.time.runDue();
    EXPECT_EQ(monitor->lastEvent.get()->buttonNumber, 3);
}

TEST_F(EventMonitorTest, HiddenAndClearWindowsDoNotCount) {
    start();
    handleButtons();
    desktop.windows = {{.frame = {700, 400, 100, 100}, .visible = false},
                       {.frame = {700, 400, 100, 100}, .visible = true, .alpha = 0.01}};
    EXPECT_EQ(scroll(1), TapAnswer::swallow);
    desktop.windows.push_back({.frame = {700, 400, 100, 100}, .visible = true, .alpha = 0.02});
    EXPECT_EQ(scroll(1), TapAnswer::deliver);
}

// Virtual scroll buttons

TEST_F(EventMonitorTest, ScrollIsOfferedAsVirtualButton) {
    start();
    handleButtons();
    EXPECT_EQ(scroll(1), TapAnswer::swallow);
    EXPECT_EQ(scroll(-3, 5), TapAnswer::swallow);
    EXPECT_EQ(scroll(0, -2), TapAnswer::swallow);
    EXPECT_EQ(scroll(0, 2), TapAnswer::swallow);
    EXPECT_THAT(calls, ElementsAre(Call(-100, 0), Call(-101, 0), Call(-101, 0), Call(-100, 0)));
    EXPECT_EQ(desktop.messages(LogLevel::debug).front(), "Evento scroll virtual -100 consumido (swallowed)");
    EXPECT_EQ(desktop.messages(LogLevel::debug)[1], "Evento scroll virtual -101 consumido (swallowed)");
    desktop.time.runDue();
    EXPECT_FALSE(monitor->lastEvent.get().has_value());
}

TEST_F(EventMonitorTest, ScrollWithoutLinesCallsNoHandler) {
    start();
    handleButtons();
    EXPECT_EQ(scroll(0, 0), TapAnswer::deliver);
    EXPECT_THAT(calls, IsEmpty());
}

// Publishing

TEST_F(EventMonitorTest, RecordIsPublishedOneTurnLater) {
    start();
    desktop.time.runFor(Seconds{3});
    down(3);
    EXPECT_FALSE(monitor->lastEvent.get().has_value());
    desktop.time.runDue();
    EXPECT_EQ(monitor->lastEvent.get(),
              (MouseEventInfo{.type = "otherMouseDown", .buttonNumber = 3, .timestamp = desktop.time.now()}));
    EXPECT_THAT(monitor->debugLog.get(), IsEmpty());
}

TEST_F(EventMonitorTest, ScrollRecordKeepsTheRawDeltas) {
    start();
    monitor->swapScrollDirection = true;
    scroll(-1, 2);
    desktop.time.runDue();
    EXPECT_EQ(monitor->lastEvent.get(), (MouseEventInfo{.type = "scrollWheel",
                                                        .buttonNumber = -1,
                                                        .scrollDeltaX = 2,
                                                        .scrollDeltaY = -1,
                                                        .timestamp = desktop.time.now()}));
}

TEST_F(EventMonitorTest, DebugHistoryKeepsFiftyNewestFirst) {
    start();
    monitor->debugMode = true;
    for (std::int64_t number = 2; number < 53; ++number) {
        down(number);
        desktop.time.runDue();
    }
    const auto& log = monitor->debugLog.get();
    ASSERT_EQ(log.size(), 50U);
    EXPECT_EQ(log.front().buttonNumber, 52);
    EXPECT_EQ(log.back().buttonNumber, 3);
}

TEST_F(EventMonitorTest, HistoryOfABurstInOneTurnIsTheSame) {
    start();
    monitor->debugMode = true;
    for (std::int64_t number = 2; number < 202; ++number) down(number);
    desktop.time.runDue();
    const auto& log = monitor->debugLog.get();
    ASSERT_EQ(log.size(), 50U);
    EXPECT_EQ(log.front().buttonNumber, 201);
    EXPECT_EQ(log.back().buttonNumber, 152);
    EXPECT_EQ(monitor->lastEvent.get()->buttonNumber, 201);
}

TEST_F(EventMonitorTest, DebugModeWritesOneLineForEachEvent) {
    start();
    monitor->debugMode = true;
    button(EventType::leftMouseDown, 0);
    button(EventType::rightMouseDown, 1);
    down(4);
    up(4);
    scroll(-3, 2);
    EXPECT_THAT(
        desktop.messages(LogLevel::debug),
        ElementsAre("[leftMouseDown] button=0", "[rightMouseDown] button=1", "[otherMouseDown] button=4",
                    "[otherMouseUp] button=4", "[scrollWheel] dx=2 dy=-3"));
}

TEST_F(EventMonitorTest, MonitorGoneBeforeTheTurnPublishesNothing) {
    start();
    down(3);
    monitor->stop();
    monitor.reset();
    desktop.time.runDue();
    EXPECT_FALSE(desktop.tapExists());
}

TEST_F(EventMonitorTest, ScrollDeltaPastThirtyTwoBitsIsFatal) {
    start();
    EXPECT_DEATH(scroll(std::int64_t{1} << 32U), "32-bit range");
}

}  // namespace
}  // namespace trelvan
