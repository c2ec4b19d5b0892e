#include "Platform/UserDefaults.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

using Value = std::optional<DefaultsValue>;

TEST(UserDefaultsTest, NumbersAndTruthValuesReadAsDouble) {
    EXPECT_EQ(asDouble(Value{1.5}), 1.5);
    EXPECT_EQ(asDouble(Value{std::int64_t{3}}), 3.0);
    EXPECT_EQ(asDouble(Value{true}), 1.0);
    EXPECT_EQ(asDouble(Value{std::string("1.5")}), std::nullopt);
    EXPECT_EQ(asDouble(Value{Data{"1"}}), std::nullopt);
    EXPECT_EQ(asDouble(std::nullopt), std::nullopt);
}

TEST(UserDefaultsTest, WhatIsStoredReadsAsTruthValue) {
    EXPECT_EQ(looseBool(std::nullopt), std::nullopt);
    EXPECT_EQ(looseBool(Value{false}), false);
    EXPECT_EQ(looseBool(Value{0.5}), true);
    EXPECT_EQ(looseBool(Value{std::int64_t{0}}), false);
    for (const char* text : {"yes", "YES", "true", "T", "1", "+2", " 1", "-3"})
        EXPECT_EQ(looseBool(Value{std::string(text)}), true) << text;
    for (const char* text : {"no", "false", "0", "", "maybe"})
        EXPECT_EQ(looseBool(Value{std::string(text)}), false) << text;
    EXPECT_EQ(looseBool(Value{Data{"yes"}}), false);
}

TEST(UserDefaultsTest, OnlyTextsReadAsText) {
    EXPECT_EQ(asText(Value{std::string("a")}), "a");
    EXPECT_EQ(asText(Value{1.0}), std::nullopt);
    EXPECT_EQ(asText(std::nullopt), std::nullopt);
}

TEST(UserDefaultsTest, OnlyTruthValuesReadAsNothingElse) {
    EXPECT_EQ(strictBool(Value{true}), true);
    EXPECT_EQ(strictBool(Value{false}), false);
    EXPECT_EQ(strictBool(Value{1.0}), std::nullopt);
    EXPECT_EQ(strictBool(Value{std::int64_t{0}}), std::nullopt);
    EXPECT_EQ(strictBool(Value{std::string("true")}), std::nullopt);
    EXPECT_EQ(strictBool(std::nullopt), std::nullopt);
}

TEST(UserDefaultsTest, OnlyNumbersReadAsNumber) {
    EXPECT_EQ(strictNumber(Value{1.5}), 1.5);
    EXPECT_EQ(strictNumber(Value{std::int64_t{3}}), 3.0);
    EXPECT_EQ(strictNumber(Value{true}), std::nullopt);
    EXPECT_EQ(strictNumber(Value{std::string("1.5")}), std::nullopt);
    EXPECT_EQ(strictNumber(std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace trelvan
