#include "Desktop/DesktopTest.hpp"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <tuple>

namespace trelvan::desktop {
namespace {

/// How a movement of the hand becomes one of the pointer, worked out anew here, event by event.
class ExpectedPointer {
  public:
    ExpectedPointer(double pointerSpeed, double pointerAcceleration)
        : speed(pointerSpeed), acceleration(pointerAcceleration) {}

    Position scaled(int dx, int dy) {
        if (speed <= 1.0) return {never0(dx, std::round(dx * speed)), never0(dy, std::round(dy * speed))};
        const double handSpeed = std::hypot(dx, dy);
        const double part = std::min(handSpeed / ((1 - acceleration) * 20 + 8), 1.0);
        const double gain = std::pow(part, (1 - acceleration) * 2.5 + 1) * (speed - 1) + 1;
        return {never0(dx, carried(restX, gain * dx)), never0(dy, carried(restY, gain * dy))};
    }

  private:
    static int never0(int before, double after) {
        if (before != 0 && after == 0) return before > 0 ? 1 : -1;
        return static_cast<int>(after);
    }
    static double carried(double& rest, double value) {
        const double whole = std::round(value + rest);
        rest = value + rest - whole;
        return whole;
    }

    double speed;
    double acceleration;
    double restX = 0;
    double restY = 0;
};

using SpeedCase = std::tuple<double, double, bool>;

class PointerSpeedTest : public DesktopTest, public testing::WithParamInterface<SpeedCase> {
  protected:
    static Settings settings() {
        const auto [speed, acceleration, advanced] = GetParam();
        return Settings()
            .set("trackball_mouse_speed", speed)
            .set("trackball_mouse_acceleration", acceleration)
            .set("trackball_advanced_mouse_speed_enabled", advanced);
    }

    /// Makes the movements and checks where the pointer is after each.
    void moveAndCompare(const std::vector<Position>& steps) {
        ExpectedPointer expected(std::get<0>(GetParam()), std::get<1>(GetParam()));
        Position to = client().pointer();
        for (const Position& step : steps) {
            trackball().move(step.x, step.y);
            const Position moved = expected.scaled(step.x, step.y);
            to = {to.x + moved.x, to.y + moved.y};
            ASSERT_EQ(passSentinel(), to) << "after a movement by " << step.x << ", " << step.y;
        }
        EXPECT_EQ(client().pointer(), to);
    }
};

TEST_P(PointerSpeedTest, EveryMovementEndsWhereTheCurveSays) {
    start(settings());
    moveAndCompare(
        {{1, 0}, {3, 0}, {-2, 5}, {7, -7}, {25, 10}, {-40, -20}, {0, -1}, {12, 0}, {1, 1}, {-60, 45}});
}

TEST_P(PointerSpeedTest, SlowStrokeCarriesItsFractions) {
    start(settings());
    moveAndCompare(std::vector<Position>(40, Position{2, -1}));
}

TEST_P(PointerSpeedTest, StrokeWithoutPausesEndsWhereTheCurveSays) {
    start(settings());
    ExpectedPointer expected(std::get<0>(GetParam()), std::get<1>(GetParam()));
    Position to = client().pointer();
    for (int event = 0; event < 60; ++event) {
        const Position step{event % 9 - 3, 5 - event % 11};
        trackball().move(step.x, step.y);
        const Position moved = expected.scaled(step.x, step.y);
        to = {to.x + moved.x, to.y + moved.y};
    }
    EXPECT_EQ(passSentinel(), to);
}

TEST_P(PointerSpeedTest, DragIsScaledToo) {
    start(settings());
    ExpectedPointer expected(std::get<0>(GetParam()), std::get<1>(GetParam()));
    const Position from = client().pointer();
    trackball().press(1);
    trackball().move(30, 16);
    trackball().release(1);
    const Position moved = expected.scaled(30, 16);
    EXPECT_EQ(passSentinel(), (Position{from.x + moved.x, from.y + moved.y}));
    // A motion before the press is the pointer being taken over where it stands.
    const auto events = client().events();
    const auto press = std::ranges::find(events, Kind::buttonPress, &ClientEvent::kind);
    ASSERT_NE(press, events.end());
    const auto isMotion = [](const ClientEvent& event) { return event.kind == Kind::motion; };
    EXPECT_TRUE(std::any_of(press, events.end(), isMotion));
    for (const ClientEvent& event :
         std::ranges::subrange(press, events.end()) | std::views::filter(isMotion)) {
        EXPECT_EQ(event.state & Button1Mask, static_cast<unsigned>(Button1Mask));
    }
}

std::string caseName(const testing::TestParamInfo<SpeedCase>& info) {
    const auto [speed, acceleration, advanced] = info.param;
    return "Speed" + std::to_string(std::lround(speed * 10)) + "Acceleration" +
           std::to_string(std::lround(acceleration * 10)) + (advanced ? "Advanced" : "Simple");
}

INSTANTIATE_TEST_SUITE_P(BelowAndAtOne, PointerSpeedTest,
                         testing::Combine(testing::Values(0.5, 0.8, 1.0), testing::Values(0.6),
                                          testing::Bool()),
                         caseName);
INSTANTIATE_TEST_SUITE_P(AboveOne, PointerSpeedTest,
                         testing::Combine(testing::Values(1.3), testing::Values(0.0, 0.6, 1.0),
                                          testing::Bool()),
                         caseName);

}  // namespace
}  // namespace trelvan::desktop
