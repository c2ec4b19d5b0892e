#include "Core/RadialLayout.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace trelvan {
namespace {

constexpr BottomLeftRect screen{0, 0, 1440, 900};
constexpr BottomLeftPoint middle{720, 450};

void expectNear(Point point, Point expected) {
    EXPECT_NEAR(point.x, expected.x, 1e-9);
    EXPECT_NEAR(point.y, expected.y, 1e-9);
}

TEST(RadialLayoutTests, NoEntriesLeaveTheCentre) {
    const auto layout = RadialLayout::make(middle, screen, 0);
    EXPECT_EQ(layout.centre, (Point{720, 450}));
    EXPECT_TRUE(layout.entries.empty());
}

TEST(RadialLayoutTests, OneEntryStandsStraightAboveTheCentre) {
    const auto layout = RadialLayout::make(middle, screen, 1);
    ASSERT_EQ(layout.entries.size(), 1U);
    expectNear(layout.entries[0], {720, 450 - 138});
}

TEST(RadialLayoutTests, FourEntriesGoClockwiseFromTheTop) {
    const auto layout = RadialLayout::make(middle, screen, 4);
    ASSERT_EQ(layout.entries.size(), 4U);
    expectNear(layout.entries[0], {720, 312});
    expectNear(layout.entries[1], {858, 450});
    expectNear(layout.entries[2], {720, 588});
    expectNear(layout.entries[3], {582, 450});
}

TEST(RadialLayoutTests, EntriesOfAnyNumberAreEquallySpacedOnTheCircle) {
    for (std::size_t count = 1; count <= 8; ++count) {
        const auto layout = RadialLayout::make(middle, screen, count);
        ASSERT_EQ(layout.entries.size(), count);
        for (std::size_t index = 0; index < count; ++index) {
            const double dx = layout.entries[index].x - layout.centre.x;
            const double dy = layout.entries[index].y - layout.centre.y;
            EXPECT_NEAR(std::hypot(dx, dy), 138, 1e-9);
            // Clockwise from straight up.
            double turn = std::atan2(dx, -dy);
            if (turn < -1e-9) turn += 2 * std::numbers::pi;
            EXPECT_NEAR(turn, 2 * std::numbers::pi * static_cast<double>(index) / static_cast<double>(count),
                        1e-9);
        }
    }
}

TEST(RadialLayoutTests, TenEntriesShowTheFirstEight) {
    const auto ten = RadialLayout::make(middle, screen, 10);
    EXPECT_EQ(ten.entries, RadialLayout::make(middle, screen, 8).entries);
}

TEST(RadialLayoutTests, CornersKeepTheWholeRingOnTheScreen) {
    // The pointer counts from the bottom, the overlay from the top.
    EXPECT_EQ(RadialLayout::make({0, 900}, screen, 1).centre, (Point{248, 248}));
    EXPECT_EQ(RadialLayout::make({1440, 900}, screen, 1).centre, (Point{1192, 248}));
    EXPECT_EQ(RadialLayout::make({0, 0}, screen, 1).centre, (Point{248, 652}));
    EXPECT_EQ(RadialLayout::make({1440, 0}, screen, 1).centre, (Point{1192, 652}));
    EXPECT_EQ(RadialLayout::make({100, 450}, screen, 1).centre, (Point{248, 450}));
}

TEST(RadialLayoutTests, ScreensWithNegativeOriginsCountFromTheirOwnCorner) {
    const BottomLeftRect left{-1920, -180, 1920, 1080};
    EXPECT_EQ(RadialLayout::make({-960, 360}, left, 1).centre, (Point{960, 540}));
    EXPECT_EQ(RadialLayout::make({-1920, 900}, left, 1).centre, (Point{248, 248}));
    EXPECT_EQ(RadialLayout::make({-1, -180}, left, 1).centre, (Point{1672, 832}));
}

TEST(RadialLayoutTests, ScreenSmallerThanTheRingIsMeasuredFromItsFarEdge) {
    const BottomLeftRect small{0, 0, 320, 240};
    EXPECT_EQ(RadialLayout::make({160, 120}, small, 1).centre, (Point{320 - 248, 240 - 248}));
}

TEST(RadialLayoutTests, OtherRadiiMoveEntriesAndMargins) {
    const auto layout = RadialLayout::make({0, 900}, screen, 1, 50, 82);
    EXPECT_EQ(layout.centre, (Point{100, 100}));
    expectNear(layout.entries[0], {100, 50});
}

}  // namespace
}  // namespace trelvan
