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
    void button(int xButton, bool down) override {
        sent.push_back((down ? "+" : "-") + std::to_string(xButton));
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
        pipeline.bounds = {.x = 1000, .y = 800};
        pipeline.location = {.x = 100, .y = 100};
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
    std::vector<TapEvent> seen;
    std::function<TapAnswer(TapEvent&)> decide;
};

TEST_F(PointerPipelineTest, PassedPress_HasItsReleasePassedWhateverTheAnswer) {
    pipeline.button(mouse, 8, true);
    swallowAll();
    pipeline.button(mouse, 8, false);
    EXPECT_EQ(output.sent, (Sent{"+8", "-8"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerPipelineTest, SwallowedPress_SendsNothingForItsReleaseEither) {
    swallowAll();
    pipeline.button(mouse, 8, true);
    deliverAll();
    pipeline.button(mouse, 8, false);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, ReleaseOutsideTheMask_IsPassedUnasked) {
    connect(programMask);
    pipeline.button(mouse, 1, true);
    pipeline.button(mouse, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::leftMouseDown);
}

TEST_F(PointerPipelineTest, Buttons_CarryQuartzTypeNumberFlagsAndLocation) {
    pipeline.flags = flag::shift;
    for (const int button : {1, 3, 2, 9}) pipeline.button(mouse, button, true);
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
    pipeline.button(mouse, 1, true);
    pipeline.button(trackball, 1, true);
    pipeline.button(mouse, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1"}));
    pipeline.button(trackball, 1, false);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
}

TEST_F(PointerPipelineTest, ButtonHeldOnTwoDevices_IsOfferedToTheCallbackOnce) {
    swallowAll();
    pipeline.button(mouse, 8, true);
    pipeline.button(trackball, 8, true);
    pipeline.button(mouse, 8, false);
    EXPECT_EQ(seen.size(), 1U);
    pipeline.button(trackball, 8, false);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1].type, EventType::otherMouseUp);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, ButtonSwallowedOnOneDevice_IsNotPassedForTheOther) {
    swallowAll();
    pipeline.button(mouse, 8, true);
    deliverAll();
    pipeline.button(trackball, 8, true);
    pipeline.button(mouse, 8, false);
    pipeline.button(trackball, 8, false);
    EXPECT_EQ(output.sent, Sent{});
    pipeline.button(trackball, 8, true);
    EXPECT_EQ(output.sent, Sent{"+8"});
}

TEST_F(PointerPipelineTest, ButtonHeldOnTwoDevices_StaysDownWhenOneIsLetGo) {
    pipeline.button(mouse, 9, true);
    pipeline.button(trackball, 9, true);
    pipeline.letGo(mouse);
    EXPECT_EQ(output.sent, Sent{"+9"});
    pipeline.button(trackball, 9, false);
    EXPECT_EQ(output.sent, (Sent{"+9", "-9"}));
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(PointerPipelineTest, RepeatedEdge_IsIgnored) {
    pipeline.button(mouse, 1, false);
    pipeline.button(mouse, 1, true);
    pipeline.button(mouse, 1, true);
    EXPECT_EQ(output.sent, (Sent{"+1"}));
}

TEST_F(PointerPipelineTest, LettingGoOfADevice_ReleasesWhatWasPassedAndNothingElse) {
    pipeline.button(mouse, 1, true);
    swallowAll();
    pipeline.button(mouse, 9, true);
    pipeline.letGo(mouse);
    EXPECT_EQ(output.sent, (Sent{"+1", "-1"}));
    deliverAll();
    pipeline.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::mouseMoved);
}

TEST_F(PointerPipelineTest, TapTakenAwayInsideTheCallback_PressesNothingAfterwards) {
    decide = [this](TapEvent&) {
        pipeline.letGo(mouse);
        return TapAnswer::deliver;
    };
    pipeline.button(mouse, 1, true);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, FractionsOfMovement_AreCarriedPerDevice) {
    pipeline.motion(mouse, 0.5, 0);
    pipeline.motion(trackball, 0.5, 0);
    EXPECT_EQ(output.sent, Sent{});
    pipeline.motion(mouse, 0.5, -1.25);
    EXPECT_EQ(output.sent, (Sent{"move 1,-1"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].location, (Point{101, 99}));
}

TEST_F(PointerPipelineTest, RewrittenDeltas_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.deltaX *= 2;
        return TapAnswer::deliver;
    };
    pipeline.motion(mouse, 3, 4);
    EXPECT_EQ(output.sent, (Sent{"move 6,4"}));
}

TEST_F(PointerPipelineTest, CopySentInsideTheCallback_ReplacesTheMovement) {
    decide = [this](TapEvent& event) {
        TapEvent copy = event;
        copy.deltaX = 10;
        EXPECT_TRUE(pipeline.sendCopy(copy));
        return TapAnswer::swallow;
    };
    pipeline.motion(mouse, 3, 0);
    EXPECT_EQ(output.sent, (Sent{"move 10,0"}));
    EXPECT_EQ(pipeline.location, (Pixel{110, 100}));
}

TEST_F(PointerPipelineTest, CopyOutsideTheCallback_IsRefused) {
    TapEvent event;
    event.deltaX = 1;
    EXPECT_FALSE(pipeline.sendCopy(event));
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, MovementWithAButtonHeld_IsADragOfThatButton) {
    pipeline.button(mouse, 9, true);
    pipeline.motion(trackball, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::otherMouseDragged);
    EXPECT_EQ(seen.back().buttonNumber, 4);
    pipeline.button(mouse, 3, true);
    pipeline.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::rightMouseDragged);
    pipeline.button(mouse, 1, true);
    pipeline.motion(mouse, 1, 0);
    EXPECT_EQ(seen.back().type, EventType::leftMouseDragged);
}

TEST_F(PointerPipelineTest, TrackedLocation_StaysOnTheScreen) {
    pipeline.motion(mouse, -500, 5000);
    EXPECT_EQ(pipeline.location, (Pixel{0, 800}));
}

TEST_F(PointerPipelineTest, LocationsCountFromTheMainMonitorWhereverItIsOnTheXScreen) {
    origin.set({40, 700});
    pipeline.motion(mouse, 5, -5);
    pipeline.button(mouse, 8, true);
    pipeline.scroll(mouse, 1, 0);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[0].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[1].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(seen[2].location, (TopLeftPoint{65, -605}));
    EXPECT_EQ(output.sent[0], "move 5,-5");
    // The edges are those of the X screen.
    pipeline.motion(mouse, -5000, 5000);
    EXPECT_EQ(seen.back().location, (TopLeftPoint{-40, 100}));
    EXPECT_EQ(pipeline.location, (Pixel{0, 800}));
}

TEST_F(PointerPipelineTest, WheelLines_BecomeClicksAndFractionsAreCarriedPerAxis) {
    for (int turn = 0; turn < 8; ++turn) pipeline.scroll(mouse, 0.25, -0.125);
    EXPECT_EQ(output.sent, (Sent{"+4", "-4", "+7", "-7", "+4", "-4"}));
    EXPECT_EQ(seen.back().scrollDeltaAxis1, 1);
    EXPECT_EQ(seen.back().scrollDeltaAxis2, -1);
    EXPECT_EQ(seen.back().scrollPointDeltaAxis1, 10);
}

TEST_F(PointerPipelineTest, RewrittenWheelLines_AreWhatIsSent) {
    decide = [](TapEvent& event) {
        event.scrollDeltaAxis1 = -2;
        return TapAnswer::deliver;
    };
    pipeline.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"+5", "-5", "+5", "-5"}));
}

