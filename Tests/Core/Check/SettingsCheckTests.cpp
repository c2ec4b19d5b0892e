#include "Core/Check/SettingsCheck.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// "severity line:column path: text" of each finding.
std::vector<std::string> check(const std::string& file, AppLanguage language = AppLanguage::english) {
    std::vector<std::string> lines;
    for (const auto& finding : checkSettings(file, {})) {
        lines.push_back(std::string(nameOf(finding.severity)) + " " + std::to_string(finding.position.line) +
                        ":" + std::to_string(finding.position.column) + " " + finding.path + ": " +
                        finding.text(language));
    }
    return lines;
}

std::string listOf(const std::string& mapping) {
    return "{\n  \"trackball_profiles\": [{\n    \"name\": \"P\",\n    \"mappings\": [\n      " + mapping +
           "\n    ]\n  }]\n}\n";
}

/// The same profiles as text inside text.
std::string textOf(const std::string& profiles) {
    return nlohmann::json{{"trackball_profiles", {{"utf8", profiles}}}}.dump(2);
}

TEST(SettingsCheckTest, GoodSettingsHaveNoFindings) {
    EXPECT_THAT(check("{}"), IsEmpty());
    EXPECT_THAT(check(listOf(R"({"buttonNumber": 3, "buttonLabel": "", "action": "Copiar"})")), IsEmpty());
    EXPECT_THAT(check(R"({"trackball_scroll_speed_vertical": 3.0, "general_language": "Español",
                          "keep_awake_auto_stop_preset": "oneDay", "notify_caps_lock": false})"),
                IsEmpty());
}

TEST(SettingsCheckTest, ActionInTheWrongLanguageIsNamedWithItsPlaceAndTheStoredText) {
    const auto found =
        checkSettings(listOf(R"({"buttonNumber": 3, "buttonLabel": "", "action": "Copy"})"), {});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].severity, Severity::error);
    EXPECT_EQ(found[0].path, "trackball_profiles[0].mappings[0].action");
    EXPECT_EQ(found[0].position, (TextPosition{5, 56}));
    EXPECT_EQ(found[0].text(AppLanguage::english), "\"Copy\" is not an action; did you mean 'Copiar'?");
    EXPECT_EQ(found[0].text(AppLanguage::spanish), "\"Copy\" no es una acción; ¿quisiste decir 'Copiar'?");
    EXPECT_EQ(found[0].allowed.size(), 33U);
}

TEST(SettingsCheckTest, EveryWrongWordIsFoundAndNotOnlyTheFirst) {
    EXPECT_THAT(
        check(listOf(
            R"({"buttonNumber": "3", "buttonLabel": "", "action": "copiar", "primaryTrigger1": "ctrl"},)"
            "\n      "
            R"({"buttonNumber": 4, "action": "Pegar", "secondaryTrigger1": "shift"})")),
        ElementsAre(
            HasSubstr("error 5:24 trackball_profiles[0].mappings[0].buttonNumber: expected a whole number, "
                      "found \"3\""),
            HasSubstr("mappings[0].action: \"copiar\" is not an action; did you mean 'Copiar'?"),
            HasSubstr("mappings[0].primaryTrigger1: \"ctrl\" is not a modifier; did you mean 'Control'?"),
            "error 6:7 trackball_profiles[0].mappings[1]: the required key 'buttonLabel' is missing",
            HasSubstr("error 6:67 trackball_profiles[0].mappings[1].secondaryTrigger1: \"shift\" is not a "
                      "modifier; did you mean 'Shift'?")));
}

TEST(SettingsCheckTest, PlaceInTextInsideTextIsThatOfItsCharacterInTheFile) {
    const std::string profiles =
        "[{\"name\":\"\xC3\xB1 \\n\",\n\"mappings\":[{\"buttonNumber\":3,\"buttonLabel\":\"\",\"action\":"
        "\"Copy\"}]}]";
    const std::string file = textOf(profiles);
    const auto found = checkSettings(file, {});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].position.line, 3U);
    const auto lineStart = file.find("    \"utf8\"");
    ASSERT_NE(lineStart, std::string::npos);
    EXPECT_EQ(file.substr(lineStart + found[0].position.column - 1, 8), "\\\"Copy\\\"");
}

