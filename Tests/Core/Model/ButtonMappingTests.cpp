#include "Core/Model/ButtonMapping.hpp"
#include "Core/Model/CodingSupport.hpp"

#include <gtest/gtest.h>

#include <string>

namespace trelvan {
namespace {

using test::decoded;
using test::decodingError;
using test::encoded;

/// A mapping's JSON with its two required keys and whatever follows.
std::string mappingJson(std::string_view more = {}) {
    std::string text = R"({"buttonNumber":3,"buttonLabel":"x")";
    if (!more.empty()) text.append(",").append(more);
    return text + "}";
}

TEST(ButtonMapping, UnassignedHasNothingButItsButton) {
    const auto mapping = ButtonMapping::unassigned(test::sequentialUuid(1), 3, "x");
    EXPECT_EQ(mapping, decoded<ButtonMapping>(mappingJson()));
}

TEST(ButtonMapping, SlotsInUseReachTheLastActionThatIsSet) {
    ButtonMapping mapping;
    EXPECT_EQ(mapping.functionSlotsInUse(), 1);
    mapping.secondaryAction() = ButtonAction::copy;
    EXPECT_EQ(mapping.functionSlotsInUse(), 2);
    mapping.tertiaryAction() = ButtonAction::copy;
    EXPECT_EQ(mapping.functionSlotsInUse(), 3);
    mapping.secondaryAction() = ButtonAction::none;
    mapping.quaternaryAction() = ButtonAction::copy;
    EXPECT_EQ(mapping.functionSlotsInUse(), 4);
}

TEST(ButtonMappingDecoding, OnlyRequiredKeysGivesDefaults) {
    const auto mapping = decoded<ButtonMapping>(mappingJson());
    ButtonMapping expected;
    expected.id = test::sequentialUuid(1);
    expected.buttonNumber = 3;
    expected.buttonLabel = "x";
    EXPECT_EQ(mapping, expected);
    EXPECT_EQ(mapping.functionSlots, 1);
    EXPECT_EQ(mapping.action(), ButtonAction::none);
    EXPECT_EQ(mapping.secondaryTrigger3, ButtonModifierTrigger::none);
    EXPECT_TRUE(mapping.dictationShortcut.isEmpty());
    EXPECT_EQ(mapping.folderPath, "");
}

TEST(ButtonMappingDecoding, EachRequiredKeyMissingOrNullFails) {
    EXPECT_EQ(decodingError<ButtonMapping>(R"({"buttonLabel":"x"})"),
              "buttonNumber: required key is missing");
    EXPECT_EQ(decodingError<ButtonMapping>(R"({"buttonNumber":3})"), "buttonLabel: required key is missing");
    EXPECT_EQ(decodingError<ButtonMapping>(R"({"buttonNumber":3,"buttonLabel":null})"),
              "buttonLabel: required key is null");
}

TEST(ButtonMappingDecoding, EveryOtherKeyIsOptionalAndMayBeNull) {
    const auto object = encoded(decoded<ButtonMapping>(mappingJson()));
    ASSERT_EQ(object.size(), 28U);
    for (const auto& [key, value] : object.items()) {
        if (key == "buttonNumber" || key == "buttonLabel") continue;
        auto without = object;
        without.erase(key);
        const auto fromMissing = decoded<ButtonMapping>(without.dump());
        without[key] = nullptr;
        EXPECT_EQ(decoded<ButtonMapping>(without.dump()), fromMissing) << key;
        if (key != "id") {
            EXPECT_EQ(encoded(fromMissing)[key], value) << key;
        }
    }
}

TEST(ButtonMappingDecoding, EveryKeyOfAWrongTypeFailsNamingIt) {
    const auto object = encoded(ButtonMapping{});
    for (const auto& item : object.items()) {
        auto wrong = object;
        wrong[item.key()] = nlohmann::json::array();
        EXPECT_TRUE(decodingError<ButtonMapping>(wrong.dump()).starts_with(item.key() + ": expected"))
            << item.key();
    }
}

TEST(ButtonMappingDecoding, FunctionSlotsAreBounded) {
    const auto slots = [](std::string_view number) {
        return decoded<ButtonMapping>(mappingJson("\"functionSlots\":" + std::string(number))).functionSlots;
    };
    EXPECT_EQ(slots("0"), 1);
    EXPECT_EQ(slots("9"), 4);
    EXPECT_EQ(slots("-9223372036854775808"), 1);
    EXPECT_EQ(slots("1"), 1);
    EXPECT_EQ(slots("3.0"), 3);
    EXPECT_EQ(slots("4"), 4);
}

TEST(ButtonMappingDecoding, FunctionSlotsFollowTheActionsWhenAbsent) {
    const auto slots = [](std::string_view more) {
        return decoded<ButtonMapping>(mappingJson(more)).functionSlots;
    };
    EXPECT_EQ(slots(R"("action":"Copiar")"), 1);
    EXPECT_EQ(slots(R"("secondaryAction":"Copiar")"), 2);
    EXPECT_EQ(slots(R"("tertiaryAction":"Copiar")"), 3);
    EXPECT_EQ(slots(R"("quaternaryAction":"Copiar")"), 4);
    EXPECT_EQ(slots(R"("tertiaryAction":"Copiar","functionSlots":null)"), 3);
    EXPECT_EQ(slots(R"("tertiaryAction":"Copiar","functionSlots":1)"), 1);
}

TEST(ButtonMappingDecoding, FunctionSlotsOfAWrongTypeFail) {
    EXPECT_EQ(decodingError<ButtonMapping>(mappingJson(R"("functionSlots":"2")")),
              "functionSlots: expected a number, found a string");
    EXPECT_EQ(decodingError<ButtonMapping>(mappingJson(R"("functionSlots":1.5)")),
              "functionSlots: 1.5 is not a whole number");
}

TEST(ButtonMappingDecoding, LegacyTriggerAloneBecomesTheFirstSecondaryTrigger) {
    const auto mapping = decoded<ButtonMapping>(mappingJson(R"("secondaryTrigger":"Shift")"));
    EXPECT_EQ(mapping.secondaryTrigger1(), ButtonModifierTrigger::shift);
    const auto object = encoded(mapping);
    EXPECT_EQ(object["secondaryTrigger1"], "Shift");
    EXPECT_FALSE(object.contains("secondaryTrigger"));
}

TEST(ButtonMappingDecoding, LegacyTriggerYieldsToTheCurrentKey) {
    const auto mapping =
        decoded<ButtonMapping>(mappingJson(R"("secondaryTrigger":"Shift","secondaryTrigger1":"Command")"));
    EXPECT_EQ(mapping.secondaryTrigger1(), ButtonModifierTrigger::command);
    EXPECT_FALSE(encoded(mapping).contains("secondaryTrigger"));
}

TEST(ButtonMappingDecoding, LegacyTriggerServesWhenTheCurrentKeyIsNull) {
    const auto mapping =
        decoded<ButtonMapping>(mappingJson(R"("secondaryTrigger":"Fn","secondaryTrigger1":null)"));
    EXPECT_EQ(mapping.secondaryTrigger1(), ButtonModifierTrigger::function);
}

TEST(ButtonMappingDecoding, UnknownLegacyTriggerFails) {
    EXPECT_EQ(decodingError<ButtonMapping>(mappingJson(R"("secondaryTrigger":"Alt")")),
              "secondaryTrigger: \"Alt\" is not a modifier trigger");
}

TEST(ButtonMappingDecoding, EnglishLabelIsNoAction) {
    EXPECT_EQ(decodingError<ButtonMapping>(mappingJson(R"("action":"Open Folder")")),
              "action: \"Open Folder\" is not an action");
}

TEST(ButtonMappingDecoding, UnknownKeysAreIgnored) {
    EXPECT_EQ(decoded<ButtonMapping>(mappingJson(R"("colour":{"r":1},"Action":"Copiar")")),
              decoded<ButtonMapping>(mappingJson()));
}

TEST(ButtonMappingEncoding, BackWithNothingElseHasAllKeys) {
    auto mapping = ButtonMapping::unassigned(test::sequentialUuid(1), 3, "Botón extra 1");
    mapping.action() = ButtonAction::back;
    nlohmann::json expected = {
        {"id", test::sequentialUuid(1).text()},
        {"buttonNumber", 3},
        {"buttonLabel", "Botón extra 1"},
        {"action", "Atrás"},
        {"functionSlots", 1},
    };
    for (const auto* key :
         {"primaryTrigger1", "primaryTrigger2", "secondaryTrigger1", "secondaryTrigger2", "secondaryTrigger3",
          "tertiaryTrigger1", "tertiaryTrigger2", "quaternaryTrigger1", "quaternaryTrigger2"}) {
        expected[key] = "Ninguno";
    }
    for (const auto* key : {"secondaryAction", "tertiaryAction", "quaternaryAction"})
        expected[key] = "Ninguna";
    for (const auto* key :
         {"shortcut", "secondaryShortcut", "tertiaryShortcut", "quaternaryShortcut", "dictationShortcut"}) {
        expected[key] = {{"keyCode", 0}, {"modifiersRawValue", 0}, {"displayString", ""}};
    }
    for (const auto* key : {"shortcutName", "secondaryShortcutName", "tertiaryShortcutName",
                            "quaternaryShortcutName", "appPath", "folderPath"}) {
        expected[key] = "";
    }
    EXPECT_EQ(expected.size(), 28U);
    EXPECT_EQ(encoded(mapping), expected);
}

}  // namespace
}  // namespace trelvan
