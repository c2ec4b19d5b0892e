#include "Platform/Linux/PointerRoad.hpp"
#include "Support/AllocationCounter.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace trelvan {
namespace {

constexpr std::uint64_t everyType = ~std::uint64_t{0};
/// The types that the program taps: left and right releases are not among them.
constexpr std::uint64_t programMask = 0x0E4000EA;

class RecordedOutput : public PointerOutput {
  public:
    void button(int xButton, bool down) override {
        sent.push_back((down ? "+" : "-") + std::to_string(xButton));
    }
    void move(std::int64_t deltaX, std::int64_t deltaY) override {
        sent.push_back("move " + std::to_string(deltaX) + "," + std::to_string(deltaY));
    }
    std::vector<std::string> sent;
};

using Sent = std::vector<std::string>;

class PointerRoadTest : public testing::Test {
  protected:
    PointerRoadTest() {
        road.bounds = {.x = 1000, .y = 800};
        road.location = {.x = 100, .y = 100};
        connect(everyType);
    }

    void connect(std::uint64_t mask) {
        road.connect(
            mask,
            [](void* self, TapEvent& event) {
                auto& test = *static_cast<PointerRoadTest*>(self);
                test.seen.push_back(event);
                return test.decide ? test.decide(event) : TapAnswer::deliver;
            },
            this);
    }

    void swallowAll() {
        decide = [](TapEvent&) { return TapAnswer::swallow; };
    }
    void deliverAll() { decide = nullptr; }