TEST(SettingsCheckTest, InnerTextThatIsNotJsonIsPlacedInTheFile) {
    const std::string file = textOf("[{\"name\":\"P\",\n\"mappings\":[]]");
    const auto found = checkSettings(file, {});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].severity, Severity::error);
    EXPECT_EQ(found[0].position.line, 3U);
    const auto lineStart = file.find("    \"utf8\"");
    EXPECT_EQ(file.substr(lineStart + found[0].position.column - 1, 1), "]");
}

TEST(SettingsCheckTest, FileThatIsNotJsonIsPlaced) {
    EXPECT_THAT(check("{\n  \"a\": 1,\n}"), ElementsAre(HasSubstr("error 3:1 : the file is not read")));
    EXPECT_THAT(check("[]"), ElementsAre(HasSubstr("not a JSON object")));
    EXPECT_THAT(check("", AppLanguage::spanish), ElementsAre(HasSubstr("el archivo no se lee")));
}

TEST(SettingsCheckTest, UnknownKeysAreNamedWithTheNearest) {
    EXPECT_THAT(
        check("{\"trackball_mouse_sped\": 1.0,\n\"color\": 3}"),
        ElementsAre("warning 1:26 trackball_mouse_sped: unknown key, which has no effect; did you mean "
                    "'trackball_mouse_speed'?",
                    "warning 2:10 color: unknown key, which has no effect"));
    EXPECT_THAT(check(listOf(R"({"buttonNumber": 3, "buttonLabel": "", "secondaryActon": "Pegar"})")),
                ElementsAre(HasSubstr("mappings[0].secondaryActon: unknown key, which has no effect and is "
                                      "dropped at the next change; did you mean 'secondaryAction'?")));
}

TEST(SettingsCheckTest, NumbersOutsideTheirRangeAreToldAsTheyCount) {
    EXPECT_THAT(check("{\"trackball_scroll_speed_vertical\": 9,\n\"keep_awake_move_every_minutes\": 0}"),
                ElementsAre("warning 1:37 trackball_scroll_speed_vertical: outside 0.2 – 3: counts as 3",
                            "warning 2:34 keep_awake_move_every_minutes: outside 1 – 60: counts as 1"));
}

TEST(SettingsCheckTest, PointerSpeedThatAStartResetsIsTold) {
    for (const auto* speed : {"1.8", "2.5", "0.1"}) {
        EXPECT_THAT(check(std::string("{\"trackball_mouse_speed\": ") + speed + "}"),
                    ElementsAre("warning 1:27 trackball_mouse_speed: outside 0.5 – 1.4: a start sets it back "
                                "to 1, in the file too"))
            << speed;
    }
    EXPECT_THAT(check("{\"trackball_mouse_speed\": 1.4}"), IsEmpty());
}

TEST(SettingsCheckTest, ValuesOfTheWrongKindAreToldAsTheyCount) {
    EXPECT_THAT(check("{\"trackball_scroll_speed_vertical\": \"fast\",\n\"notify_caps_lock\": 0,\n"
                      "\"trackball_swap_scroll_direction\": \"yes\",\n\"general_theme\": \"dark\"}"),
                ElementsAre(HasSubstr("expected a number, found \"fast\"; counts as 1"),
                            HasSubstr("notify_caps_lock: expected true or false, found 0; counts as true"),
                            HasSubstr("expected true or false, found \"yes\"; counts as true"),
                            HasSubstr("\"dark\" is not known; counts as \"System\"; did you mean 'Dark'?")));
}

TEST(SettingsCheckTest, NumberOfFunctionsOutsideItsRangeIsToldAsItCounts) {
    EXPECT_THAT(
        check(listOf(R"({"buttonNumber": 3, "buttonLabel": "", "action": "Copiar", "functionSlots": 9})")),
        ElementsAre(HasSubstr("mappings[0].functionSlots: outside 1 – 4: counts as 4")));
}

TEST(SettingsCheckTest, ActiveProfileThatDoesNotExistIsTold) {
    EXPECT_THAT(check(R"({"trackball_active_profile": "Work"})"),
                ElementsAre(HasSubstr("names no profile: the first one is active")));
}

}  // namespace
}  // namespace trelvan
