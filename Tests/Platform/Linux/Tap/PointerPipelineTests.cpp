#include "Platform/Linux/Tap/PointerPipeline.hpp"
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
    void button(std::int64_t number, bool down) override {
        sent.push_back((down ? "+" : "-") + std::to_string(number));
    }
    void scroll(std::int64_t vertical, std::int64_t horizontal) override {
        sent.push_back("scroll " + std::to_string(vertical) + "," + std::to_string(horizontal));
    }
    void move(std::int64_t deltaX, std::int64_t deltaY) override {
        sent.push_back("move " + std::to_string(deltaX) + "," + std::to_string(deltaY));
    }
    std::vector<std::string> sent;
};

using Sent = std::vector<std::string>;

class PointerPipelineTest : public testing::Test {
  protected:
    PointerPipelineTest() {
        pipeline.setLastPixel({.x = 1000, .y = 800});
        pipeline.pointerIsAt({.x = 100, .y = 100});
        connect(everyType);
    }

    void connect(std::uint64_t mask) {
        pipeline.connect(
            mask,
            [](void* self, TapEvent& event) {
                auto& test = *static_cast<PointerPipelineTest*>(self);
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
    PointerPipeline pipeline{output, cutOff, origin};
    PointerDevice mouse;
    PointerDevice trackball;
    EventStamp now;
    std::vector<TapEvent> seen;
    std::function<TapAnswer(TapEvent&)> decide;
};

TEST_F(PointerPipelineTest, PassedPress_HasItsReleasePassedWhateverTheAnswer) {
    pipeline.button(mouse, now, 3, true);
    swallowAll();
    pipeline.button(mouse, now, 3, false);
    EXPECT_EQ(output.sent, (Sent{"+3", "-3"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerPipelineTest, SwallowedPress_SendsNothingForItsReleaseEither) {
    swallowAll();
    pipeline.button(mouse, now, 3, true);
    deliverAll();
    pipeline.button(mouse, now, 3, false);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, ReleaseOutsideTheMask_IsPassedUnasked) {
    connect(programMask);
    pipeline.button(mouse, now, 0, true);
    pipeline.button(mouse, now, 0, false);
    EXPECT_EQ(output.sent, (Sent{"+0", "-0"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::leftMouseDown);
}

TEST_F(PointerPipelineTest, Buttons_CarryQuartzTypeNumberFlagsAndLocation) {
    now.flags = flag::shift;
    for (const std::int64_t button : {0, 1, 2, 4}) pipeline.button(mouse, now, button, true);
    ASSERT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen[1].type, EventType::rightMouseDown);
    EXPECT_EQ(seen[1].buttonNumber, 1);
    EXPECT_EQ(seen[2].type, EventType::otherMouseDown);
    EXPECT_EQ(seen[2].buttonNumber, 2);
    EXPECT_EQ(seen[3].buttonNumber, 4);
    EXPECT_EQ(seen[3].flags, flag::shift);
    EXPECT_EQ(seen[3].location, (Point{100, 100}));
}

TEST_F(PointerPipelineTest, ButtonHeldOnTwoDevices_IsOneButtonToTheOutput) {
    pipeline.button(mouse, now, 0, true);
    pipeline.button(trackball, now, 0, true);
    pipeline.button(mouse, now, 0, false);
    EXPECT_EQ(output.sent, (Sent{"+0"}));
    pipeline.button(trackball, now, 0, false);
    EXPECT_EQ(output.sent, (Sent{"+0", "-0"}));
}

TEST_F(PointerPipelineTest, ButtonHeldOnTwoDevices_IsOfferedToTheCallbackOnce) {
    swallowAll();
    pipeline.button(mouse, now, 3, true);
    pipeline.button(trackball, now, 3, true);
    pipeline.button(mouse, now, 3, false);
    EXPECT_EQ(seen.size(), 1U);
    pipeline.button(trackball, now, 3, false);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1].type, EventType::otherMouseUp);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, ButtonSwallowedOnOneDevice_IsNotPassedForTheOther) {
    swallowAll();
    pipeline.button(mouse, now, 3, true);
    deliverAll();
    pipeline.button(trackball, now, 3, true);
    pipeline.button(mouse, now, 3, false);
    pipeline.button(trackball, now, 3, false);
    EXPECT_EQ(output.sent, Sent{});
    pipeline.button(trackball, now, 3, true);
    EXPECT_EQ(output.sent, Sent{"+3"});
}

TEST_F(PointerPipelineTest, ButtonHeldOnTwoDevices_StaysDownWhenOneIsLetGo) {
    pipeline.button(mouse, now, 4, true);
    pipeline.button(trackball, now, 4, true);
    pipeline.letGo(mouse);
    EXPECT_EQ(output.sent, Sent{"+4"});
    pipeline.button(trackball, now, 4, false);
    EXPECT_EQ(output.sent, (Sent{"+4", "-4"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerPipelineTest, RepeatedEdge_IsIgnored) {
    pipeline.button(mouse, now, 0, false);
    pipeline.button(mouse, now, 0, true);
    pipeline.button(mouse, now, 0, true);
    EXPECT_EQ(output.sent, (Sent{"+0"}));
}

TEST_F(PointerPipelineTest, LettingGoOfADevice_ReleasesWhatWasPassedAndNothingElse) {
    pipeline.button(mouse, now, 0, true);
    swallowAll();
    pipeline.button(mouse, now, 4, true);
    pipeline.letGo(mouse);
    EXPECT_EQ(output.sent, (Sent{"+0", "-0"}));
    deliverAll();
    pipeline.motion(mouse, now, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::mouseMoved);
}

TEST_F(PointerPipelineTest, TapTakenAwayInsideTheCallback_PressesNothingAfterwards) {
    decide = [this](TapEvent&) {
        pipeline.letGo(mouse);
        return TapAnswer::deliver;
    };
    pipeline.button(mouse, now, 0, true);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, FractionsOfMovement_AreCarriedPerDevice) {
    pipeline.motion(mouse, now, 0.5, 0);
    pipeline.motion(trackball, now, 0.5, 0);
    EXPECT_EQ(output.sent, Sent{});
    pipeline.motion(mouse, now, 0.5, -1.25);
    EXPECT_EQ(output.sent, (Sent{"move 1,-1"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].location, (Point{101, 99}));
}

TEST_F(PointerPipelineTest, RewrittenDeltas_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.deltaX *= 2;
        return TapAnswer::deliver;
    };
    pipeline.motion(mouse, now, 3, 4);
    EXPECT_EQ(output.sent, (Sent{"move 6,4"}));
}

TEST_F(PointerPipelineTest, CopySentInsideTheCallback_ReplacesTheMovement) {
    decide = [this](TapEvent& event) {
        TapEvent copy = event;
        copy.deltaX = 10;
        EXPECT_TRUE(pipeline.sendCopy(copy));
        return TapAnswer::swallow;
    };
    pipeline.motion(mouse, now, 3, 0);
    EXPECT_EQ(output.sent, (Sent{"move 10,0"}));
    EXPECT_EQ(pipeline.location(), (Pixel{110, 100}));
}

TEST_F(PointerPipelineTest, CopyOutsideTheCallback_IsRefused) {
    TapEvent event;
    event.deltaX = 1;
    EXPECT_FALSE(pipeline.sendCopy(event));
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, MovementWithAButtonHeld_IsADragOfThatButton) {
    pipeline.button(mouse, now, 4, true);
    pipeline.motion(trackball, now, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::otherMouseDragged);
    EXPECT_EQ(seen.back().buttonNumber, 4);
    pipeline.button(mouse, now, 2, true);
    pipeline.button(mouse, now, 1, true);
    pipeline.motion(mouse, now, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::rightMouseDragged);
    EXPECT_EQ(seen.back().buttonNumber, 1);
    pipeline.button(mouse, now, 0, true);
    pipeline.motion(mouse, now, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::leftMouseDragged);
}

TEST_F(PointerPipelineTest, TrackedLocation_StaysOnTheScreen) {
    pipeline.motion(mouse, now, -500, 5000);
    EXPECT_EQ(pipeline.location(), (Pixel{0, 800}));
}

TEST_F(PointerPipelineTest, LocationsCountFromTheMainMonitorWhereverItIsOnTheXScreen) {
    origin.set({40, 700});
    pipeline.motion(mouse, now, 5, -5);
    pipeline.button(mouse, now, 3, true);
    pipeline.scroll(mouse, now, 1, 0);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[0].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[1].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[2].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(output.sent[0], "move 5,-5");
    // The edges are those of the X screen.
    pipeline.motion(mouse, now, -5000, 5000);
    EXPECT_EQ(seen.back().location, (TopLeftPoint{-40, 100}));
    EXPECT_EQ(pipeline.location(), (Pixel{0, 800}));
}

TEST_F(PointerPipelineTest, WheelLines_AreSentWholeAndFractionsAreCarriedPerAxis) {
    for (int turn = 0; turn < 8; ++turn) pipeline.scroll(mouse, now, 0.25, -0.125);
    EXPECT_EQ(output.sent, (Sent{"scroll 1,0", "scroll 1,-1"}));
    EXPECT_EQ(seen.back().scrollDeltaAxis1, 1);
    EXPECT_EQ(seen.back().scrollDeltaAxis2, -1);
    EXPECT_EQ(seen.back().scrollPointDeltaAxis1, 10);
}

TEST_F(PointerPipelineTest, RewrittenWheelLines_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.scrollDeltaAxis1 = -2;
        return TapAnswer::deliver;
    };
    pipeline.scroll(mouse, now, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"scroll -2,0"}));
}

/// Takes everything and keeps nothing.
class SilentOutput : public PointerOutput {
  public:
    void button(std::int64_t /*number*/, bool /*down*/) override { ++count; }
    void scroll(std::int64_t /*vertical*/, std::int64_t /*horizontal*/) override { ++count; }
    void move(std::int64_t /*deltaX*/, std::int64_t /*deltaY*/) override { ++count; }
    int count = 0;
};

TEST(PointerPipelineHotPath, MotionScrollAndPress_AllocateNothing) {
    SilentOutput output;
    const std::atomic<std::uint32_t> cutOff{0};
    const EventOrigin origin;
    PointerPipeline pipeline(output, cutOff, origin);
    PointerDevice mouse;
    EventStamp now;
    pipeline.setLastPixel({.x = 1000, .y = 800});
    pipeline.connect(
        everyType, [](void*, TapEvent&) { return TapAnswer::deliver; }, nullptr);
    const auto before = test::allocationCount();
    for (int round = 0; round < 1000; ++round) {
        now.time += 100;
        pipeline.motion(mouse, now, 0.7, -1.3);
        pipeline.scroll(mouse, now, 0.4, 0);
        pipeline.button(mouse, now, 4, round % 2 == 0);
    }
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_GT(output.count, 2000);
}

TEST_F(PointerPipelineTest, DevicesTakenAwayInsideTheCallback_PassNothingOfWhatItAnswers) {
    decide = [this](TapEvent& event) {
        cutOff = 1;
        TapEvent copy = event;
        (void)pipeline.sendCopy(copy);
        return TapAnswer::deliver;
    };
    pipeline.motion(mouse, now, 1, 0);
    pipeline.button(mouse, now, 0, true);
    pipeline.scroll(mouse, now, 1, 0);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, NumberThatNoButtonHas_IsIgnored) {
    for (const std::int64_t number : {std::int64_t{-1}, highestPointerButton + 1})
        pipeline.button(mouse, now, number, true);
    EXPECT_EQ(output.sent, Sent{});
    EXPECT_TRUE(seen.empty());
    pipeline.button(mouse, now, highestPointerButton, true);
    EXPECT_EQ(output.sent, Sent{"+255"});
}

TEST_F(PointerPipelineTest, WheelLinesTakenOutByTheCallback_SendNothing) {
    decide = [](TapEvent& event) {
        event.scrollDeltaAxis1 = 0;
        return TapAnswer::deliver;
    };
    pipeline.scroll(mouse, now, 1, 0);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, DisabledTap_IsToldToTheCallbackWhateverTheMask) {
    connect(0);
    pipeline.report(EventType::tapDisabledByTimeout);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::tapDisabledByTimeout);
}

using Stopped = std::vector<PointerControl>;

constexpr PointerControl button3{std::int64_t{3}};

class RunawayTest : public PointerPipelineTest {
  protected:
    RunawayTest() {
        swallowAll();
        pipeline.onRunaway = [this](const PointerControl& control) { stopped.push_back(control); };
    }
    void click(std::int64_t button, std::uint32_t pause) {
        now.time += pause;
        pipeline.button(mouse, now, button, true);
        pipeline.button(mouse, now, button, false);
    }
    std::vector<PointerControl> stopped;
};

TEST_F(RunawayTest, ButtonThatFiresAHundredTimesASecond_IsStoppedOnceAndAskedNoMore) {
    for (int count = 0; stopped.empty() && count < 1000; ++count) click(3, 10);
    ASSERT_EQ(stopped, Stopped{button3});
    const auto asked = seen.size();
    for (int count = 0; count < 90; ++count) click(3, 10);
    // The release of the press that tripped is all.
    EXPECT_LE(seen.size(), asked + 1);
    EXPECT_EQ(stopped, Stopped{button3});
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, StoppedButton_IsServedAgainAfterASecond) {
    while (stopped.empty()) click(3, 10);
    click(3, 500);
    const auto asked = seen.size();
    click(3, 600);
    EXPECT_EQ(seen.size(), asked + 2);
}

TEST_F(RunawayTest, PressWhileStopped_HasItsReleaseUnaskedAfterThePauseToo) {
    while (stopped.empty()) click(3, 10);
    now.time += 900;
    pipeline.button(mouse, now, 3, true);
    const auto asked = seen.size();
    now.time += 900;
    pipeline.button(mouse, now, 3, false);
    EXPECT_EQ(seen.size(), asked);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, OtherButtonsOfTheSameDevice_GoOn) {
    while (stopped.empty()) click(3, 10);
    const auto asked = seen.size();
    click(4, 1);
    EXPECT_EQ(seen.size(), asked + 2);
}

TEST_F(RunawayTest, FastestFingerOnABouncingSwitch_IsNeverStopped) {
    for (int count = 0; count < 10'000; ++count) click(3, 34);
    EXPECT_TRUE(stopped.empty());
}

TEST_F(RunawayTest, PressesThatNobodyTakes_AreNeverStopped) {
    deliverAll();
    for (int count = 0; count < 1000; ++count) click(3, 1);
    EXPECT_TRUE(stopped.empty());
    EXPECT_EQ(output.sent.size(), 2000U);
}

TEST_F(RunawayTest, FreelySpinningWheel_IsNotStopped) {
    for (int count = 0; count < 10'000; ++count) {
        now.time += 8;
        pipeline.scroll(mouse, now, 1, 0);
    }
    EXPECT_TRUE(stopped.empty());
}

TEST_F(RunawayTest, WheelThatFiresAThousandTimesASecond_IsStoppedInThatDirectionOnly) {
    while (stopped.empty()) {
        now.time += 1;
        pipeline.scroll(mouse, now, -1, 0);
    }
    EXPECT_EQ(stopped, Stopped{WheelDirection::down});
    const auto asked = seen.size();
    pipeline.scroll(mouse, now, -1, 0);
    EXPECT_EQ(seen.size(), asked);
    pipeline.scroll(mouse, now, 1, 0);
    EXPECT_EQ(seen.size(), asked + 1);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, TimeThatWrapsAround_CountsOn) {
    now.time = 0xFFFFFF00U;
    for (int count = 0; stopped.empty() && count < 1000; ++count) click(3, 10);
    EXPECT_EQ(stopped, Stopped{button3});
}

TEST_F(PointerPipelineTest, WithoutACallback_EverythingIsPassed) {
    pipeline.connect(0, nullptr, nullptr);
    pipeline.button(mouse, now, 0, true);
    pipeline.motion(mouse, now, 1, 1);
    pipeline.scroll(mouse, now, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"+0", "move 1,1", "scroll 1,0"}));
}

}  // namespace
}  // namespace trelvan
