#include "Platform/Linux/Guard/GuardKeeper.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(GuardKeeperTest, AfterALongLife_TheNextStartIsAtOnce) {
    EXPECT_EQ(GuardKeeper::delayAfter(Seconds{3600}, Seconds{16}), Seconds{0});
}

TEST(GuardKeeperTest, AfterShortLives_TheStartsAreFewerAndFewerAndNeverEnd) {
    Seconds delay{0};
    Seconds total{0};
    for (int start = 0; start < 10; ++start) {
        const Seconds next = GuardKeeper::delayAfter(Seconds{0.1}, delay);
        EXPECT_GE(next, Seconds{1});
        EXPECT_GE(next, delay);
        EXPECT_LE(next, Seconds{60});
        delay = next;
        total += next;
    }
    EXPECT_EQ(delay, Seconds{60});
    EXPECT_GT(total, Seconds{300});
}

}  // namespace
}  // namespace trelvan
