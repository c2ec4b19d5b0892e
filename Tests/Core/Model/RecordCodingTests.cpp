#include "Core/Model/RecordCoding.hpp"
#include "Support/RandomRecords.hpp"
#include "Support/SequentialUuids.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using Json = nlohmann::json;

std::string errorOf(std::string_view bytes) {
    const auto result = decodeProfiles(bytes, test::sequentialUuids());
    return result ? std::string() : result.error().text();
}

/// The text of a value with the keys of every object in arbitrary order and blanks in between.
std::string shuffled(const Json& value, test::RandomRecords& random) {
    if (value.is_array()) {
        std::string text = "[ ";
        for (std::size_t index = 0; index < value.size(); ++index) {
            text += (index > 0 ? ",\n" : "") + shuffled(value[index], random);
        }
        return text + "]";
    }
    if (!value.is_object()) return value.dump();
    std::vector<std::string> keys;
    for (const auto& item : value.items()) keys.push_back(item.key());
    for (std::size_t left = keys.size(); left > 1; --left)
        std::swap(keys[left - 1], keys[random.below(left)]);
    std::string text = "{";
    for (std::size_t index = 0; index < keys.size(); ++index) {
        text += (index > 0 ? " , " : "") + Json(keys[index]).dump() + ":\t" +
                shuffled(value[keys[index]], random);
    }
    return text + "}";
}

TEST(ProfileCoding, RandomProfilesComeBack) {
    test::RandomRecords random(20);
    for (int round = 0; round < 200; ++round) {
        const std::vector<TrackballProfile> profiles{random.profile(), random.profile()};
        const auto bytes = encodeProfiles(profiles);
        ASSERT_TRUE(bytes);
        const auto back = decodeProfiles(*bytes, test::sequentialUuids());
        ASSERT_TRUE(back) << back.error().text();
        EXPECT_EQ(*back, profiles);
        const auto again = encodeProfiles(*back);
        ASSERT_TRUE(again);
        EXPECT_EQ(*again, *bytes);
    }
}

TEST(ProfileCoding, OrderOfKeysDoesNotMatter) {
    test::RandomRecords random(21);
    for (int round = 0; round < 50; ++round) {
        const std::vector<TrackballProfile> profiles{random.profile()};
        const auto bytes = encodeProfiles(profiles);
        ASSERT_TRUE(bytes);
        const auto back = decodeProfiles(shuffled(Json::parse(*bytes), random), test::sequentialUuids());
        ASSERT_TRUE(back) << back.error().text();
        EXPECT_EQ(*back, profiles);
    }
}

/// Removes optional keys at random, at every level.
void thinOut(Json& value, test::RandomRecords& random) {
    if (!value.is_structured()) return;
    const bool isShortcut = value.is_object() && value.contains("keyCode");
    std::vector<std::string> dropped;
    for (auto& item : value.items()) {
        thinOut(item.value(), random);
        const auto& key = item.key();
        const bool isRequired = isShortcut || key == "buttonNumber" || key == "buttonLabel" ||
                                (key == "name" && value.contains("mappings")) || key == "mappings";
        if (value.is_object() && !isRequired && random.below(3) == 0) dropped.push_back(key);
    }
    for (const auto& key : dropped) value.erase(key);
}

/// Every value of `part` is in `whole` at the same place.
void expectContained(const Json& part, const Json& whole, const std::string& place) {
    if (part.is_object()) {
        for (const auto& item : part.items()) {
            ASSERT_TRUE(whole.contains(item.key())) << place << "." << item.key();
            expectContained(item.value(), whole[item.key()], place + "." + item.key());
        }
    } else if (part.is_array()) {
        ASSERT_EQ(part.size(), whole.size()) << place;
        for (std::size_t index = 0; index < part.size(); ++index) {
            expectContained(part[index], whole[index], place + "[" + std::to_string(index) + "]");
        }
    } else {
        EXPECT_EQ(part, whole) << place;
    }
}

TEST(ProfileCoding, DecodingThenEncodingKeepsEveryKeyThatWasThere) {
    test::RandomRecords random(22);
    for (int round = 0; round < 100; ++round) {
        const auto bytes = encodeProfiles({random.profile()});
        ASSERT_TRUE(bytes);
        Json stored = Json::parse(*bytes);
        thinOut(stored, random);
        const auto profiles = decodeProfiles(stored.dump(), test::sequentialUuids());
        ASSERT_TRUE(profiles) << profiles.error().text();
        const auto again = encodeProfiles(*profiles);
        ASSERT_TRUE(again);
        expectContained(stored, Json::parse(*again), "");
    }
}

TEST(ProfileDecoding, ProfileWithoutSmartButtonHasTheEmptyOne) {
    const auto profile = decodeProfile(R"({"name":"A","mappings":[]})", test::sequentialUuids());
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->id, test::sequentialUuid(1));
    EXPECT_EQ(profile->smartButton, SmartButtonConfiguration{});
}

TEST(ProfileDecoding, SmartButtonEntryWithoutNameIsNamedShortcut) {
    const auto profile = decodeProfile(R"({"name":"A","mappings":[],"smartButton":{"apps":[{"path":"/a"}]}})",
                                       test::sequentialUuids());
    ASSERT_TRUE(profile);
    ASSERT_EQ(profile->smartButton.apps.size(), 1U);
    EXPECT_EQ(profile->smartButton.apps[0].name, "Shortcut");
    EXPECT_EQ(profile->smartButton.apps[0].path, "/a");
}