    RecordedOutput output;
    std::atomic<std::uint32_t> cutOff{0};
    EventOrigin origin;
    PointerRoad road{output, cutOff, origin};
    PointerDevice mouse;
    PointerDevice trackball;
    std::vector<TapEvent> seen;
    std::function<TapAnswer(TapEvent&)> decide;
};

TEST_F(PointerRoadTest, PassedPress_HasItsReleasePassedWhateverTheAnswer) {
    road.button(mouse, 8, true);
    swallowAll();
    road.button(mouse, 8, false);
    EXPECT_EQ(output.sent, (Sent{"+8", "-8"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerRoadTest, SwallowedPress_SendsNothingForItsReleaseEither) {
    swallowAll();
    road.button(mouse, 8, true);
    deliverAll();
    road.button(mouse, 8, false);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerRoadTest, ReleaseOutsideTheMask_IsPassedUnasked) {
    connect(programMask);
    road.button(mouse, 1, true);
    road.button(mouse, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::leftMouseDown);
}

TEST_F(PointerRoadTest, Buttons_CarryQuartzTypeNumberFlagsAndLocation) {
    road.flags = flag::shift;
    for (const int button : {1, 3, 2, 9}) road.button(mouse, button, true);
    ASSERT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen[1].type, EventType::rightMouseDown);
    EXPECT_EQ(seen[1].buttonNumber, 1);
    EXPECT_EQ(seen[2].type, EventType::otherMouseDown);
    EXPECT_EQ(seen[2].buttonNumber, 2);
    EXPECT_EQ(seen[3].buttonNumber, 4);
    EXPECT_EQ(seen[3].flags, flag::shift);
    EXPECT_EQ(seen[3].location, (Point{100, 100}));
}

TEST_F(PointerRoadTest, ButtonHeldOnTwoDevices_IsOneButtonToTheOutput) {
    road.button(mouse, 1, true);
    road.button(trackball, 1, true);
    road.button(mouse, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1"}));
    road.button(trackball, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
}

TEST_F(PointerRoadTest, ButtonHeldOnTwoDevices_IsOfferedToTheCallbackOnce) {
    swallowAll();
    road.button(mouse, 8, true);
    road.button(trackball, 8, true);
    road.button(mouse, 8, false);
    EXPECT_EQ(seen.size(), 1U);
    road.button(trackball, 8, false);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1].type, EventType::otherMouseUp);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerRoadTest, ButtonSwallowedOnOneDevice_IsNotPassedForTheOther) {
    swallowAll();
    road.button(mouse, 8, true);
    deliverAll();
    road.button(trackball, 8, true);
    road.button(mouse, 8, false);
    road.button(trackball, 8, false);
    EXPECT_EQ(output.sent, Sent{});
    road.button(trackball, 8, true);
    EXPECT_EQ(output.sent, Sent{"+8"});
}

TEST_F(PointerRoadTest, ButtonHeldOnTwoDevices_StaysDownWhenOneIsLetGo) {
    road.button(mouse, 9, true);
    road.button(trackball, 9, true);
    road.letGo(mouse);
    EXPECT_EQ(output.sent, Sent{"+9"});
    road.button(trackball, 9, false);
    EXPECT_EQ(output.sent, (Sent{"+9", "-9"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerRoadTest, RepeatedEdge_IsIgnored) {
    road.button(mouse, 1, false);
    road.button(mouse, 1, true);
    road.button(mouse, 1, true);
    EXPECT_EQ(output.sent, (Sent{"+1"}));
}

TEST_F(PointerRoadTest, LettingGoOfADevice_ReleasesWhatWasPassedAndNothingElse) {
    road.button(mouse, 1, true);
    swallowAll();
    road.button(mouse, 9, true);
    road.letGo(mouse);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
    deliverAll();
    road.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::mouseMoved);
}

TEST_F(PointerRoadTest, TapTakenAwayInsideTheCallback_PressesNothingAfterwards) {
    decide = [this](TapEvent&) {
        road.letGo(mouse);
        return TapAnswer::deliver;
    };
    road.button(mouse, 1, true);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerRoadTest, FractionsOfMovement_AreCarriedPerDevice) {
    road.motion(mouse, 0.5, 0);
    road.motion(trackball, 0.5, 0);
    EXPECT_EQ(output.sent, Sent{});
    road.motion(mouse, 0.5, -1.25);
    EXPECT_EQ(output.sent, (Sent{"move 1,-1"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].location, (Point{101, 99}));
}

TEST_F(PointerRoadTest, RewrittenDeltas_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.deltaX *= 2;
        return TapAnswer::deliver;
    };
    road.motion(mouse, 3, 4);
    EXPECT_EQ(output.sent, (Sent{"move 6,4"}));
}

TEST_F(PointerRoadTest, CopySentInsideTheCallback_ReplacesTheMovement) {
    decide = [this](TapEvent& event) {
        TapEvent copy = event;
        copy.deltaX = 10;
        EXPECT_TRUE(road.sendCopy(copy));
        return TapAnswer::swallow;
    };
    road.motion(mouse, 3, 0);
    EXPECT_EQ(output.sent, (Sent{"move 10,0"}));
    EXPECT_EQ(road.location, (Pixel{110, 100}));
}

TEST_F(PointerRoadTest, CopyOutsideTheCallback_IsRefused) {
    TapEvent event;
    event.deltaX = 1;
    EXPECT_FALSE(road.sendCopy(event));
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerRoadTest, MovementWithAButtonHeld_IsADragOfThatButton) {
    road.button(mouse, 9, true);
    road.motion(trackball, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::otherMouseDragged);
    EXPECT_EQ(seen.back().buttonNumber, 4);
    road.button(mouse, 3, true);
    road.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::rightMouseDragged);
    road.button(mouse, 1, true);
    road.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::leftMouseDragged);
}

TEST_F(PointerRoadTest, TrackedLocation_StaysOnTheScreen) {
    road.motion(mouse, -500, 5000);
    EXPECT_EQ(road.location, (Pixel{0, 800}));
}

TEST_F(PointerRoadTest, LocationsCountFromTheMainMonitorWhereverItIsOnTheXScreen) {
    origin.set({40, 700});
    road.motion(mouse, 5, -5);
    road.button(mouse, 8, true);
    road.scroll(mouse, 1, 0);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[0].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[1].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[2].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(output.sent[0], "move 5,-5");
    // The edges are those of the X screen.
    road.motion(mouse, -5000, 5000);
    EXPECT_EQ(seen.back().location, (TopLeftPoint{-40, 100}));
    EXPECT_EQ(road.location, (Pixel{0, 800}));
}

TEST_F(PointerRoadTest, WheelLines_BecomeClicksAndFractionsAreCarriedPerAxis) {
    for (int turn = 0; turn < 8; ++turn) road.scroll(mouse, 0.25, -0.125);
    EXPECT_EQ(output.sent, (Sent{"+4", "-4", "+7", "-7", "+4", "-4"}));
    EXPECT_EQ(seen.back().scrollDeltaAxis1, 1);
    EXPECT_EQ(seen.back().scrollDeltaAxis2, -1);
    EXPECT_EQ(seen.back().scrollPointDeltaAxis1, 10);
}

TEST_F(PointerRoadTest, RewrittenWheelLines_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.scrollDeltaAxis1 = -2;
        return TapAnswer::deliver;
    };
    road.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"+5", "-5", "+5", "-5"}));
}

/// Takes everything and keeps nothing.
class SilentOutput : public PointerOutput {
  public:
    void button(int /*xButton*/, bool /*down*/) override { ++count; }
    void move(std::int64_t /*deltaX*/, std::int64_t /*deltaY*/) override { ++count; }
    int count = 0;
};

