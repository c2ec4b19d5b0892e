#include "Platform/Linux/XTest/SharedBits.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(SharedBits, EveryCode_IsItsOwn) {
    for (int code = 0; code < 256; ++code) {
        SharedBits bits;
        bits.set(code, true);
        CodeSet expected;
        expected.set(static_cast<std::size_t>(code));
        EXPECT_EQ(bits.all(), expected) << code;
        EXPECT_TRUE(bits.test(code));
        bits.set(code, false);
        EXPECT_FALSE(bits.any()) << code;
    }
}

TEST(SharedBits, Clearing_LeavesTheOthers) {
    SharedBits bits;
    for (const int code : {0, 63, 64, 255}) bits.set(code, true);
    CodeSet cleared;
    cleared.set(63).set(255).set(100);
    bits.clear(cleared);
    EXPECT_EQ(bits.all(), CodeSet().set(0).set(64));
}

}  // namespace
}  // namespace trelvan
