#include "CommandLine.hpp"
#include "Core/ActionReport.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Core/StarterProfile.hpp"
#include "MenuBarScene.hpp"
#include "Platform/Platform.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "StartReport.hpp"
#include "Tools/Explain/ActionsCommand.hpp"
#include "Tools/Explain/ButtonsCommand.hpp"
#include "Tools/Explain/CheckCommand.hpp"
#include "Tools/Explain/Explain.hpp"
#include "Tools/Record/Recorder.hpp"
#include "Tools/Record/RecordingFile.hpp"
#include "Tools/Record/RecordingPanels.hpp"
#include "Tools/Simulate/Simulation.hpp"
#include "TrelvanApp.hpp"
#include "UI/SmartButtonWindows.hpp"
#include "Utilities/Logger.hpp"
#include "Version.hpp"

#include <QCoreApplication>
#include <cstdio>
#include <filesystem>
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

std::string_view reasonOf(const PlatformFailure& failure, AppLanguage language) {
    return localized(language, failure.english, failure.spanish);
}

/// The platform, or the exit status when it cannot be had, which has been said then.
std::variant<std::unique_ptr<Platform>, int> openPlatform(int& argc, char** argv,
                                                          const std::string& configDirectory,
                                                          AppLanguage language) {
    auto made = makePlatform(argc, argv, {.configDirectory = configDirectory});
    if (const auto* failure = std::get_if<PlatformFailure>(&made)) {
        print(stderr, "trelvan: " + std::string(reasonOf(*failure, language)) + "\n");
        return failure->alreadyRuns ? exitStatus::alreadyThere : exitStatus::unavailable;
    }
    return std::get<std::unique_ptr<Platform>>(std::move(made));
}

std::string textOf(const SettingsProblem& problem, AppLanguage language) {
    return language == AppLanguage::spanish ? problem.spanishText() : problem.englishText();
}

/// Says what the user must know of settings and session. `settings` is the file as the start found it.
void reportStart(TrelvanApp& app, const std::variant<SettingsText, PlatformFailure>& settings,
                 const std::optional<SettingsProblem>& unreadFile, AppLanguage language) {
    const StartReport report{.notifications = app.notificationPoster,
                             .logger = AppLogger,
                             .language = language,
                             .print =
                                 [](std::string_view text) {
                                     print(stdout, text);
                                     std::fflush(stdout);
                                 },
                             .printError = [](std::string_view text) { print(stderr, text); }};
    const auto* const text = std::get_if<SettingsText>(&settings);
    if (text == nullptr)
        print(stderr,
              "trelvan: " + std::string(reasonOf(std::get<PlatformFailure>(settings), language)) + "\n");
    // What a check does not look into, bytes that are no text for example, is told as the start found it.
    if (text == nullptr || !report.tell(*text)) {
        for (const auto& problem : {unreadFile, app.profileManager.problem.get()}) {
            if (problem) print(stderr, "trelvan: " + textOf(*problem, language) + "\n");
        }
    }
    if (const auto notice = sessionNotice()) {
        AppLogger.warning(notice->spanish);
        print(stderr, std::string(localized(language, notice->english, notice->spanish)) + "\n");
    }
}

SmartButtonWindows menuWindows(Platform& platform) {
    return SmartButtonWindows({.screens = platform.screens(),
                               .appearance = platform.appearance(),
                               .workspace = platform.workspace(),
                               .defaults = platform.userDefaults(),
                               .timers = platform.timers(),
                               .input = platform.menuInput()});
}

/// The display is served already: opens the window of the program that serves it.
int showRunningProgram(const PlatformFailure& failure, AppLanguage language) {
    if (askRunningProgramToShow()) {
        print(stdout,
              std::string(localized(language, "Trelvan already runs on this display; its window is open\n",
                                    "Trelvan ya funciona en esta pantalla; su ventana está abierta\n")));
        return exitStatus::ok;
    }
    print(stderr, "trelvan: " + std::string(reasonOf(failure, language)) + "\n");
    print(stderr,
          std::string(localized(language,
                                "Its window cannot be opened from here: it is not on this session's bus "
                                "(DBUS_SESSION_BUS_ADDRESS), or another user's\n",
                                "Su ventana no se puede abrir desde aquí: no está en el bus de esta sesión "
                                "(DBUS_SESSION_BUS_ADDRESS) o es de otro usuario\n")));
    return exitStatus::alreadyThere;
}

/// Says where a further start will not reach this program.
void reportReach(SingleInstance::Reach reach, AppLanguage language) {
    if (reach == SingleInstance::Reach::reachable) return;
    const bool hasNoBus = reach == SingleInstance::Reach::noBus;
    const std::string_view spanish =
        hasNoBus ? "No hay bus de sesión: otro inicio de Trelvan no podrá abrir esta ventana"
                 : "Otro programa tiene el nombre de Trelvan en el bus de sesión: otro inicio no podrá abrir "
                   "esta ventana";
    const std::string_view english =
        hasNoBus ? "There is no session bus: a further start of Trelvan cannot open this one's window"
                 : "Another program has Trelvan's name on the session bus: a further start cannot open this "
                   "one's window";
    AppLogger.warning(spanish);
    print(stderr, "trelvan: " + std::string(localized(language, english, spanish)) + "\n");
}

