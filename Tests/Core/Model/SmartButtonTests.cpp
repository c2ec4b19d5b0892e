#include "Core/Model/CodingSupport.hpp"
#include "Core/Model/SmartButton.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

using test::decoded;
using test::decodingError;
using test::encoded;

TEST(SmartButtonItemKind, HasTwoKinds) {
    EXPECT_EQ(allCases<SmartButtonItemKind>().size(), 2U);
    EXPECT_EQ(fromRawValue<SmartButtonItemKind>("application"), SmartButtonItemKind::application);
    EXPECT_EQ(fromRawValue<SmartButtonItemKind>("shortcut"), SmartButtonItemKind::shortcut);
    EXPECT_EQ(fromRawValue<SmartButtonItemKind>("Shortcut"), std::nullopt);
}

TEST(SmartButtonAppDecoding, EmptyObjectGivesDefaults) {
    const auto app = decoded<SmartButtonApp>("{}");
    EXPECT_EQ(app.id, test::sequentialUuid(1));
    EXPECT_EQ(app.name, "Shortcut");
    EXPECT_EQ(app.path, "");
    EXPECT_EQ(app.kind, SmartButtonItemKind::application);
    EXPECT_TRUE(app.shortcut.isEmpty());
    EXPECT_EQ(app.iconPath, "");
}

TEST(SmartButtonAppDecoding, EmptyNameStaysEmpty) {
    EXPECT_EQ(decoded<SmartButtonApp>(R"({"name":""})").name, "");
}

TEST(SmartButtonAppDecoding, UnknownKindFails) {
    EXPECT_EQ(decodingError<SmartButtonApp>(R"({"kind":"folder"})"),
              "kind: \"folder\" is not a kind of Smart Button entry");
}

TEST(SmartButtonAppEncoding, WritesAllSixKeys) {
    const auto object = encoded(decoded<SmartButtonApp>("{}"));
    EXPECT_EQ(object, (nlohmann::json{
                          {"id", test::sequentialUuid(1).text()},
                          {"name", "Shortcut"},
                          {"path", ""},
                          {"kind", "application"},
                          {"shortcut", {{"keyCode", 0}, {"modifiersRawValue", 0}, {"displayString", ""}}},
                          {"iconPath", ""},
                      }));
}

TEST(SmartButtonConfigurationDecoding, EmptyObjectGivesTheEmptyConfiguration) {
    const auto configuration = decoded<SmartButtonConfiguration>("{}");
    EXPECT_FALSE(configuration.isEnabled);
    EXPECT_EQ(configuration.triggerButtonNumber, std::nullopt);
    EXPECT_EQ(configuration.triggerModifier, ButtonModifierTrigger::none);
    EXPECT_TRUE(configuration.apps.empty());
}

TEST(SmartButtonConfigurationDecoding, NullTriggerButtonIsNone) {
    EXPECT_EQ(decoded<SmartButtonConfiguration>(R"({"triggerButtonNumber":null})").triggerButtonNumber,
              std::nullopt);
}

TEST(SmartButtonConfigurationDecoding, NumberIsNoTruthValue) {
    EXPECT_EQ(decodingError<SmartButtonConfiguration>(R"({"isEnabled":1})"),
              "isEnabled: expected a boolean, found a number");
}

TEST(SmartButtonConfigurationDecoding, ErrorInAnEntryNamesIt) {
    EXPECT_EQ(decodingError<SmartButtonConfiguration>(R"({"apps":[{},{"shortcut":{"keyCode":70000}}]})"),
              "apps[1].shortcut.keyCode: 70000 is out of range 0..65535");
}

TEST(SmartButtonConfigurationEncoding, TriggerButtonIsLeftOutWhenUnset) {
    EXPECT_EQ(encoded(SmartButtonConfiguration{}),
              (nlohmann::json{
                  {"isEnabled", false}, {"triggerModifier", "Ninguno"}, {"apps", nlohmann::json::array()}}));
}

TEST(SmartButtonConfigurationEncoding, TriggerButtonIsWrittenWhenSet) {
    SmartButtonConfiguration configuration;
    configuration.triggerButtonNumber = 0;
    EXPECT_EQ(encoded(configuration)["triggerButtonNumber"], 0);
}

}  // namespace
}  // namespace trelvan
