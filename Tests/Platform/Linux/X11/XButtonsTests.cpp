#include "Platform/Linux/X11/XButtons.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(ButtonNumbers, XButtons_HaveTheirQuartzNumbers) {
    EXPECT_EQ(quartzButton(1), 0);
    EXPECT_EQ(quartzButton(2), 2);
    EXPECT_EQ(quartzButton(3), 1);
    EXPECT_EQ(quartzButton(8), 3);
    EXPECT_EQ(quartzButton(9), 4);
}

TEST(ButtonNumbers, WheelButtonsAndNumbersOutsideX_HaveNone) {
    for (const int button : {-1, 0, 4, 5, 6, 7, 256}) EXPECT_EQ(quartzButton(button), std::nullopt) << button;
    EXPECT_EQ(xButton(-1), std::nullopt);
    EXPECT_EQ(xButton(251), std::nullopt);
}

TEST(ButtonNumbers, EveryXButton_RoundTrips) {
    for (int button = 1; button <= highestXButton; ++button) {
        if (isWheelButton(button)) continue;
        const auto number = quartzButton(button);
        ASSERT_TRUE(number.has_value()) << button;
        EXPECT_EQ(xButton(*number), button);
    }
}

TEST(ButtonNumbers, WheelButtons_AreLinesWithTheQuartzSign) {
    EXPECT_EQ(wheelLines(4), (WheelLines{.vertical = 1}));
    EXPECT_EQ(wheelLines(5), (WheelLines{.vertical = -1}));
    EXPECT_EQ(wheelLines(6), (WheelLines{.horizontal = 1}));
    EXPECT_EQ(wheelLines(7), (WheelLines{.horizontal = -1}));
    for (const int button : {0, 3, 8, 255}) EXPECT_EQ(wheelLines(button), std::nullopt) << button;
}

TEST(ButtonNumbers, WheelDirections_FollowTheQuartzSign) {
    EXPECT_EQ(wheelButton(1, true), 4);
    EXPECT_EQ(wheelButton(1, false), 5);
    EXPECT_EQ(wheelButton(2, true), 6);
    EXPECT_EQ(wheelButton(2, false), 7);
}

}  // namespace
}  // namespace trelvan
