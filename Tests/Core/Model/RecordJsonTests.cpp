#include "Core/Model/CodingSupport.hpp"
#include "Core/Model/RecordJson.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::decoded;
using test::decodingError;
using test::encoded;

std::string shortcutJson(std::string_view keyCode, std::string_view modifiers = "0") {
    return R"({"keyCode":)" + std::string(keyCode) + R"(,"modifiersRawValue":)" + std::string(modifiers) +
           R"(,"displayString":""})";
}

TEST(CustomShortcutDecoding, ThreeKeysInAnyOrderAreRead) {
    const auto shortcut =
        decoded<CustomShortcut>(R"({"displayString":"⌘C","modifiersRawValue":1048576,"keyCode":8})");
    EXPECT_EQ(shortcut, (CustomShortcut{8, 0x100000, "⌘C"}));
}

TEST(CustomShortcutDecoding, NoModifiersIsABareKey) {
    EXPECT_EQ(decoded<CustomShortcut>(shortcutJson("96")), (CustomShortcut{96, 0, ""}));
}

TEST(CustomShortcutDecoding, EachMissingKeyFails) {
    EXPECT_EQ(decodingError<CustomShortcut>(R"({"modifiersRawValue":0,"displayString":""})"),
              "keyCode: required key is missing");
    EXPECT_EQ(decodingError<CustomShortcut>(R"({"keyCode":0,"displayString":""})"),
              "modifiersRawValue: required key is missing");
    EXPECT_EQ(decodingError<CustomShortcut>(R"({"keyCode":0,"modifiersRawValue":0})"),
              "displayString: required key is missing");
}

TEST(CustomShortcutDecoding, NullForARequiredKeyFails) {
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("null")), "keyCode: required key is null");
}

TEST(CustomShortcutDecoding, WrongTypesFail) {
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("\"8\"")),
              "keyCode: expected a number, found a string");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("true")),
              "keyCode: expected a number, found a boolean");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("8", "[]")),
              "modifiersRawValue: expected a number, found an array");
    EXPECT_EQ(decodingError<CustomShortcut>(R"({"keyCode":0,"modifiersRawValue":0,"displayString":1})"),
              "displayString: expected a string, found a number");
    EXPECT_EQ(decodingError<CustomShortcut>("[]"), "expected an object, found an array");
}

TEST(CustomShortcutDecoding, KeyCodeHasSixteenBits) {
    EXPECT_EQ(decoded<CustomShortcut>(shortcutJson("65535")).keyCode, 65535);
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("65536")),
              "keyCode: 65536 is out of range 0..65535");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("-1")), "keyCode: -1 is out of range 0..65535");
}

TEST(CustomShortcutDecoding, ModifiersHaveSixtyFourBits) {
    const auto shortcut = decoded<CustomShortcut>(shortcutJson("1", "18446744073709551615"));
    EXPECT_EQ(shortcut.modifiersRawValue, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(encoded(shortcut)["modifiersRawValue"].dump(), "18446744073709551615");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("1", "-1")),
              "modifiersRawValue: -1 is out of range 0..18446744073709551615");
    EXPECT_NE(decodingError<CustomShortcut>(shortcutJson("1", "18446744073709551616")), "");
}

TEST(WholeNumberDecoding, WholeFractionsAndExponentsAreRead) {
    EXPECT_EQ(decoded<CustomShortcut>(shortcutJson("3.0")).keyCode, 3);
    EXPECT_EQ(decoded<CustomShortcut>(shortcutJson("-0")).keyCode, 0);
    EXPECT_EQ(decoded<CustomShortcut>(shortcutJson("1e2", "1048576.0")), (CustomShortcut{100, 0x100000, ""}));
    EXPECT_EQ(decoded<std::int64_t>("-100.0"), -100);
}

TEST(WholeNumberDecoding, FractionsAndInexactNumbersFail) {
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("3.5")), "keyCode: 3.5 is not a whole number");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("-1.0")), "keyCode: -1.0 is out of range 0..65535");
    EXPECT_EQ(decodingError<CustomShortcut>(shortcutJson("1", "1e300")),
              "modifiersRawValue: 1e+300 is too large to be read exactly");
    EXPECT_EQ(decodingError<std::int64_t>("9007199254740993.0"),
              "9.007199254740992e+15 is too large to be read exactly");
}