int runApplication(int& argc, char** argv, const command::Run& options, AppLanguage language) {
    const auto settings = readSettingsText(options.configDirectory);
    auto opened = makePlatform(argc, argv, {.configDirectory = options.configDirectory});
    if (const auto* failure = std::get_if<PlatformFailure>(&opened)) {
        if (failure->alreadyRuns) return showRunningProgram(*failure, language);
        print(stderr, "trelvan: " + std::string(reasonOf(*failure, language)) + "\n");
        return exitStatus::unavailable;
    }
    const auto& platform = std::get<std::unique_ptr<Platform>>(opened);
    SmartButtonWindows windows = menuWindows(*platform);
    TrelvanApp app(*platform, windows, AppLogger);
    MenuBarScene scene(app, *platform, [] { QCoreApplication::quit(); });
    const auto reach = scene.start();
    reportStart(app, settings, platform->userDefaults().problem.get(), language);
    reportReach(reach, language);
    if (options.show) scene.showWindow();
    const auto tellOfProblem = [&app](const std::optional<SettingsProblem>& problem) {
        if (!problem) return;
        app.notificationPoster.announce(StartReport::notificationKind, problem->englishText(),
                                        problem->spanishText());
    };
    const auto unreadFile = platform->userDefaults().problem.observe(tellOfProblem);
    const auto unreadProfiles = app.profileManager.problem.observe(tellOfProblem);
    return platform->run();
}

/// Writes a settings file to begin with, where there is none.
int writeStarterSettings(const command::Init& options, AppLanguage language) {
    const auto profiles = encodeProfiles({starterProfile(language, &Uuid::random)});
    SettingsSnapshot::Values values{{std::string(languageKey), std::string(rawValue(language))}};
    values.emplace(ProfileManager::storageKey, Data{*profiles});
    const auto made = makeSettings(options.configDirectory, values);
    if (const auto* failure = std::get_if<PlatformFailure>(&made)) {
        print(stderr, "trelvan: " + std::string(reasonOf(*failure, language)) + "\n");
        return exitStatus::unavailable;
    }
    const auto& [path, isNew] = std::get<MadeSettings>(made);
    if (!isNew) {
        const auto reason =
            localized(language, " is already there and stays as it is\n", " ya existe y queda como está\n");
        print(stderr, "trelvan: " + path + std::string(reason));
        return exitStatus::alreadyThere;
    }
    print(stdout, path + "\n");
    return exitStatus::ok;
}

int checkSettingsHere(const command::Check& request, AppLanguage language) {
    const auto limits = inputLimits();
    CheckSurroundings surroundings;
    surroundings.modifiers = limits.modifiers;
    surroundings.highestButton = limits.highestButton;
    surroundings.exists = [](const std::string& path) {
        std::error_code ignored;
        return std::filesystem::exists(path, ignored);
    };
    surroundings.obstacle = [desktop =
                                 desktopAbilities()](ButtonAction action) -> std::optional<LocalizedString> {
        auto english = obstacleTo(action, desktop, AppLanguage::english);
        auto spanish = obstacleTo(action, desktop, AppLanguage::spanish);
        if (!english || !spanish) return std::nullopt;
        return LocalizedString{*std::move(english), *std::move(spanish)};
    };
    return checkSettingsFile(request, surroundings, language);
}

int recordEvents(int& argc, char** argv, const command::Record& options, AppLanguage language) {
    const auto settings = readSettingsText(options.configDirectory);
    const auto opened = openPlatform(argc, argv, options.configDirectory, language);
    if (const auto* status = std::get_if<int>(&opened)) return *status;
    const auto& platform = std::get<std::unique_ptr<Platform>>(opened);
    auto file = RecordingFile::create(options.script);
    if (!file) {
        const auto reason = localized(language, "cannot make a new file ", "no se puede crear el archivo ");
        print(stderr, "trelvan: " + std::string(reason) + "'" + options.script + "'\n");
        return exitStatus::badUsage;
    }
    const auto privacy = localized(
        language,
        ": recording pointer events, modifier states and what your active profile does; no key "
        "press and none "
        "of your names and paths is recorded. Control+C ends it.\n",
        ": se graban eventos del puntero, estados de modificadores y lo que hace tu perfil activo; "
        "no se graba ninguna tecla pulsada ni ninguno de tus nombres y rutas. Control+C termina.\n");
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
        app.appear();
        reportStart(app, settings, platform->userDefaults().problem.get(), language);
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
        print(stdout, std::string("trelvan ") + programVersion + "\n");
        return exitStatus::ok;
    }
    if (const auto* dryRun = std::get_if<command::Simulate>(&asked))
        return simulate(dryRun->script, dryRun->shortcuts, language);
    if (const auto* question = std::get_if<command::Explain>(&asked))
        return explain(*question, platformShortcuts(), &desktopHotKeys, language);
    if (const auto* listing = std::get_if<command::Actions>(&asked))
        return listActions(*listing, platformShortcuts(), language);
    if (const auto* request = std::get_if<command::Check>(&asked))
        return checkSettingsHere(*request, language);
    if (const auto* request = std::get_if<command::Init>(&asked))
        return writeStarterSettings(*request, language);
    if (const auto* request = std::get_if<command::Buttons>(&asked)) {
        const auto known = desktopHotKeys();
        const auto hotKey = [&known](int id) {
            const auto found = known.find(id);
            return found != known.end() ? std::optional(found->second) : std::nullopt;
        };
        return showButtons(*request, platformShortcuts(), hotKey, language);
    }
    if (const auto* recording = std::get_if<command::Record>(&asked))
        return recordEvents(argc, argv, *recording, language);
    return runApplication(argc, argv, std::get<command::Run>(asked), language);
}
