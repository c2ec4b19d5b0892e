#include "Platform/Linux/PixelPlace.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace trelvan {
namespace {

constexpr double bottom = 900;

TEST(PixelPlace, CornersOfAScreen_AreOnIt) {
    // Two screens side by side, the right one lower by 100 pixels.
    constexpr Rect left{0, 0, 1440, 900};
    constexpr Rect right{1440, -280, 1920, 1080};
    EXPECT_TRUE(left.contains(placeOfPixel({0, 0}, bottom)));
    EXPECT_TRUE(left.contains(placeOfPixel({1439, 899}, bottom)));
    EXPECT_TRUE(right.contains(placeOfPixel({1440, 100}, bottom)));
    EXPECT_TRUE(right.contains(placeOfPixel({3359, 1179}, bottom)));
    EXPECT_FALSE(right.contains(placeOfPixel({1440, 99}, bottom)));
    EXPECT_FALSE(right.contains(placeOfPixel({1440, 1180}, bottom)));
}

TEST(PixelPlace, UppermostRowOfALowerScreen_IsNotOnTheOneAbove) {
    constexpr Rect above{0, 900, 1440, 900};
    constexpr Rect below{0, 0, 1440, 900};
    EXPECT_FALSE(above.contains(placeOfPixel({10, 0}, bottom)));
    EXPECT_TRUE(below.contains(placeOfPixel({10, 0}, bottom)));
    EXPECT_TRUE(above.contains(placeOfPixel({10, -1}, bottom)));
}

TEST(PixelPlace, ClickAtThePlace_HitsThePixel) {
    for (const double row : {0.0, 1.0, 449.0, 899.0})
        EXPECT_EQ(std::lround(bottom - placeOfPixel({0, row}, bottom).y), std::lround(row));
}

}  // namespace
}  // namespace trelvan