TEST(ProfileDecoding, FreshSmartButtonIsWrittenWithThreeKeys) {
    TrackballProfile profile;
    profile.name = "A";
    const auto bytes = encodeProfiles({profile});
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, R"([{"id":"00000000-0000-0000-0000-000000000000","mappings":[],"name":"A",)"
                      R"("smartButton":{"apps":[],"isEnabled":false,"triggerModifier":"Ninguno"}}])");
}

TEST(ProfileDecoding, ErrorsNameThePathOfTheKey) {
    EXPECT_EQ(errorOf(R"([{"name":"A","mappings":[]},{"mappings":[]}])"),
              "[1].name: required key is missing");
    EXPECT_EQ(errorOf(R"([{"name":"A"}])"), "[0].mappings: required key is missing");
    EXPECT_EQ(errorOf(R"([{"name":"A","mappings":[{"buttonNumber":3,"buttonLabel":""},{"buttonNumber":3,)"
                      R"("buttonLabel":""},{"buttonNumber":3,"buttonLabel":"","action":"Open Folder"}]}])"),
              "[0].mappings[2].action: \"Open Folder\" is not an action");
    EXPECT_EQ(errorOf(R"([{"name":"A","mappings":[{"buttonNumber":3,"buttonLabel":"","shortcut":)"
                      R"({"keyCode":70000,"modifiersRawValue":0,"displayString":""}}]}])"),
              "[0].mappings[0].shortcut.keyCode: 70000 is out of range 0..65535");
    EXPECT_EQ(errorOf(R"([{"name":"A","mappings":[4]}])"),
              "[0].mappings[0]: expected an object, found a number");
    EXPECT_EQ(errorOf("[null]"), "[0]: expected an object, found null");
    EXPECT_EQ(errorOf("{}"), "expected an array, found an object");
}

TEST(ProfileDecoding, WhatIsNotJsonNamesLineAndColumn) {
    EXPECT_EQ(errorOf("[\n  {,}\n]"), "line 2, column 4: not valid JSON");
    EXPECT_EQ(errorOf(""), "line 1, column 1: not valid JSON");
    EXPECT_EQ(errorOf("[] []"), "line 1, column 4: not valid JSON");
    EXPECT_EQ(errorOf("[\"\xFF\"]"), "line 1, column 3: not valid JSON");
    EXPECT_EQ(errorOf("[1e999]"), "a number is too large for JSON");
}

TEST(ProfileDecoding, TruncatedTextFailsAtEveryLength) {
    test::RandomRecords random(23);
    const auto bytes = encodeProfiles({random.profile()});
    ASSERT_TRUE(bytes);
    for (std::size_t length = 0; length < bytes->size(); ++length) {
        EXPECT_NE(errorOf(std::string_view(*bytes).substr(0, length)), "") << length;
    }
}

TEST(ProfileDecoding, DeeplyNestedGarbageFails) {
    constexpr std::size_t depth = 200'000;
    EXPECT_NE(errorOf(std::string(depth, '[')), "");
    EXPECT_NE(errorOf(std::string(depth, '[') + std::string(depth, ']')), "");
    std::string objects;
    for (std::size_t level = 0; level < depth; ++level) objects += "{\"a\":";
    EXPECT_NE(errorOf(objects), "");
    const auto inUnknownKey = [](std::size_t levels) {
        return errorOf(R"([{"name":"A","mappings":[],"extra":)" + std::string(levels, '[') +
                       std::string(levels, ']') + "}]");
    };
    EXPECT_EQ(inUnknownKey(50), "");
    EXPECT_NE(inUnknownKey(depth), "");
}

TEST(ProfileEncoding, TextThatIsNotUtf8FailsNamingIt) {
    TrackballProfile profile;
    profile.mappings.push_back(ButtonMapping::unassigned({}, 3, "Bot\xF3n"));
    const auto bytes = encodeProfiles({{}, profile});
    ASSERT_FALSE(bytes);
    EXPECT_EQ(bytes.error().text(), "[1].mappings[0].buttonLabel: the text is not UTF-8");
}

TEST(ProfileTemplates, DefaultProfileHasTheFiveUsualButtons) {
    const auto profile = TrackballProfile::defaultProfile(test::sequentialUuids());
    EXPECT_EQ(profile.name, "Default");
    EXPECT_EQ(profile.smartButton, SmartButtonConfiguration{});
    std::vector<ButtonMapping> expected{
        ButtonMapping::unassigned(test::sequentialUuid(2), 0, "Click izquierdo"),
        ButtonMapping::unassigned(test::sequentialUuid(3), 1, "Click derecho"),
        ButtonMapping::unassigned(test::sequentialUuid(4), 2, "Click medio"),
        ButtonMapping::unassigned(test::sequentialUuid(5), 3, "Botón extra 1"),
        ButtonMapping::unassigned(test::sequentialUuid(6), 4, "Botón extra 2"),
    };
    expected[0].action() = ButtonAction::leftClick;
    expected[1].action() = ButtonAction::rightClick;
    EXPECT_EQ(profile.mappings, expected);
}

TEST(ProfileTemplates, MinimalProfileHasTheTwoPinnedButtons) {
    const auto full = TrackballProfile::defaultProfile(test::sequentialUuids());
    const auto minimal = TrackballProfile::minimalProfile(test::sequentialUuids());
    EXPECT_EQ(minimal.name, "Default");
    EXPECT_EQ(minimal.mappings, (std::vector{full.mappings[0], full.mappings[1]}));
}

}  // namespace
}  // namespace trelvan
