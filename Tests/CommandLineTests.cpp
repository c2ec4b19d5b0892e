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

TEST(CommandLineTest, HelpExistsInBothLanguages) {
    EXPECT_TRUE(helpText(AppLanguage::english).starts_with("Usage: trelvan"));
    EXPECT_TRUE(helpText(AppLanguage::spanish).starts_with("Uso: trelvan"));
}

}  // namespace
}  // namespace trelvan
