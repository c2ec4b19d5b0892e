#include "Support/AllocationCounter.hpp"
#include "Support/HotPath.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace trelvan {
namespace {

using test::allocationCount;
using test::HotPath;

/// How often a thousand of the event allocate, the later work of each included, once everything is warm.
std::uint64_t allocationsOf(HotPath& path, const TapEvent& event) {
    for (int warmUp = 0; warmUp < 100; ++warmUp) {
        path.send(event);
        path.drain();
    }
    const auto before = allocationCount();
    for (int round = 0; round < 1000; ++round) {
        path.send(event);
        path.drain();
    }
    return allocationCount() - before;
}

constexpr TapEvent motion{.type = EventType::mouseMoved, .deltaX = 9, .deltaY = -5};
constexpr TapEvent wheel{.type = EventType::scrollWheel, .scrollDeltaAxis1 = 3};

TEST(HotPathTest, CounterSeesAllocations) {
    const auto before = allocationCount();
    const auto one = std::make_unique<int>(1);
    EXPECT_GT(allocationCount(), before);
    EXPECT_EQ(*one, 1);
}

TEST(HotPathTest, PassedMotionAllocatesNothing) {
    HotPath path;
    EXPECT_EQ(allocationsOf(path, motion), 0U);
}

TEST(HotPathTest, ShapedMotionAllocatesNothingInBothEngines) {
    HotPath path;
    path.monitor->mouseSpeed = 1.3;
    EXPECT_EQ(allocationsOf(path, motion), 0U);
    path.monitor->advancedMouseSpeedEnabled = false;
    EXPECT_EQ(allocationsOf(path, motion), 0U);
}

TEST(HotPathTest, ScrollAllocatesNothingPassedOrShaped) {
    HotPath path;
    EXPECT_EQ(allocationsOf(path, wheel), 0U);
    path.monitor->scrollSpeedVertical = 2.0;
    EXPECT_EQ(allocationsOf(path, wheel), 0U);
}

TEST(HotPathTest, PressAllocatesNothingUpToItsAction) {
    for (const int mappings : {0, 5, 1000}) {
        HotPath path(mappings);
        const TapEvent press{.type = EventType::otherMouseDown, .buttonNumber = 2 + mappings / 2};
        EXPECT_EQ(allocationsOf(path, press), 0U) << mappings;
        const TapEvent unmapped{.type = EventType::otherMouseDown, .buttonNumber = 31 + 1000};
        EXPECT_EQ(allocationsOf(path, unmapped), 0U) << mappings;
    }
}

TEST(HotPathTest, ObservedPressesAndTurnsAllocateNothingInTheTap) {
    HotPath path;
    std::int64_t told = 0;
    const auto observing =
        path.monitor->presses.observe([&told](const ObservedPress& press) { told += press.buttonNumber; });
    path.send(wheel);
    const auto before = allocationCount();
    for (int round = 0; round < 1000; ++round) path.send(wheel);
    EXPECT_EQ(allocationCount() - before, 0U);
    path.drain();
    EXPECT_EQ(told, -64 * 100) << "the newest of them are kept";
}

}  // namespace
}  // namespace trelvan
