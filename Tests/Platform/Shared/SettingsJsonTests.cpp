#include "Platform/Shared/SettingsJson.hpp"

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
    if (damage == nullptr) return "(none)";
    return std::to_string(damage->position.line) + ":" + std::to_string(damage->position.column) + " " +
           damage->english + " | " + damage->spanish;
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
              "{\n  \"a\": 1,\n  \"b\": 1.0,\n  \"c\": [],\n"
              "  \"d\": {\n    \"base64\": \"/w==\"\n  }\n}\n");
}

TEST(SettingsJson, BrokenText_NamesItsLineAndColumnInBothLanguages) {
    EXPECT_EQ(placeOfDamage("{\n  \"a\": 1,\n  \"b\": oops\n}"), "3:8 not valid JSON | no es JSON válido");
    EXPECT_EQ(placeOfDamage(""), "1:1 not valid JSON | no es JSON válido");
    EXPECT_EQ(placeOfDamage("{\"a\": 1"), "1:8 not valid JSON | no es JSON válido");
    EXPECT_EQ(placeOfDamage("{\n \"a\": \"e9\\\"9\", \"b\": [1, -1e999]}"),
              "2:25 the number is too large | el número es demasiado grande");
}

TEST(SettingsJson, WrongShape_NamesItsKeyAndPlace) {
    const auto shape = [](const std::string& place, const std::string& key) {
        return place + " \"" + key + "\" is neither a boolean, a number, a string nor an array | \"" + key +
               "\" no es un booleano, un número, una cadena ni una lista";
    };
    EXPECT_EQ(placeOfDamage(R"({"a": 1, "object": {"b": 1}})"), shape("1:20", "object"));
    EXPECT_EQ(placeOfDamage("{\n\"none\": null}"), shape("2:9", "none"));
    EXPECT_EQ(placeOfDamage(R"({"data": {"base64": "%"}})"), shape("1:10", "data"));
    EXPECT_EQ(placeOfDamage(R"({"data": {"utf8": "a", "more": "b"}})"), shape("1:10", "data"));
    EXPECT_EQ(placeOfDamage("[1]"), "1:1 not a JSON object | no es un objeto JSON");
}

TEST(SettingsJson, EndlessNesting_IsRefusedBeforeItIsRead) {
    EXPECT_EQ(placeOfDamage("{\"a\":" + std::string(15'000'000, '[')),
              "1:69 lists and objects are nested too deeply | "
              "listas y objetos anidados con demasiada profundidad");
}

TEST(SettingsJson, ListOfData_IsReadableInTheFileAndTheSameBytesAgain) {
    const std::string profiles =
        R"([{"name":"ñ \u00f1","z":1.50,"a":1e5,"unknown":{"x":[]},"big":123456789012345678901234567890}])";
    const auto text = settingsText({{"trackball_profiles", Data{profiles}}});
    EXPECT_NE(text.find("\"trackball_profiles\": [\n    {\n      \"name\": \"ñ \\u00f1\",\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\"z\": 1.50,\n      \"a\": 1e5"), std::string::npos) << text;
    EXPECT_EQ(std::get<SettingsValues>(parseSettings(text)).at("trackball_profiles"),
              DefaultsValue{Data{profiles}});
}

TEST(SettingsJson, AllThreeFormsOfData_AreRead) {
    const auto bytes = [](const std::string& form) {
        const auto parsed = parseSettings("{\"data\": " + form + "}");
        const auto* values = std::get_if<SettingsValues>(&parsed);
        return values != nullptr ? std::get<Data>(values->at("data")).bytes : "(damaged)";
    };
    EXPECT_EQ(bytes("[ {\"a\" : 1} ]"), "[{\"a\":1}]");
    EXPECT_EQ(bytes(R"({"utf8": "[ {\"a\" : 1} ]"})"), "[ {\"a\" : 1} ]");
    EXPECT_EQ(bytes(R"({"base64": "W10="})"), "[]");
}

TEST(SettingsJson, DataThatIsNoList_KeepsItsForm) {
    for (const std::string& bytes :
         {std::string("[{"), std::string("{\"a\":[]}"), std::string("[1] x"), std::string("[1e999]"),
          std::string(), std::string("[NaN]"), std::string(100, '[') + std::string(100, ']'),
          std::string("[\"\xff\"]")}) {
        const auto text = settingsText({{"data", Data{bytes}}});
        EXPECT_TRUE(text.find("\"utf8\"") != std::string::npos ||
                    text.find("\"base64\"") != std::string::npos)
            << text;
        EXPECT_EQ(std::get<SettingsValues>(parseSettings(text)).at("data"), DefaultsValue{Data{bytes}});
    }
}

TEST(SettingsJson, WholeNumberBeyondSixtyFourBits_ReadsAsADouble) {
    const auto parsed = parseSettings(R"({"big": 18446744073709551615})");
    ASSERT_TRUE(std::holds_alternative<SettingsValues>(parsed));
    EXPECT_EQ(std::get<SettingsValues>(parsed).at("big"), DefaultsValue{18446744073709551615.0});
}

}  // namespace
}  // namespace trelvan
