#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using test::TestDesktop;

TapAnswer deliverAll(void* seen, TapEvent& /*event*/) {
    ++*static_cast<int*>(seen);
    return TapAnswer::deliver;
}

TEST(SimulatedDesktopTest, UntappedTypesDoNotReachTheTap) {
    TestDesktop desktop;
    int seen = 0;
    ASSERT_TRUE(desktop.eventTap().create(maskBit(EventType::otherMouseDown), &deliverAll, &seen));
    desktop.eventTap().enable(true);
    desktop.send({.type = EventType::leftMouseUp});
    EXPECT_EQ(seen, 0);
    EXPECT_TRUE(desktop.entries.empty());
    desktop.send({.type = EventType::otherMouseDown});
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(desktop.all<trace::Event>().size(), 1U);
}

TEST(SimulatedDesktopTest, TapThatIsOffLetsEverythingPast) {
    TestDesktop desktop;
    int seen = 0;
    ASSERT_TRUE(desktop.eventTap().create(~std::uint64_t{0}, &deliverAll, &seen));
    desktop.send({.type = EventType::mouseMoved});
    desktop.eventTap().enable(true);
    desktop.eventTap().remove();
    desktop.send({.type = EventType::mouseMoved});
    EXPECT_EQ(seen, 0);
}

TEST(SimulatedDesktopTest, TapIsRefusedWithoutAccessibility) {
    TestDesktop desktop;
    desktop.accessibility = false;
    EXPECT_FALSE(desktop.eventTap().create(0, &deliverAll, nullptr));
}

TEST(SimulatedDesktopTest, MarkedCopyComesBackOneTurnLater) {
    TestDesktop desktop;
    int seen = 0;
    ASSERT_TRUE(desktop.eventTap().create(maskBit(EventType::mouseMoved), &deliverAll, &seen));
    desktop.eventTap().enable(true);
    ASSERT_TRUE(desktop.eventPoster().postCopy({.deltaX = 4, .sourceUserData = 9}, TapLocation::hid));
    EXPECT_EQ(seen, 0);
    desktop.time.runDue();
    EXPECT_EQ(seen, 1);
    const auto events = desktop.all<trace::Event>();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_TRUE(events[0].marked);
    EXPECT_EQ(events[0].event.deltaX, 4);
}

TEST(SimulatedDesktopTest, PointerIsTurnedRoundAgainstTheMainScreen) {
    TestDesktop desktop;
    desktop.pointer = {10, 100};
    EXPECT_EQ(desktop.screens().pointerLocation(), (BottomLeftPoint{10, 800}));
}

TEST(SimulatedDesktopTest, IdleTimeCountsFromTheLastEventOfTheType) {
    TestDesktop desktop;
    desktop.time.runFor(Seconds{10});
    desktop.send({.type = EventType::mouseMoved});
    desktop.time.runFor(Seconds{5});
    EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(EventType::mouseMoved), 5.0);
    EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(EventType::keyDown), 15.0);
}

TEST(SimulatedDesktopTest, PostedPointerEvents_EndTheIdleTimeOnlyWhereTheyCount) {
    for (const bool counts : {false, true}) {
        TestDesktop desktop;
        desktop.postedCountsAsActivity = counts;
        desktop.time.runFor(Seconds{10});
        for (const auto type : {EventType::mouseMoved, EventType::leftMouseDown}) {
            const auto event = desktop.eventPoster().makeMouse(type, 0, {1, 1});
            ASSERT_TRUE(event);
            desktop.eventPoster().post(*event, TapLocation::session);
            EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(type), counts ? 0.0 : 10.0);
        }
        EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(EventType::rightMouseDown), 10.0);
    }
}

}  // namespace
}  // namespace trelvan