TEST(WholeNumberDecoding, SignedLimitsAreRead) {
    EXPECT_EQ(decoded<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decoded<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(decodingError<std::int64_t>("9223372036854775808"),
              "9223372036854775808 is out of range -9223372036854775808..9223372036854775807");
    EXPECT_NE(decodingError<std::int64_t>("-9223372036854775809"), "");
}

TEST(EnumerationDecoding, DecomposedAccentIsReadAndWrittenComposed) {
    const auto action = decoded<ButtonAction>("\"Atra\u0301s\"");
    EXPECT_EQ(action, ButtonAction::back);
    EXPECT_EQ(encoded(action), "Atr\u00E1s");
    EXPECT_EQ(decoded<ButtonAction>(R"("Atra\u0301s")"), ButtonAction::back);
}

TEST(EnumerationDecoding, ActionAndTriggerForNoneAreNotInterchangeable) {
    EXPECT_EQ(decodingError<ButtonAction>("\"Ninguno\""), "\"Ninguno\" is not an action");
    EXPECT_EQ(decodingError<ButtonModifierTrigger>("\"Ninguna\""), "\"Ninguna\" is not a modifier trigger");
}

TEST(EnumerationDecoding, OptionTriggerIsStoredByRawValueOnly) {
    EXPECT_EQ(encoded(ButtonModifierTrigger::option), "Option");
    EXPECT_EQ(decodingError<ButtonModifierTrigger>("\"Alt\""), "\"Alt\" is not a modifier trigger");
}

TEST(EnumerationDecoding, EveryCaseComesBack) {
    for (const auto action : allCases<ButtonAction>()) {
        EXPECT_EQ(decoded<ButtonAction>(encoded(action).dump()), action);
    }
    for (const auto trigger : allCases<ButtonModifierTrigger>()) {
        EXPECT_EQ(decoded<ButtonModifierTrigger>(encoded(trigger).dump()), trigger);
    }
    EXPECT_EQ(encoded(SmartButtonItemKind::application), "application");
    EXPECT_EQ(encoded(SmartButtonItemKind::shortcut), "shortcut");
    for (const auto kind : allCases<SmartButtonItemKind>()) {
        EXPECT_EQ(decoded<SmartButtonItemKind>(encoded(kind).dump()), kind);
    }
}

TEST(EnumerationDecoding, WhatIsNotATextFails) {
    EXPECT_EQ(decodingError<ButtonAction>("3"), "expected a string, found a number");
}

TEST(EnumerationDecoding, LongTextIsNotRepeated) {
    EXPECT_EQ(decodingError<ButtonAction>('"' + std::string(5000, 'x') + '"'),
              "a string of 5000 bytes is not an action");
}

TEST(UuidCoding, IsWrittenInUpperCaseAndReadInEither) {
    const auto id = decoded<Uuid>("\"0a1b2c3d-4e5f-4678-9abc-def012345678\"");
    EXPECT_EQ(encoded(id), "0A1B2C3D-4E5F-4678-9ABC-DEF012345678");
    EXPECT_EQ(decoded<Uuid>(encoded(id).dump()), id);
    EXPECT_EQ(decodingError<Uuid>("\"0a1b2c3d\""), "\"0a1b2c3d\" is not a UUID");
}

TEST(DoubleCoding, WholeAndFractionalNumbersAreRead) {
    EXPECT_EQ(decoded<double>("3"), 3.0);
    EXPECT_EQ(decoded<double>("-0.25"), -0.25);
    EXPECT_EQ(decodingError<double>("true"), "expected a number, found a boolean");
}

TEST(DoubleCoding, WhatIsNotFiniteIsNotWritten) {
    EXPECT_FALSE(json::encode(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(json::encode(std::numeric_limits<double>::infinity()));
}

TEST(Encoding, IndentsOnRequestWithKeysInOrder) {
    const auto text = json::encode(CustomShortcut{1, 2, "x"}, 2);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, "{\n  \"displayString\": \"x\",\n  \"keyCode\": 1,\n  \"modifiersRawValue\": 2\n}");
}

TEST(Decoding, EndlessNestingIsRefusedWithItsPlace) {
    const auto decoded = json::decode<std::vector<std::int64_t>>(std::string(1'000'000, '['), nullptr);
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error().text(), "line 1, column 65: lists and objects are nested too deeply");
}

TEST(Decoding, ImmenseTextIsRefused) {
    const std::string immense(17'000'000, ' ');
    const auto decoded = json::decode<bool>(immense, nullptr);
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error().text(), "the text is too large");
}

TEST(Encoding, TextThatIsNotUtf8FailsNamingItsKey) {
    const auto text = json::encode(CustomShortcut{1, 2, "\xFF"});
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error().text(), "displayString: the text is not UTF-8");
}

}  // namespace
}  // namespace trelvan
