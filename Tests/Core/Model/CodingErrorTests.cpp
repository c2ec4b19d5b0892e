#include "Core/Model/CodingError.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(CodingError, TextIsPathAndProblem) {
    EXPECT_EQ((CodingError{"[0].name", "is odd"}).text(), "[0].name: is odd");
    EXPECT_EQ((CodingError{"", "is odd"}).text(), "is odd");
    EXPECT_EQ((CodingError{"", "not valid JSON", TextPosition{2, 5}}).text(),
              "line 2, column 5: not valid JSON");
}

TEST(CodingError, PathGrowsFromTheInside) {
    auto error = CodingError{"", "is odd"}.inside("keyCode").inside("shortcut").inside(2).inside("mappings");
    EXPECT_EQ(error.path, "mappings[2].shortcut.keyCode");
    EXPECT_EQ(std::move(error).inside(0).inside(1).path, "[1][0].mappings[2].shortcut.keyCode");
}

TEST(Coded, HoldsAValueOrAnError) {
    const Coded<int> value = 3;
    ASSERT_TRUE(value);
    EXPECT_EQ(*value, 3);
    const Coded<int> error = CodingError{"a", "b"};
    ASSERT_FALSE(error);
    EXPECT_EQ(error.error().path, "a");
}

}  // namespace
}  // namespace trelvan
