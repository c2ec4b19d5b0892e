#include "Utilities/Text.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace trelvan {
namespace {

TEST(TextTest, ComposedAndDecomposedAccentsAreEquivalent) {
    EXPECT_TRUE(canonicallyEquivalent("Atrás", "Atra\u0301s"));
    EXPECT_FALSE(canonicallyEquivalent("Atrás", "Atras"));
    EXPECT_FALSE(canonicallyEquivalent("Atrás", "atrás"));
    EXPECT_TRUE(canonicallyEquivalent("", ""));
}

TEST(TextTest, WhatIsNotUtf8EqualsOnlyItself) {
    EXPECT_TRUE(canonicallyEquivalent("\xFF", "\xFF"));
    EXPECT_FALSE(canonicallyEquivalent("\xFF", "\xFE"));
    EXPECT_EQ(composed("\xC3"), std::nullopt);
}

TEST(TextTest, ComposedFormIsMade) {
    EXPECT_EQ(composed("Atra\u0301s"), "Atrás");
}

TEST(TextTest, TrimmedTakesWhiteSpaceOfUnicodeFromBothEnds) {
    EXPECT_EQ(trimmed(" \t\r\n a b \u00A0\u2003\u3000"), "a b");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("\u200Bx"), "\u200Bx");
    EXPECT_EQ(trimmed("ñ"), "ñ");
    EXPECT_EQ(trimmed("\xFF "), "\xFF");
}

TEST(TextTest, LastPathComponentIgnoresTrailingSlashes) {
    EXPECT_EQ(lastPathComponent("/Applications/Notes.app"), "Notes.app");
    EXPECT_EQ(lastPathComponent("/Applications/Notes.app/"), "Notes.app");
    EXPECT_EQ(lastPathComponent("Notes"), "Notes");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(TextTest, ControlCharactersAreWrittenVisibly) {
    EXPECT_EQ(visible("a\nb\rc\td"), R"(a\nb\rc\td)");
    EXPECT_EQ(visible("\x1b[31mred\x1b[0m"), R"(\x1b[31mred\x1b[0m)");
    EXPECT_EQ(visible(std::string_view("\0\a\x7f", 3)), R"(\x00\x07\x7f)");
    // The second set of control characters, as a terminal may take it in UTF-8 and as bare bytes.
    EXPECT_EQ(visible("\u0085\u009b"), R"(\x85\x9b)");
    EXPECT_EQ(visible("\x9b\xff"), R"(\x9b\xff)");
    EXPECT_EQ(visible("\u2028\u2029"), R"(\u2028\u2029)");
    EXPECT_EQ(visible("\u202ecod\u2066x\u200f\u061c"), R"(\u202ecod\u2066x\u200f\u061c)");
}

TEST(TextTest, EverythingElseStaysVisibleAsItIs) {
    for (const char* text : {"", "plain", "Botón 3 — “ñ” ✅ ⌃C", R"(back\slash "quotes")",
                             "👩‍💻 🇪🇸", "\u00A0", "e\u0301"})
        EXPECT_EQ(visible(text), text);
}

TEST(TextTest, LongTextsAreWrittenVisiblyToTheEnd) {
    std::string text;
    std::string expected;
    for (int number = 0; number < 400; ++number) {
        text += "ab\n";
        expected += "ab\\n";
    }
    EXPECT_EQ(visible(text), expected);
}

TEST(ShortTextTest, JoinsTextsAndNumbersWithoutBlanks) {
    EXPECT_EQ(InlineText("a", -101, "b", std::numeric_limits<std::int64_t>::min()).view(),
              "a-101b-9223372036854775808");
    EXPECT_EQ(InlineText().view(), "");
}

TEST(ShortTextTest, GrowsPastItsInlineCapacity) {
    const std::string half(InlineText::inlineCapacity - 1, 'x');
    EXPECT_EQ(InlineText(half, "ab", "c").view(), half + "abc");
    EXPECT_EQ(InlineText(half, "a").view(), half + "a");
}

}  // namespace
}  // namespace trelvan