/// Takes everything and keeps nothing.
class SilentOutput : public PointerOutput {
  public:
    void button(int /*xButton*/, bool /*down*/) override { ++count; }
    void move(std::int64_t /*deltaX*/, std::int64_t /*deltaY*/) override { ++count; }
    int count = 0;
};

TEST(PointerPipelineHotPath, MotionScrollAndPress_AllocateNothing) {
    SilentOutput output;
    const std::atomic<std::uint32_t> cutOff{0};
    const EventOrigin origin;
    PointerPipeline pipeline(output, cutOff, origin);
    PointerDevice mouse;
    pipeline.bounds = {.x = 1000, .y = 800};
    pipeline.connect(
        everyType, [](void*, TapEvent&) { return TapAnswer::deliver; }, nullptr);
    const auto before = test::allocationCount();
    for (int round = 0; round < 1000; ++round) {
        pipeline.time += 100;
        pipeline.motion(mouse, 0.7, -1.3);
        pipeline.scroll(mouse, 0.4, 0);
        pipeline.button(mouse, 9, round % 2 == 0);
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
    pipeline.motion(mouse, 1, 0);
    pipeline.button(mouse, 1, true);
    pipeline.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(PointerPipelineTest, DisabledTap_IsToldToTheCallbackWhateverTheMask) {
    connect(0);
    pipeline.report(EventType::tapDisabledByTimeout);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].type, EventType::tapDisabledByTimeout);
}

class RunawayTest : public PointerPipelineTest {
  protected:
    RunawayTest() {
        swallowAll();
        pipeline.onRunaway = [this](int xButton) { stopped.push_back(xButton); };
    }
    void click(int button, std::uint32_t pause) {
        pipeline.time += pause;
        pipeline.button(mouse, button, true);
        pipeline.button(mouse, button, false);
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
    pipeline.time += 900;
    pipeline.button(mouse, 8, true);
    const auto asked = seen.size();
    pipeline.time += 900;
    pipeline.button(mouse, 8, false);
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
        pipeline.time += 8;
        pipeline.scroll(mouse, 1, 0);
    }
    EXPECT_TRUE(stopped.empty());
}

TEST_F(RunawayTest, WheelThatFiresAThousandTimesASecond_IsStoppedInThatDirectionOnly) {
    while (stopped.empty()) {
        pipeline.time += 1;
        pipeline.scroll(mouse, -1, 0);
    }
    EXPECT_EQ(stopped, std::vector<int>{5});
    const auto asked = seen.size();
    pipeline.scroll(mouse, -1, 0);
    EXPECT_EQ(seen.size(), asked);
    pipeline.scroll(mouse, 1, 0);
    EXPECT_EQ(seen.size(), asked + 1);
    EXPECT_EQ(output.sent, Sent{});
}

TEST_F(RunawayTest, TimeThatWrapsAround_CountsOn) {
    pipeline.time = 0xFFFFFF00U;
    for (int count = 0; stopped.empty() && count < 1000; ++count) click(8, 10);
    EXPECT_EQ(stopped, std::vector<int>{8});
}

TEST_F(PointerPipelineTest, WithoutACallback_EverythingIsPassed) {
    pipeline.connect(0, nullptr, nullptr);
    pipeline.button(mouse, 1, true);
    pipeline.motion(mouse, 1, 1);
    pipeline.scroll(mouse, 1, 0);
    EXPECT_EQ(output.sent, (Sent{"+1", "move 1,1", "+4", "-4"}));
}

}  // namespace
}  // namespace trelvan