TEST(PointerRoadHotPath, MotionScrollAndPress_AllocateNothing) {
    SilentOutput output;
    const std::atomic<std::uint32_t> cutOff{0};
    const EventOrigin origin;
    PointerRoad road(output, cutOff, origin);
    PointerDevice mouse;
    road.bounds = {.x = 1000, .y = 800};
    road.connect(
        everyType, [](void*, TapEvent&) { return TapAnswer::deliver; }, nullptr);
    const auto before = test::allocationCount();
    for (int round = 0; round < 1000; ++round) {
        road.time += 100;
        road.motion(mouse, 0.7, -1.3);
        road.scroll(mouse, 0.4, 0);
        road.button(mouse, 9, round % 2 == 0);
    }
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_GT(output.count, 2000);
}

TEST_F(PointerRoadTest, DevicesTakenAwayInsideTheCallback_PassNothingOfWhatItAnswers) {
    decide = [this](TapEvent& event) {
        cutOff = 1;
        TapEvent copy = event;
        (void)road.sendCopy(copy);
        return TapAnswer::deliver;
    };
    road.motion(mouse, 1, 0);
    road.button(mouse, 1, true);
    road.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerRoadTest, DisabledTap_IsToldToTheCallbackWhateverTheMask) {
    connect(0);
    road.report(EventType::tapDisabledByTimeout);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::tapDisabledByTimeout);
}

class RunawayTest : public PointerRoadTest {
  protected:
    RunawayTest() {
        swallowAll();
        road.onRunaway = [this](int xButton) { stopped.push_back(xButton); };
    }
    void click(int button, std::uint32_t pause) {
        road.time += pause;
        road.button(mouse, button, true);
        road.button(mouse, button, false);
    }
    std::vector<int> stopped;
};

TEST_F(RunawayTest, ButtonThatFiresAHundredTimesASecond_IsStoppedOnceAndAskedNoMore) {
    for (int count = 0; stopped.empty() && count < 1000; ++count) click(8, 10);
    ASSERT_EQ(stopped, std::vector<int>{8});
    const auto asked = seen.size();
    for (int count = 0; count < 90; ++count) click(8, 10);
    // The release of the press that tripped is all.
    EXPECT_LE(seen.size(), asked + 1);
    EXPECT_EQ(stopped, std::vector<int>{8});
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, StoppedButton_IsServedAgainAfterASecond) {
    while (stopped.empty()) click(8, 10);
    click(8, 500);
    const auto asked = seen.size();
    click(8, 600);
    EXPECT_EQ(seen.size(), asked + 2);
}

TEST_F(RunawayTest, PressWhileStopped_HasItsReleaseUnaskedAfterThePauseToo) {
    while (stopped.empty()) click(8, 10);
    road.time += 900;
    road.button(mouse, 8, true);
    const auto asked = seen.size();
    road.time += 900;
    road.button(mouse, 8, false);
    EXPECT_EQ(seen.size(), asked);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, OtherButtonsOfTheSameDevice_GoOn) {
    while (stopped.empty()) click(8, 10);
    const auto asked = seen.size();
    click(9, 1);
    EXPECT_EQ(seen.size(), asked + 2);
}

TEST_F(RunawayTest, FastestFingerOnABouncingSwitch_IsNeverStopped) {
    for (int count = 0; count < 10'000; ++count) click(8, 34);
    EXPECT_TRUE(stopped.empty());
}

TEST_F(RunawayTest, PressesThatNobodyTakes_AreNeverStopped) {
    deliverAll();
    for (int count = 0; count < 1000; ++count) click(8, 1);
    EXPECT_TRUE(stopped.empty());
    EXPECT_EQ(output.sent.size(), 2000U);
}

TEST_F(RunawayTest, FreelySpinningWheel_IsNotStopped) {
    for (int count = 0; count < 10'000; ++count) {
        road.time += 8;
        road.scroll(mouse, 1, 0);
    }
    EXPECT_TRUE(stopped.empty());
}

TEST_F(RunawayTest, WheelThatFiresAThousandTimesASecond_IsStoppedInThatDirectionOnly) {
    while (stopped.empty()) {
        road.time += 1;
        road.scroll(mouse, -1, 0);
    }
    EXPECT_EQ(stopped, std::vector<int>{5});
    const auto asked = seen.size();
    road.scroll(mouse, -1, 0);
    EXPECT_EQ(seen.size(), asked);
    road.scroll(mouse, 1, 0);
    EXPECT_EQ(seen.size(), asked + 1);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, TimeThatWrapsAround_CountsOn) {
    road.time = 0xFFFFFF00U;
    for (int count = 0; stopped.empty() && count < 1000; ++count) click(8, 10);
    EXPECT_EQ(stopped, std::vector<int>{8});
}

TEST_F(PointerRoadTest, WithoutACallback_EverythingIsPassed) {
    road.connect(0, nullptr, nullptr);
    road.button(mouse, 1, true);
    road.motion(mouse, 1, 1);
    road.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"+1", "move 1,1", "+4", "-4"}));
}

}  // namespace
}  // namespace trelvan
