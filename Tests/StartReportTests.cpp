#include "StartReport.hpp"
#include "Support/NotifierFixture.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StartReportTest : public test::NotifierFixture {
  protected:
    void tell(std::optional<std::string> bytes) {
        StartReport{.notifications = poster,
                    .logger = desktop.logger,
                    .language = terminal,
                    .print = [this](std::string_view text) { printed += text; },
                    .printError = [this](std::string_view text) { errors += text; }}
            .tell({.path = "/s.json", .bytes = std::move(bytes)});
    }
    /// What was asked to be shown last.
    std::vector<std::string> notified() const {
        const auto& last = desktop.notificationState.lastRequest;
        return last ? std::vector{last->body} : std::vector<std::string>{};
    }

    AppLanguage terminal = AppLanguage::english;
    std::string printed;
    std::string errors;
    const std::string wrongWord =
        "{\"trackball_profiles\": [{\"name\": \"P\", \"mappings\": [\n"
        "{\"buttonNumber\": 3, \"buttonLabel\": \"\", \"action\": \"Copy\"}]}]}";
};

TEST_F(StartReportTest, FirstStartSaysWhereTheSettingsWillBe) {
    tell(std::nullopt);
    EXPECT_THAT(printed, HasSubstr("/s.json"));
    EXPECT_THAT(printed, HasSubstr("trelvan init"));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Aún no hay ajustes; se guardarán en /s.json"));
    EXPECT_THAT(notified(), IsEmpty());
    printed.clear();
    terminal = AppLanguage::spanish;
    tell(std::nullopt);
    EXPECT_THAT(printed, HasSubstr("los ajustes estarán en\n  /s.json"));
}

TEST_F(StartReportTest, GoodSettingsAreNotSpokenOf) {
    tell("{}");
    // Odd, but taken: that is for a check to tell.
    tell(R"({"unknown": 1, "trackball_mouse_speed": 1.8})");
    EXPECT_EQ(printed + errors, "");
    EXPECT_THAT(notified(), IsEmpty());
}

TEST_F(StartReportTest, WrongWordIsToldWithPlaceAllowedValuesAndTheNearest) {
    tell(wrongWord);
    EXPECT_THAT(errors,
                HasSubstr("/s.json:2:50: error: trackball_profiles[0].mappings[0].action: \"Copy\" is "
                          "not an action; did you mean 'Copiar'?\n    allowed: Ninguna, Atrás, "));
    EXPECT_THAT(notified(), ElementsAre("The settings have an error, and the default profile is in use. Line "
                                        "2: \"Copy\" is not an action; did you mean 'Copiar'?"));
    EXPECT_THAT(
        desktop.messages(LogLevel::warning),
        ElementsAre("Ajustes no aceptados: /s.json:2:50: trackball_profiles[0].mappings[0].action: \"Copy\" "
                    "no es una acción; ¿quisiste decir 'Copiar'?"));
}

TEST_F(StartReportTest, NotificationIsInTheLanguageOfTheInterfaceAndTheTerminalInItsOwn) {
    desktop.defaults["general_language"] = std::string("Español");
    tell(wrongWord);
    EXPECT_THAT(notified(), ElementsAre(HasSubstr("Línea 2: \"Copy\" no es una acción")));
    EXPECT_THAT(errors, HasSubstr("is not an action"));
}

TEST_F(StartReportTest, FurtherErrorsAreCounted) {
    tell(R"({"trackball_profiles": [{"mappings": [{"buttonNumber": "x"}]}]})");
    EXPECT_THAT(notified(), ElementsAre(HasSubstr("(and 2 more)")));
}

TEST_F(StartReportTest, FileThatIsNotJsonIsTold) {
    tell("{\n]");
    EXPECT_THAT(errors, HasSubstr("/s.json:2:1: error: the file is not read"));
    EXPECT_THAT(notified(), ElementsAre(HasSubstr("Line 2")));
}

}  // namespace
}  // namespace trelvan
