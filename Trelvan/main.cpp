#include "CommandLine.hpp"
#include "DryRun/Actions.hpp"
#include "DryRun/Explain.hpp"
#include "DryRun/Recorder.hpp"
#include "DryRun/RecordingFile.hpp"
#include "DryRun/RecordingPanels.hpp"
#include "DryRun/Simulation.hpp"
#include "Platform/Platform.hpp"
#include "TrelvanApp.hpp"
#include "UI/SmartButtonWindows.hpp"
#include "Utilities/Logger.hpp"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace trelvan;

void print(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

/// The platform; none when it cannot be had, which has been said then.
std::unique_ptr<Platform> openPlatform(int& argc, char** argv, const std::string& configDirectory,
                                       AppLanguage language) {
    auto made = makePlatform(argc, argv, {.configDirectory = configDirectory});
    if (const auto* failure = std::get_if<PlatformFailure>(&made)) {
        const auto& reason = language == AppLanguage::spanish ? failure->spanish : failure->english;
        print(stderr, "trelvan: " + reason + "\n");
        return nullptr;
    }
    return std::get<std::unique_ptr<Platform>>(std::move(made));
}

/// Says on the terminal what of the settings could not be read; the log says it too, but in the log's
/// language.
void complain(const std::optional<SettingsProblem>& problem, AppLanguage language) {
    if (!problem) return;
    const auto text = language == AppLanguage::spanish ? problem->spanishText() : problem->englishText();
    print(stderr, "trelvan: " + text + "\n");
}

SmartButtonWindows menuWindows(Platform& platform) {
    return SmartButtonWindows({.screens = platform.screens(),
                               .appearance = platform.appearance(),
                               .workspace = platform.workspace(),
                               .defaults = platform.userDefaults(),
                               .timers = platform.timers(),
                               .input = platform.menuInput()});
}

int runApplication(int& argc, char** argv, const command::Run& options, AppLanguage language) {
    const auto platform = openPlatform(argc, argv, options.configDirectory, language);
    if (!platform) return exitStatus::unavailable;
    complain(platform->userDefaults().problem, language);
    SmartButtonWindows windows = menuWindows(*platform);
    TrelvanApp app(*platform, windows, AppLogger);
    complain(app.profileManager.problem.get(), language);
    app.appear();
    return platform->run();
}

int recordEvents(int& argc, char** argv, const command::Record& options, AppLanguage language) {
    const auto platform = openPlatform(argc, argv, options.configDirectory, language);
    if (!platform) return exitStatus::unavailable;
    complain(platform->userDefaults().problem, language);
    auto file = RecordingFile::create(options.script);
    if (!file) {
        const auto reason = localized(language, "cannot make a new file ", "no se puede crear el archivo ");
        print(stderr, "trelvan: " + std::string(reason) + "'" + options.script + "'\n");
        return exitStatus::badUsage;
    }
    const auto privacy =
        localized(language,
                  ": recording pointer events, modifier states and what your active profile does; no key "
                  "press and none "
                  "of your names and paths is recorded. Control+C ends it.\n",
                  ": se graban eventos del puntero, estados de modificadores y lo que hace tu perfil activo; "
                  "no se graba "
                  "ninguna tecla pulsada ni ninguno de tus nombres y rutas. Control+C termina.\n");
    print(stderr, file->path() + std::string(privacy));
    Recorder recorder(
        {platform->eventTap(), platform->inputState(), platform->screens(), platform->userDefaults(),
         platform->hotKeyTable(), platform->clock(), platform->systemViews(), platform->workspace(),
         platform->actionShortcuts(), platform->sessionState()},
        [&file](std::string_view line) { file->write(line); });
    int status = exitStatus::ok;
    {
        SmartButtonWindows windows = menuWindows(*platform);
        RecordingPanels panels(windows, recorder);
        TrelvanApp app(*platform, panels, AppLogger, &Uuid::random, &recorder);
        complain(app.profileManager.problem.get(), language);
        app.appear();
        status = platform->run();
    }
    return file->flush() ? status : exitStatus::unavailable;
}

}  // namespace

int main(int argc, char** argv) {
    prepareProcess();
    if (const auto status = runHelperProcess(argc, argv)) return *status;
    const AppLanguage language = terminalLanguage();
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Command asked = parseCommandLine(arguments, language);
    if (const auto* bad = std::get_if<command::BadUsage>(&asked)) {
        print(stderr, "trelvan: " + bad->message + "\n");
        const std::string command = bad->subcommand.empty() ? "" : std::string(bad->subcommand) + " ";
        print(stderr,
              std::string(localized(language, "Try 'trelvan ", "Prueba 'trelvan ")) + command + "--help'.\n");
        return exitStatus::badUsage;
    }
    if (const auto* help = std::get_if<command::ShowHelp>(&asked)) {
        print(stdout, helpText(language, help->subcommand));
        return exitStatus::ok;
    }
    if (std::holds_alternative<command::ShowVersion>(asked)) {
        print(stdout, "trelvan " TRELVAN_VERSION "\n");
        return exitStatus::ok;
    }
    if (const auto* dryRun = std::get_if<command::Simulate>(&asked))
        return simulate(dryRun->script, dryRun->shortcuts, language);
    if (const auto* question = std::get_if<command::Explain>(&asked))
        return explain(*question, platformShortcuts(), &desktopHotKeys, language);
    if (const auto* listing = std::get_if<command::Actions>(&asked))
        return listActions(*listing, platformShortcuts(), language);
    if (const auto* recording = std::get_if<command::Record>(&asked))
        return recordEvents(argc, argv, *recording, language);
    return runApplication(argc, argv, std::get<command::Run>(asked), language);
}
