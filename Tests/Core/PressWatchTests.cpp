#include "Core/PressWatch.hpp"
#include "Support/HotPath.hpp"
#include "Support/MonitorFixture.hpp"

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ObservedPress::Kind;

class PressWatchTest : public test::MonitorFixture {
  protected:
    void SetUp() override {
        start();
        handleButtons();
    }
    void observe() {
        observing = monitor->presses.observe([this](const ObservedPress& press) { seen.push_back(press); });
    }
    void takeNext() {
        monitor->presses.takeNext([this](std::int64_t number) { taken.push_back(number); });
    }
    void overOwnWindow() { desktop.windows = {{.frame = {0, 0, 2000, 2000}, .visible = true, .alpha = 1}}; }

    std::vector<ObservedPress> seen;
    std::vector<std::int64_t> taken;
    Subscription observing;
};

TEST_F(PressWatchTest, PressesReleasesAndTurnsAreToldOneTurnLaterWithTheirModifiers) {
    observe();
    button(EventType::leftMouseDown, 0);
    button(EventType::otherMouseDown, 4, flag::shift);
    up(4);
    scroll(-2);
    EXPECT_THAT(seen, IsEmpty());
    desktop.time.runDue();
    EXPECT_THAT(seen, ElementsAre(ObservedPress{Kind::down, 0, 0}, ObservedPress{Kind::down, 4, flag::shift},
                                  ObservedPress{Kind::up, 4, 0}, ObservedPress{Kind::turn, -101, 0}));
}

TEST_F(PressWatchTest, TurnsOverOwnWindowsAreToldToo) {
    observe();
    overOwnWindow();
    EXPECT_EQ(scroll(1), TapAnswer::deliver);
    desktop.time.runDue();
    EXPECT_THAT(seen, ElementsAre(ObservedPress{Kind::turn, -100, 0}));
}

TEST_F(PressWatchTest, NobodyIsToldAfterTheSubscriptionEnds) {
    observe();
    observing.reset();
    down(3);
    desktop.time.runDue();
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(PressWatchTest, TakenPressDoesNothingElseAndNeitherDoesItsRelease) {
    observe();
    takeNext();
    EXPECT_EQ(down(5), TapAnswer::swallow);
    EXPECT_EQ(up(5), TapAnswer::swallow);
    desktop.time.runDue();
    EXPECT_THAT(taken, ElementsAre(5));
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_EQ(down(5), TapAnswer::swallow);
    EXPECT_EQ(calls.size(), 1U) << "one press is taken, not all of them";
}

TEST_F(PressWatchTest, ReleaseOfATakenPressIsTakenInTheSystemsStripToo) {
    takeNext();
    desktop.pointer = {700, 890};
    EXPECT_EQ(down(5), TapAnswer::swallow);
    EXPECT_EQ(up(5), TapAnswer::swallow);
}

TEST_F(PressWatchTest, LeftAndRightAreNeverTaken) {
    takeNext();
    button(EventType::leftMouseDown, 0);
    button(EventType::rightMouseDown, 1);
    desktop.time.runDue();
    EXPECT_THAT(taken, IsEmpty());
    EXPECT_EQ(calls.size(), 2U);
    EXPECT_TRUE(monitor->presses.isTaking());
}

TEST_F(PressWatchTest, TurnIsTakenOverAnOwnWindowByItsDirection) {
    takeNext();
    overOwnWindow();
    EXPECT_EQ(scroll(0, -3), TapAnswer::swallow);
    desktop.time.runDue();
    EXPECT_THAT(taken, ElementsAre(-101));
    EXPECT_FALSE(monitor->presses.isTaking());
}

TEST_F(PressWatchTest, CancelledTakerLeavesThePressAlone) {
    takeNext();
    monitor->presses.cancelTaking();
    down(3);
    desktop.time.runDue();
    EXPECT_THAT(taken, IsEmpty());
    EXPECT_EQ(calls.size(), 1U);
}

TEST_F(PressWatchTest, PressTakenButNotYetToldIsNotToldAfterTheEnd) {
    takeNext();
    down(3);
    monitor->presses.cancelTaking();
    desktop.time.runDue();
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(PressWatchTest, NothingIsTakenBehindALockedScreen) {
    takeNext();
    desktop.changeSession(true, true);
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(scroll(1), TapAnswer::deliver);
    desktop.time.runDue();
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(PressWatchTest, TakerMayTakeTheNextOneToo) {
    monitor->presses.takeNext([this](std::int64_t number) {
        taken.push_back(number);
        takeNext();
    });
    down(3);
    desktop.time.runDue();
    down(4);
    desktop.time.runDue();
    EXPECT_THAT(taken, ElementsAre(3, 4));
}

TEST_F(PressWatchTest, OldestAreGivenUpWhenEventsOutrunTheLoop) {
    observe();
    for (int number = 0; number < 70; ++number) down(100 + number);
    desktop.time.runDue();
    ASSERT_EQ(seen.size(), 64U);
    EXPECT_EQ(seen.front().buttonNumber, 106);
    EXPECT_EQ(seen.back().buttonNumber, 169);
}

}  // namespace
}  // namespace trelvan
