#include "Desktop/DesktopTest.hpp"

#include <cstdlib>
#include <tuple>

/// The pointer at the edges of the screen, with both ways of moving it.
namespace trelvan::desktop {
namespace {

constexpr int right = VirtualDesktop::width - 1;
constexpr int bottom = VirtualDesktop::height - 1;

using EdgeCase = std::tuple<Position, double, bool>;

class EdgeTest : public DesktopTest, public testing::WithParamInterface<EdgeCase> {
  protected:
    [[nodiscard]] static Position corner() { return std::get<0>(GetParam()); }
    [[nodiscard]] static int inwardX() { return corner().x == 0 ? 1 : -1; }
    [[nodiscard]] static int inwardY() { return corner().y == 0 ? 1 : -1; }

    void start() {
        DesktopTest::start(Settings()
                               .set("trackball_mouse_speed", std::get<1>(GetParam()))
                               .set("trackball_mouse_acceleration", 0.0)
                               .set("trackball_advanced_mouse_speed_enabled", std::get<2>(GetParam())));
    }

    /// Moves of one unit, which every speed leaves as they are.
    void walk(int stepsX, int stepsY) {
        for (int step = 0; step < std::abs(stepsX); ++step) trackball().move(stepsX > 0 ? 1 : -1, 0);
        for (int step = 0; step < std::abs(stepsY); ++step) trackball().move(0, stepsY > 0 ? 1 : -1);
    }

    /// Where the pointer is once everything that was sent has arrived. The client's window does not reach to
    /// the edges, so what the program does is awaited by the pointer's place itself.
    [[nodiscard]] bool comesTo(Position to) {
        return waitUntil([&] { return client().pointer() == to; });
    }
};

TEST_P(EdgeTest, PushedIntoTheCornerAndBackItEndsWhereAnUnpushedPointerWould) {
    start();
    client().warpPointer(corner());
    for (int push = 0; push < 50; ++push) trackball().move(-40 * inwardX(), -40 * inwardY());
    ASSERT_TRUE(comesTo(corner()));
    walk(100 * inwardX(), 70 * inwardY());
    EXPECT_TRUE(comesTo({corner().x + 100 * inwardX(), corner().y + 70 * inwardY()}))
        << client().pointer().x << ", " << client().pointer().y;
}

TEST_P(EdgeTest, RunIntoTheCornerFromFarStopsThere) {
    start();
    for (int run = 0; run < 120; ++run) trackball().move(-21 * inwardX(), -13 * inwardY());
    ASSERT_TRUE(comesTo(corner()));
    // One unit inward must show at once: nothing of the push may be left to be undone first.
    trackball().move(inwardX(), inwardY());
    EXPECT_TRUE(comesTo({corner().x + inwardX(), corner().y + inwardY()}));
}

TEST_P(EdgeTest, AlongTheEdgeTheOtherAxisMovesFreely) {
    start();
    client().warpPointer(corner());
    for (int step = 0; step < 60; ++step) trackball().move(-5 * inwardX(), inwardY());
    EXPECT_TRUE(comesTo({corner().x, corner().y + 60 * inwardY()}));
}

std::string caseName(const testing::TestParamInfo<EdgeCase>& info) {
    const auto& [corner, speed, advanced] = info.param;
    return std::string(corner.y == 0 ? "Top" : "Bottom") + (corner.x == 0 ? "Left" : "Right") + "Speed" +
           std::to_string(static_cast<int>(speed * 10)) + (advanced ? "Advanced" : "Simple");
}

INSTANTIATE_TEST_SUITE_P(Corners, EdgeTest,
                         testing::Combine(testing::Values(Position{0, 0}, Position{right, 0},
                                                          Position{0, bottom}, Position{right, bottom}),
                                          testing::Values(0.5, 1.0, 1.3), testing::Bool()),
                         caseName);

}  // namespace
}  // namespace trelvan::desktop
