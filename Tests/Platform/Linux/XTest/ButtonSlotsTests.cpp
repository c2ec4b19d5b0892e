#include "Platform/Linux/XTest/ButtonSlots.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(ButtonSlotsTest, ButtonOfTheDeviceIsItself) {
    ButtonSlots slots(10);
    for (int button = 1; button <= 10; ++button) EXPECT_EQ(slots.press(button), button);
    for (int button = 1; button <= 10; ++button) EXPECT_EQ(slots.release(button), button);
}

TEST(ButtonSlotsTest, ButtonBeyondBorrowsTheHighestFreePlaceUntilItIsUp) {
    ButtonSlots slots(10);
    EXPECT_EQ(slots.press(12), 10);
    EXPECT_EQ(slots.press(13), 9);
    EXPECT_EQ(slots.press(3), 3);
    EXPECT_EQ(slots.lent(), (std::vector<int>{9, 10}));
    EXPECT_EQ(slots.release(12), 10);
    EXPECT_EQ(slots.press(14), 10);
    EXPECT_EQ(slots.release(13), 9);
    EXPECT_EQ(slots.release(14), 10);
}

TEST(ButtonSlotsTest, ButtonWhosePlaceIsLentTakesAnother) {
    ButtonSlots slots(10);
    EXPECT_EQ(slots.press(12), 10);
    EXPECT_EQ(slots.press(10), 9);
    EXPECT_EQ(slots.release(12), 10);
    EXPECT_EQ(slots.release(10), 9);
    EXPECT_EQ(slots.press(10), 10);
}

TEST(ButtonSlotsTest, ClicksAndWheelAreNeverLent) {
    ButtonSlots slots(10);
    EXPECT_TRUE(slots.press(11));
    EXPECT_TRUE(slots.press(12));
    EXPECT_TRUE(slots.press(13));
    EXPECT_EQ(slots.press(14), std::nullopt);
    EXPECT_EQ(slots.press(1), 1);
    EXPECT_EQ(slots.press(4), 4);
}

TEST(ButtonSlotsTest, ReleaseOfAButtonThatIsNotDownHasNoPlace) {
    ButtonSlots slots(10);
    EXPECT_EQ(slots.release(12), std::nullopt);
    EXPECT_EQ(slots.release(0), std::nullopt);
}

TEST(ButtonSlotsTest, SecondPressOfTheSameButtonKeepsItsPlace) {
    ButtonSlots slots(10);
    EXPECT_EQ(slots.press(12), 10);
    EXPECT_EQ(slots.press(12), 10);
    EXPECT_EQ(slots.release(12), 10);
    EXPECT_EQ(slots.release(12), std::nullopt);
}

}  // namespace
}  // namespace trelvan
