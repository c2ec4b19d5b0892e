#include "Platform/Linux/Tap/FractionCarry.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace trelvan {
namespace {

TEST(FractionCarry, EightEighths_MakeOneWholeExactlyAtTheLast) {
    FractionCarry carry;
    for (int turn = 0; turn < 7; ++turn) EXPECT_EQ(carry.take(0.125), 0);
    EXPECT_EQ(carry.take(0.125), 1);
}

TEST(FractionCarry, TenTenths_MakeOneDespiteRounding) {
    FractionCarry carry;
    std::int64_t sum = 0;
    for (int turn = 0; turn < 10; ++turn) sum += carry.take(0.1);
    EXPECT_EQ(sum, 1);
}

TEST(FractionCarry, LongStroke_LosesNothing) {
    FractionCarry carry;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> amounts(-3.0, 3.0);
    double exact = 0;
    std::int64_t whole = 0;
    for (int event = 0; event < 100'000; ++event) {
        const double amount = amounts(random);
        exact += amount;
        whole += carry.take(amount);
        ASSERT_LT(std::abs(exact - static_cast<double>(whole)), 1.001);
    }
}

TEST(FractionCarry, ThereAndBack_EndsWhereItBegan) {
    FractionCarry carry;
    std::int64_t position = 0;
    for (int event = 0; event < 300; ++event) position += carry.take(0.37);
    for (int event = 0; event < 300; ++event) position += carry.take(-0.37);
    EXPECT_EQ(position, 0);
}

TEST(FractionCarry, AmountsBeyondEveryDevice_AreCutAndLeaveNothingBehind) {
    FractionCarry carry;
    EXPECT_EQ(carry.take(1e300), 2'147'483'647);
    EXPECT_EQ(carry.take(-std::numeric_limits<double>::infinity()), -2'147'483'647);
    EXPECT_EQ(carry.take(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(carry.take(1.5), 1);
    EXPECT_EQ(carry.take(0.5), 1);
}

}  // namespace
}  // namespace trelvan
