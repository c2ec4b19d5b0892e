#include "CommandLine.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace trelvan {
namespace {

Command parse(std::initializer_list<std::string_view> arguments,
              AppLanguage language = AppLanguage::english) {
    return parseCommandLine(std::vector<std::string_view>(arguments), language);
}

std::string complaint(const Command& parsed) {
    const auto* bad = std::get_if<command::BadUsage>(&parsed);
    return bad != nullptr ? bad->message : "";
}

TEST(CommandLineTest, NoArgumentsRunsWithThePlatformsFolder) {
    const auto parsed = parse({});
    ASSERT_TRUE(std::holds_alternative<command::Run>(parsed));
    EXPECT_EQ(std::get<command::Run>(parsed).configDirectory, "");
}

TEST(CommandLineTest, ConfigFolderIsTakenInBothForms) {
    EXPECT_EQ(std::get<command::Run>(parse({"--config", "/nowhere/x"})).configDirectory, "/nowhere/x");
    EXPECT_EQ(std::get<command::Run>(parse({"--config=/nowhere/y"})).configDirectory, "/nowhere/y");
}

TEST(CommandLineTest, ConfigWithoutFolderIsBadUsage) {
    EXPECT_EQ(complaint(parse({"--config"})), "--config needs a folder");
    EXPECT_EQ(complaint(parse({"--config="})), "--config needs a folder");
}

TEST(CommandLineTest, ConfigThatIsAFileIsBadUsage) {
    EXPECT_EQ(complaint(parse({"--config", "/etc/passwd"})), "--config: not a folder: '/etc/passwd'");
}

TEST(CommandLineTest, HelpAndVersionAreKnown) {
    EXPECT_TRUE(std::holds_alternative<command::ShowHelp>(parse({"--help"})));
    EXPECT_TRUE(std::holds_alternative<command::ShowVersion>(parse({"--version"})));
}

TEST(CommandLineTest, UnknownArgumentsAreNamedInBothLanguages) {
    EXPECT_EQ(complaint(parse({"--fast"})), "unknown option '--fast'");
    EXPECT_EQ(complaint(parse({"--fast"}, AppLanguage::spanish)), "opción desconocida '--fast'");
    EXPECT_EQ(complaint(parse({"now"})), "unexpected argument 'now'");
}

TEST(CommandLineTest, SimulateTakesOneScriptAndAShortcutTable) {
    const auto parsed = parse({"simulate", "--shortcuts", "linux", "a.jsonl"});
    ASSERT_TRUE(std::holds_alternative<command::Simulate>(parsed));
    EXPECT_EQ(std::get<command::Simulate>(parsed).script, "a.jsonl");
    EXPECT_TRUE(std::get<command::Simulate>(parsed).linuxShortcuts);
    EXPECT_EQ(std::get<command::Simulate>(parse({"simulate", "-"})).script, "-");
    EXPECT_EQ(complaint(parse({"simulate"})), "simulate needs a script");
    EXPECT_EQ(complaint(parse({"simulate", "a", "b"})), "unexpected argument 'b'");
    EXPECT_EQ(complaint(parse({"simulate", "--shortcuts", "dos", "a"})),
              "--shortcuts: macos or linux, not 'dos'");
}

TEST(CommandLineTest, ExplainTakesButtonModifiersProfileAndLanguage) {
    const auto parsed = parse({"explain", "--button", "-101", "--modifiers", "shift+command", "--profile",
                               "W", "--language", "es", "--json"});
    ASSERT_TRUE(std::holds_alternative<command::Explain>(parsed));
    const auto& explain = std::get<command::Explain>(parsed);
    EXPECT_EQ(explain.buttonNumber, -101);
    EXPECT_EQ(explain.modifiers, flag::shift | flag::command);
    EXPECT_EQ(explain.profile, "W");
    EXPECT_EQ(explain.language, AppLanguage::spanish);
    EXPECT_TRUE(explain.json);
}

TEST(CommandLineTest, ExplainNamesWhatIsWrong) {
    EXPECT_EQ(complaint(parse({"explain"})), "explain needs --button N");
    EXPECT_EQ(complaint(parse({"explain", "--button", "3x"})), "--button: not a whole number: '3x'");
    EXPECT_EQ(complaint(parse({"explain", "--button"})), "--button: not a whole number: ''");
    EXPECT_EQ(complaint(parse({"explain", "--button", "3", "--modifiers", "shift+hyper"})),
              "--modifiers: shift, control, option, command or fn, not 'shift+hyper'");
    EXPECT_EQ(complaint(parse({"explain", "--button", "3", "--language", "fr"})),
              "--language: en or es, not 'fr'");
    EXPECT_EQ(complaint(parse({"explain", "--fast", "3"})), "unknown option '--fast'");
}

TEST(CommandLineTest, HelpExistsInBothLanguages) {
    EXPECT_TRUE(helpText(AppLanguage::english).starts_with("Usage: trelvan"));
    EXPECT_TRUE(helpText(AppLanguage::spanish).starts_with("Uso: trelvan"));
}

}  // namespace
}  // namespace trelvan
