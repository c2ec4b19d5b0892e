#include "CommandLine.hpp"
#include "DryRun/Explain.hpp"
#include "DryRun/Simulation.hpp"
#include "Platform/Platform.hpp"
#include "TrelvanApp.hpp"
#include "Utilities/Logger.hpp"

#include <cstdio>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace trelvan;

void print(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

int runApplication(int& argc, char** argv, const command::Run& options, AppLanguage language) {
    auto made = makePlatform(argc, argv, {.configDirectory = options.configDirectory});
    if (const auto* failure = std::get_if<PlatformFailure>(&made)) {
        const auto& reason = language == AppLanguage::spanish ? failure->spanish : failure->english;
        print(stderr, "trelvan: " + reason + "\n");
        return exitStatus::unavailable;
    }
    Platform& platform = *std::get<std::unique_ptr<Platform>>(made);
    TrelvanApp app(platform, AppLogger);
    app.appear();
    return platform.run();
}

}  // namespace

int main(int argc, char** argv) {
    const AppLanguage language = terminalLanguage();
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Command asked = parseCommandLine(arguments, language);
    if (const auto* bad = std::get_if<command::BadUsage>(&asked)) {
        print(stderr, "trelvan: " + bad->message + "\n");
        print(stderr, localized(language, "Try 'trelvan --help'.\n", "Prueba 'trelvan --help'.\n"));
        return exitStatus::badUsage;
    }
    if (std::holds_alternative<command::ShowHelp>(asked)) {
        print(stdout, helpText(language));
        return exitStatus::ok;
    }
    if (std::holds_alternative<command::ShowVersion>(asked)) {
        print(stdout, "trelvan " TRELVAN_VERSION "\n");
        return exitStatus::ok;
    }
    if (const auto* dryRun = std::get_if<command::Simulate>(&asked))
        return simulate(dryRun->script, dryRun->linuxShortcuts ? linuxShortcuts : macShortcuts);
    if (const auto* question = std::get_if<command::Explain>(&asked))
        return explain(*question, platformShortcuts(), language);
    return runApplication(argc, argv, std::get<command::Run>(asked), language);
}
