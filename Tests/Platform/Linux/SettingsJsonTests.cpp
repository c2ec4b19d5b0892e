#include "Platform/Linux/SettingsJson.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace trelvan {
namespace {

DefaultsValue roundTrip(const DefaultsValue& value) {
    const auto parsed = parseSettings(settingsText({{"key", value}}));
    const auto* values = std::get_if<SettingsValues>(&parsed);
    return values != nullptr ? values->at("key") : DefaultsValue{std::string("(damaged)")};
}

std::string placeOfDamage(std::string_view text) {
    const auto parsed = parseSettings(text);
    const auto* damage = std::get_if<SettingsDamage>(&parsed);
    return damage != nullptr ? damage->place : "(none)";
}

TEST(SettingsJson, EveryKindAndItsExtremes_RoundTripWithTheirKind) {
    using Whole = std::numeric_limits<std::int64_t>;
    using Real = std::numeric_limits<double>;
    const std::vector<DefaultsValue> values{true,
                                            false,
                                            std::int64_t{0},
                                            Whole::max(),
                                            Whole::min(),
                                            0.0,
                                            1.0,
                                            -1.0,
                                            0.1,
                                            1e22,
                                            Real::max(),
                                            Real::denorm_min(),
                                            Real::infinity(),
                                            -Real::infinity(),
                                            9007199254740993.0,
                                            std::string(),
                                            std::string("ñandú \"\\\n\t\0x", 14),
                                            std::string("\xff\xfe"),
                                            Data{},
                                            Data{"{\"a\":1}"},
                                            Data{std::string("\0\x80\xff", 3)}};
    for (const auto& value : values) {
        EXPECT_EQ(roundTrip(value), value) << settingsText({{"key", value}});
    }
}

TEST(SettingsJson, NotANumberAndNegativeZero_RoundTrip) {
    EXPECT_TRUE(std::isnan(std::get<double>(roundTrip(std::nan("")))));
    EXPECT_TRUE(std::signbit(std::get<double>(roundTrip(-0.0))));
}

TEST(SettingsJson, Text_HasSortedKeysAndNaturalForms) {
    EXPECT_EQ(settingsText({{"b", 1.0}, {"a", std::int64_t{1}}, {"c", Data{"[]"}}, {"d", Data{"\xff"}}}),
              "{\n  \"a\": 1,\n  \"b\": 1.0,\n  \"c\": {\n    \"utf8\": \"[]\"\n  },\n"
              "  \"d\": {\n    \"base64\": \"/w==\"\n  }\n}\n");
}

TEST(SettingsJson, BrokenText_NamesItsLine) {
    EXPECT_EQ(placeOfDamage("{\n  \"a\": 1,\n  \"b\": oops\n}"), "línea 3");
    EXPECT_EQ(placeOfDamage(""), "línea 1");
    EXPECT_EQ(placeOfDamage("{\"a\": 1"), "línea 1");
}

TEST(SettingsJson, WrongShape_NamesItsKey) {
    EXPECT_EQ(placeOfDamage(R"({"a": 1, "list": []})"), "clave \"list\"");
    EXPECT_EQ(placeOfDamage(R"({"none": null})"), "clave \"none\"");
    EXPECT_EQ(placeOfDamage(R"({"data": {"base64": "%"}})"), "clave \"data\"");
    EXPECT_EQ(placeOfDamage(R"({"data": {"utf8": "a", "more": "b"}})"), "clave \"data\"");
    EXPECT_EQ(placeOfDamage("[1]"), "línea 1: no es un objeto");
}

TEST(SettingsJson, WholeNumberBeyondSixtyFourBits_ReadsAsADouble) {
    const auto parsed = parseSettings(R"({"big": 18446744073709551615})");
    ASSERT_TRUE(std::holds_alternative<SettingsValues>(parsed));
    EXPECT_EQ(std::get<SettingsValues>(parsed).at("big"), DefaultsValue{18446744073709551615.0});
}

}  // namespace
}  // namespace trelvan
