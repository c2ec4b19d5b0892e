#include "Core/Shaping.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

namespace trelvan {
namespace {

using Deltas = std::pair<std::int64_t, std::int64_t>;

TEST(ScaledDeltaTest, HalvesRoundAwayFromZero) {
    EXPECT_EQ(scaledDelta(1, 0.5), 1);
    EXPECT_EQ(scaledDelta(3, 0.5), 2);
    EXPECT_EQ(scaledDelta(-1, 0.5), -1);
    EXPECT_EQ(scaledDelta(-3, 0.5), -2);
}

TEST(ScaledDeltaTest, MovementNeverVanishes) {
    EXPECT_EQ(scaledDelta(1, 0.2), 1);
    EXPECT_EQ(scaledDelta(-2, 0.2), -1);
    EXPECT_EQ(scaledDelta(3, 0.2), 1);
    EXPECT_EQ(scaledDelta(0, 3.0), 0);
}

TEST(ScaledDeltaTest, ResultOutsideTheRangeIsFatal) {
    EXPECT_DEATH((void)scaledDelta(std::numeric_limits<std::int64_t>::max(), 2.0), "64-bit range");
}

TEST(PointerGainTest, RisesFromOneToTheSpeedAndIsTheSpeedBelowOne) {
    EXPECT_EQ(pointerGain(40, 0.5, 0.6), 0.5);
    EXPECT_EQ(pointerGain(0, 2.0, 0.6), 1.0);
    EXPECT_EQ(pointerGain(28, 2.0, 0.0), 2.0);
    EXPECT_EQ(pointerGain(8, 2.0, 1.0), 2.0);
    EXPECT_NEAR(pointerGain(1, 2.0, 0.6), 1.0039, 0.0001);
}

TEST(PointerShaperTest, UpToSpeedOneResidualsAreLeftAlone) {
    PointerShaper shaper{.residualX = 0.3, .residualY = -0.2};
    EXPECT_EQ(shaper.scale(1, 3, 0.5, 0.6), Deltas(1, 2));
    EXPECT_EQ(shaper.scale(7, -7, 1.0, 0.6), Deltas(7, -7));
    EXPECT_EQ(shaper.residualX, 0.3);
    EXPECT_EQ(shaper.residualY, -0.2);
}

TEST(PointerShaperTest, SlowMotionKeepsItsGainAndGathersTheFraction) {
    PointerShaper shaper;
    EXPECT_EQ(shaper.scale(1, 0, 2.0, 0.6), Deltas(1, 0));
    EXPECT_NEAR(shaper.residualX, 0.0039, 0.0001);
    EXPECT_EQ(shaper.scale(1, 0, 2.0, 0.6), Deltas(1, 0));
    EXPECT_NEAR(shaper.residualX, 0.0078, 0.0001);
}

TEST(PointerShaperTest, FastMotionReachesFullSpeed) {
    PointerShaper shaper;
    EXPECT_EQ(shaper.scale(40, 0, 2.0, 0.0), Deltas(80, 0));
    EXPECT_EQ(shaper.scale(0, -40, 2.0, 0.0), Deltas(0, -80));
}

TEST(PointerShaperTest, FractionsAddUpOverALongStroke) {
    PointerShaper shaper;
    std::int64_t total = 0;
    for (int event = 0; event < 1000; ++event) total += shaper.scale(4, 0, 1.3, 1.0).first;
    // Hand speed 4 of 8 with exponent 1: gain 1.15 on 4 points, a thousand times.
    EXPECT_EQ(total, 4600);
}

TEST(PointerShaperTest, ForcedMinimumStepLeavesTheResidual) {
    PointerShaper shaper{.residualX = -0.9, .residualY = 0};
    EXPECT_EQ(shaper.scale(1, 0, 2.0, 0.6), Deltas(1, 0));
    // The exact value was 0.1; the step of 1 that was forced is not taken from it.
    EXPECT_NEAR(shaper.residualX, 0.1039, 0.0001);
}

TEST(PointerShaperTest, MovementTooLongForItsSquareIsFatal) {
    PointerShaper shaper;
    EXPECT_DEATH((void)shaper.scale(std::int64_t{1} << 40U, 0, 2.0, 0.6), "length of a movement");
}

}  // namespace
}  // namespace trelvan
