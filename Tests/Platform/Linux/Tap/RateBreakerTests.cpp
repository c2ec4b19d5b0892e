#include "Platform/Linux/Tap/RateBreaker.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

constexpr PointerControl button{std::int64_t{3}};
constexpr PointerControl wheelUp{WheelDirection::up};

class RateBreakerTest : public testing::TestWithParam<PointerControl> {
  protected:
    /// Fires as fast as the clock counts until the breaker trips.
    void trip() {
        for (int count = 0; count < 100'000; ++count) {
            ++now;
            if (breaker.trips(GetParam(), now)) return;
        }
        FAIL() << "it never trips";
    }
    /// How many of so many presses, that far apart, are served.
    int served(int presses, std::uint32_t apart) {
        int count = 0;
        for (int press = 0; press < presses; ++press) {
            now += apart;
            if (breaker.isStopped(GetParam(), now)) continue;
            ++count;
            EXPECT_FALSE(breaker.trips(GetParam(), now));
        }
        return count;
    }

    std::uint32_t now = 5'000;
    RateBreaker breaker;
};

TEST_P(RateBreakerTest, AfterItsSecond_EveryPressIsServed) {
    for (int round = 0; round < 3; ++round) {
        trip();
        EXPECT_EQ(served(4, 240), 0);
        now += 40;
        EXPECT_EQ(served(20, 100), 20);
        EXPECT_EQ(served(20, 999), 20);
        EXPECT_EQ(served(2'000, 35), 2'000);
    }
}

TEST_P(RateBreakerTest, PressesDuringThePause_DoNotProlongIt) {
    trip();
    EXPECT_EQ(served(999, 1), 0);
    EXPECT_EQ(served(1, 1), 1);
}

TEST_P(RateBreakerTest, TimeThatWrapsAroundDuringThePause_EndsIt) {
    now = 0xFFFFFFFFU - 300;
    trip();
    EXPECT_EQ(served(1, 500), 0);
    EXPECT_EQ(served(20, 500), 20);
}

TEST_P(RateBreakerTest, TimeThatGoesBackALittle_NeitherServesNorStops) {
    now = 900'000;
    trip();
    EXPECT_TRUE(breaker.isStopped(GetParam(), now - 5));
    now += 2'000;
    EXPECT_FALSE(breaker.isStopped(GetParam(), now));
    EXPECT_FALSE(breaker.trips(GetParam(), now));
    EXPECT_FALSE(breaker.trips(GetParam(), now - 5));
    EXPECT_FALSE(breaker.isStopped(GetParam(), now - 5));
}

TEST(RateBreakerControls, ButtonThatTrips_StopsNoOtherAndNoWheel) {
    RateBreaker breaker;
    std::uint32_t now = 5'000;
    while (!breaker.trips(button, now)) ++now;
    EXPECT_TRUE(breaker.isStopped(button, now));
    for (const PointerControl other :
         {PointerControl{std::int64_t{0}}, PointerControl{highestPointerButton}, wheelUp,
          PointerControl{WheelDirection::down}, PointerControl{WheelDirection::right}}) {
        EXPECT_FALSE(breaker.isStopped(other, now));
    }
}

INSTANTIATE_TEST_SUITE_P(ButtonAndWheel, RateBreakerTest, testing::Values(button, wheelUp));

}  // namespace
}  // namespace trelvan
