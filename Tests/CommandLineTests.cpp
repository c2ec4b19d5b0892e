#include "CommandLine.hpp"
#include "CommandTable.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <sstream>
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

TEST(CommandLineTest, ShowAsksForTheWindow) {
    EXPECT_FALSE(std::get<command::Run>(parse({})).show);
    const auto parsed = parse({"--show", "--config", "/nowhere/x"});
    ASSERT_TRUE(std::holds_alternative<command::Run>(parsed));
    EXPECT_TRUE(std::get<command::Run>(parsed).show);
    EXPECT_EQ(std::get<command::Run>(parsed).configDirectory, "/nowhere/x");
    EXPECT_NE(helpText(AppLanguage::english).find("opens the settings window"), std::string::npos);
    EXPECT_NE(helpText(AppLanguage::spanish).find("abre la ventana de ajustes"), std::string::npos);
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
    EXPECT_EQ(std::get<command::Simulate>(parsed).shortcuts, &linuxShortcuts);
    EXPECT_EQ(std::get<command::Simulate>(parse({"simulate", "a.jsonl"})).shortcuts, nullptr);
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
    EXPECT_EQ(complaint(parse({"explain", "--button"})), "--button needs a number");
    EXPECT_EQ(complaint(parse({"explain", "--button", "3", "--modifiers", "shift+hyper"})),
              "--modifiers: unknown modifier 'hyper'; known: shift, control (ctrl), option (alt), command "
              "(super, meta, cmd, win), fn");
    EXPECT_EQ(complaint(parse({"explain", "--button", "3", "--language", "fr"})),
              "--language: en or es, not 'fr'");
    EXPECT_EQ(complaint(parse({"explain", "--fast", "3"})), "unknown option '--fast'");
}

TEST(CommandLineTest, ConfigWithEqualsSignWorksAfterASubcommand) {
    EXPECT_EQ(std::get<command::Record>(parse({"record", "--config=/nowhere/z"})).configDirectory,
              "/nowhere/z");
    EXPECT_EQ(
        std::get<command::Explain>(parse({"explain", "--button=3", "--config=/nowhere/z"})).configDirectory,
        "/nowhere/z");
    EXPECT_EQ(complaint(parse({"record", "--config="})), "--config needs a folder");
}

TEST(CommandLineTest, OptionsMayStandBeforeTheSubcommandThatHasThem) {
    const auto parsed = parse({"--config", "/nowhere/x", "explain", "--button", "3"});
    ASSERT_TRUE(std::holds_alternative<command::Explain>(parsed));
    EXPECT_EQ(std::get<command::Explain>(parsed).configDirectory, "/nowhere/x");
    EXPECT_EQ(complaint(parse({"--config", "/nowhere/x", "simulate", "a"})), "unknown option '--config'");
}

TEST(CommandLineTest, ShortAndLongHelpWorkEverywhere) {
    for (const auto* option : {"-h", "--help"}) {
        EXPECT_EQ(std::get<command::ShowHelp>(parse({option})).subcommand, "");
        for (const auto& row : commandTable().subspan(1)) {
            const auto parsed = parse({row.name, option});
            ASSERT_TRUE(std::holds_alternative<command::ShowHelp>(parsed)) << row.name;
            EXPECT_EQ(std::get<command::ShowHelp>(parsed).subcommand, row.name);
        }
    }
}

TEST(CommandLineTest, NearestOptionAndCommandAreOffered) {
    EXPECT_EQ(complaint(parse({"--confg", "x"})), "unknown option '--confg'; did you mean '--config'?");
    EXPECT_EQ(complaint(parse({"explain", "--modifier", "x"})),
              "unknown option '--modifier'; did you mean '--modifiers'?");
    EXPECT_EQ(complaint(parse({"simualte", "x"})), "unknown command 'simualte'; did you mean 'simulate'?");
    EXPECT_EQ(complaint(parse({"simualte"}, AppLanguage::spanish)),
              "orden desconocida 'simualte'; ¿quisiste decir 'simulate'?");
    EXPECT_EQ(complaint(parse({"simulate", "--shortcuts", "linus", "a"})),
              "--shortcuts: macos or linux, not 'linus'; did you mean 'linux'?");
}

TEST(CommandLineTest, OptionInTheValuesPlaceIsNoValue) {
    EXPECT_EQ(complaint(parse({"explain", "--button", "--json"})), "--button needs a number");
    EXPECT_EQ(complaint(parse({"record", "--config", "--help"})), "--config needs a folder");
    EXPECT_EQ(complaint(parse({"explain", "--json=yes", "--button", "3"})), "--json takes no value");
}

TEST(CommandLineTest, AfterTwoDashesNothingIsAnOption) {
    EXPECT_EQ(std::get<command::Record>(parse({"record", "--", "--help"})).script, "--help");
    EXPECT_EQ(complaint(parse({"--", "record"})), "unexpected argument 'record'");
}

TEST(CommandLineTest, ModifiersAreUnderstoodByTheirUsualNames) {
    const auto parsed = parse({"explain", "--button", "3", "--modifiers", "Ctrl,ALT+super"});
    ASSERT_TRUE(std::holds_alternative<command::Explain>(parsed));
    EXPECT_EQ(std::get<command::Explain>(parsed).modifiers, flag::control | flag::option | flag::command);
}

TEST(CommandLineTest, BadUsagePointsToTheHelpOfItsCommand) {
    EXPECT_EQ(std::get<command::BadUsage>(parse({"explain"})).subcommand, "explain");
    EXPECT_EQ(std::get<command::BadUsage>(parse({"--fast"})).subcommand, "");
}

TEST(CommandLineTest, HelpExistsInBothLanguages) {
    EXPECT_TRUE(helpText(AppLanguage::english).starts_with("Usage: trelvan"));
    EXPECT_TRUE(helpText(AppLanguage::spanish).starts_with("Uso: trelvan"));
    EXPECT_TRUE(helpText(AppLanguage::english, "explain").starts_with("Usage: trelvan explain --button N"));
    EXPECT_TRUE(
        helpText(AppLanguage::spanish, "record").starts_with("Uso: trelvan record [--config CARPETA]"));
}

/// Lines longer than a terminal of 80 columns.
std::vector<std::string> longLines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto width = std::ranges::count_if(
            line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
        if (width > 80) result.push_back(line);
    }
    return result;
}

TEST(CommandLineTest, EveryCommandsHelpHasItsOptionsAndAnExampleThatParses) {
    for (const auto language : {AppLanguage::english, AppLanguage::spanish}) {
        const std::string whole = helpText(language);
        for (const auto& row : commandTable()) {
            const std::string help = helpText(language, row.name);
            EXPECT_THAT(longLines(help), testing::IsEmpty());
            EXPECT_THAT(help, testing::HasSubstr(std::string(row.example)));
            EXPECT_THAT(help, testing::HasSubstr("-h, --help"));
            EXPECT_THAT(whole, testing::HasSubstr(std::string(row.name)));
            for (const auto& option : row.options) {
                EXPECT_THAT(help, testing::HasSubstr("\n  " + std::string(option.name)));
                EXPECT_FALSE(localized(language, option.help).empty()) << option.name;
            }
            std::istringstream words{std::string(row.example)};
            const std::vector<std::string> example{std::istream_iterator<std::string>(words), {}};
            ASSERT_EQ(example.front(), "trelvan");
            const std::vector<std::string_view> arguments(example.begin() + 1, example.end());
            EXPECT_EQ(complaint(parseCommandLine(arguments, language)), "") << row.example;
        }
    }
}

}  // namespace
}  // namespace trelvan
