#include "Platform/Linux/X11/EventOrigin.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

/// Monitors as they can stand on the X screen, the main one first.
struct Arrangement {
    std::string name;
    std::vector<PixelRect> monitors;
};

void PrintTo(const Arrangement& arrangement, std::ostream* out) {
    *out << arrangement.name;
}

class Arrangements : public testing::TestWithParam<Arrangement> {
  protected:
    Arrangements() { origin.set({monitors.front().x, monitors.front().y}); }

    [[nodiscard]] BottomLeftPoint placeOf(Pixel pixel) const {
        return placeOfPixel(origin.location(pixel), frames.front().height);
    }

    const std::vector<PixelRect>& monitors = GetParam().monitors;
    EventOrigin origin;
    std::vector<BottomLeftRect> frames = screenFrames(monitors);
};

TEST_P(Arrangements, MainScreen_HasItsLowerLeftCornerAtTheOrigin) {
    EXPECT_EQ(frames.front().x, 0);
    EXPECT_EQ(frames.front().y, 0);
    ASSERT_EQ(frames.size(), monitors.size());
    for (std::size_t index = 0; index < frames.size(); ++index) {
        EXPECT_EQ(frames[index].width, monitors[index].width);
        EXPECT_EQ(frames[index].height, monitors[index].height);
    }
}

TEST_P(Arrangements, CornerPixels_AreOnTheirScreenAndOnNoOther) {
    for (std::size_t index = 0; index < frames.size(); ++index) {
        const PixelRect& monitor = monitors[index];
        for (const int x : {monitor.x, monitor.x + monitor.width - 1}) {
            for (const int y : {monitor.y, monitor.y + monitor.height - 1}) {
                for (std::size_t other = 0; other < frames.size(); ++other)
                    EXPECT_EQ(frames[other].contains(placeOf({x, y})), other == index) << x << ", " << y;
            }
        }
    }
}

TEST_P(Arrangements, PlaceTurnedIntoAnEvent_IsThePixelAgain) {
    for (const auto& monitor : monitors) {
        for (const int row : {0, 1, monitor.height / 2, monitor.height - 1}) {
            const Pixel pixel{monitor.x + row % monitor.width, monitor.y + row};
            EXPECT_EQ(origin.pixel(countedFromTop(placeOf(pixel), frames.front().height)), pixel);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EventOrigin, Arrangements,
    testing::Values(Arrangement{"one", {{0, 0, 1440, 900}}},
                    Arrangement{"right of the main one and lower",
                                {{0, 0, 1440, 900}, {1440, 100, 1920, 1080}}},
                    Arrangement{"laptop below a monitor", {{277, 1080, 1366, 768}, {0, 0, 1920, 1080}}},
                    Arrangement{"aligned at the bottom", {{1920, 312, 1366, 768}, {0, 0, 1920, 1080}}},
                    Arrangement{"main one above", {{0, 0, 1920, 1080}, {277, 1080, 1366, 768}}},
                    Arrangement{"main one in the middle of five",
                                {{1000, 1000, 1001, 701},
                                 {1000, 299, 1001, 701},
                                 {1000, 1701, 1001, 701},
                                 {0, 1111, 1000, 333},
                                 {2001, 777, 640, 1480}}},
                    Arrangement{"upright beside a wide one", {{1080, 420, 2560, 1080}, {0, 0, 1080, 1920}}}));

TEST(EventOriginTest, UppermostRowOfALowerScreen_IsNotOnTheOneAbove) {
    const std::vector<PixelRect> stacked{{0, 900, 1440, 900}, {0, 0, 1440, 900}};
    const auto frames = screenFrames(stacked);
    EventOrigin origin;
    origin.set({0, 900});
    const auto place = [&](int row) { return placeOfPixel(origin.location({10, row}), 900); };
    EXPECT_TRUE(frames[0].contains(place(900)));
    EXPECT_FALSE(frames[1].contains(place(900)));
    EXPECT_TRUE(frames[1].contains(place(899)));
}

TEST(EventOriginTest, LocationsOnScreensLeftOfAndAboveTheMainOne_AreNegative) {
    EventOrigin origin;
    origin.set({1920, 312});
    EXPECT_EQ(origin.location({0, 0}), (TopLeftPoint{-1920, -312}));
    EXPECT_EQ(origin.pixel({-1920, -312}), (Pixel{0, 0}));
    EXPECT_EQ(origin.pixel({-0.4, 0.6}), (Pixel{1920, 313}));
}

TEST(EventOriginTest, WithoutMonitors_ThereAreNoFrames) {
    EXPECT_TRUE(screenFrames({}).empty());
}

}  // namespace
}  // namespace trelvan
