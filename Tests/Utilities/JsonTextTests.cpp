#include "Utilities/JsonText.hpp"

#include <gtest/gtest.h>

#include <string>

namespace trelvan {
namespace {

constexpr std::string_view sample = R"({ "a" : [ 1.50, "x, ]\" y", {"b":[ ]} ] ,
  "c": {"d": [true, null, -1E5], "e": ""} })";

TEST(JsonText, Compact_DropsOnlyTheSpaceBetweenTokens) {
    EXPECT_EQ(compactJson(sample), R"({"a":[1.50,"x, ]\" y",{"b":[]}],"c":{"d":[true,null,-1E5],"e":""}})");
}

TEST(JsonText, Indented_IsCompactAgainTokenForToken) {
    const auto text = indentedJson(sample, 2, 0);
    EXPECT_EQ(compactJson(text), compactJson(sample));
    EXPECT_NE(text.find("\n  \"a\": [\n    1.50,\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\"b\": []"), std::string::npos) << text;
    EXPECT_EQ(indentedJson("[ ]", 2, 3), "[]");
    EXPECT_EQ(indentedJson("[1]", 2, 1), "[\n    1\n  ]");
}

TEST(JsonText, Positions_CountLinesAndColumnsFromOne) {
    EXPECT_EQ(positionOf("ab\ncd", 0), (TextPosition{1, 1}));
    EXPECT_EQ(positionOf("ab\ncd", 4), (TextPosition{2, 2}));
    EXPECT_EQ(positionOf("ab\ncd", 99), (TextPosition{2, 3}));
}

TEST(JsonText, Depth_IsCountedOutsideStrings) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_EQ(tooDeepAt(nested(deepestJson)), std::nullopt);
    EXPECT_EQ(tooDeepAt(nested(deepestJson + 1)), deepestJson);
    EXPECT_EQ(tooDeepAt("\"" + std::string(1000, '[') + "\""), std::nullopt);
    EXPECT_EQ(tooDeepAt(R"(["\"[[[[", ")" + std::string(1000, '{') + "\"]"), std::nullopt);
    // Side by side is not deep.
    std::string wide;
    for (int count = 0; count < 1000; ++count) wide += "[],";
    EXPECT_EQ(tooDeepAt(wide), std::nullopt);
    EXPECT_EQ(tooDeepAt("]]]]" + std::string(deepestJson, '[')), std::nullopt);
}

TEST(JsonText, Members_HaveTheirKeysAndValues) {
    const auto members = jsonMembers(sample);
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(members[0].key, "\"a\"");
    EXPECT_EQ(jsonValueAt(sample, members[0].offset), R"([ 1.50, "x, ]\" y", {"b":[ ]} ])");
    EXPECT_EQ(jsonValueAt(sample, members[1].offset), R"({"d": [true, null, -1E5], "e": ""})");
    EXPECT_TRUE(jsonMembers("[1]").empty());
    EXPECT_TRUE(jsonMembers(" {} ").empty());
}

TEST(JsonText, Paths_LeadToValuesOrAsFarAsTheyGo) {
    const auto at = [](std::string_view path) {
        return std::string(jsonValueAt(sample, offsetOfJson(sample, path)));
    };
    EXPECT_EQ(at("a[0]"), "1.50");
    EXPECT_EQ(at("a[1]"), R"("x, ]\" y")");
    EXPECT_EQ(at("a[2].b"), "[ ]");
    EXPECT_EQ(at("c.d[2]"), "-1E5");
    EXPECT_EQ(at("c.e"), "\"\"");
    EXPECT_EQ(at("c.nothing"), R"({"d": [true, null, -1E5], "e": ""})");
    EXPECT_EQ(at("a[7]"), R"([ 1.50, "x, ]\" y", {"b":[ ]} ])");
    EXPECT_EQ(offsetOfJson(sample, ""), 0U);
    EXPECT_EQ(offsetOfJson(sample, "[0]"), 0U);
    EXPECT_EQ(offsetOfJson(sample, "[x"), 0U);
}

}  // namespace
}  // namespace trelvan
