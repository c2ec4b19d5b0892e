#include "Utilities/Uuid.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(UuidTest, TextIsUpperCaseAndReadInEitherCase) {
    const auto upper = Uuid::parse("0123ABCD-4567-89EF-0123-456789ABCDEF");
    const auto lower = Uuid::parse("0123abcd-4567-89ef-0123-456789abcdef");
    ASSERT_TRUE(upper.has_value());
    EXPECT_EQ(upper, lower);
    EXPECT_EQ(lower->text(), "0123ABCD-4567-89EF-0123-456789ABCDEF");
}

TEST(UuidTest, OtherFormsAreRefused) {
    EXPECT_FALSE(Uuid::parse(""));
    EXPECT_FALSE(Uuid::parse("0123ABCD456789EF0123456789ABCDEF"));
    EXPECT_FALSE(Uuid::parse("0123ABCD-4567-89EF-0123-456789ABCDEG"));
    EXPECT_FALSE(Uuid::parse("{0123ABCD-4567-89EF-0123-456789ABCDE"));
    EXPECT_FALSE(Uuid::parse("0123ABCD-4567-89EF-0123-456789ABCDEF "));
}

TEST(UuidTest, RandomOnesDifferAndAreVersionFour) {
    const Uuid first = Uuid::random();
    const Uuid second = Uuid::random();
    EXPECT_NE(first, second);
    EXPECT_EQ(first.text()[14], '4');
    EXPECT_EQ(Uuid::parse(first.text()), first);
}

}  // namespace
}  // namespace trelvan
