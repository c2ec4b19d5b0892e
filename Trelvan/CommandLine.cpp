#include "CommandLine.hpp"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace trelvan {

namespace {

constexpr std::string_view englishHelp =
    R"(Usage: trelvan [--config DIR]
       trelvan simulate [--shortcuts macos|linux] SCRIPT|-
       trelvan --help | --version

Turns the extra buttons and the wheel of a trackball or mouse into shortcuts,
system actions and application launches. Runs until it is told to end
(Control+C, or the terminate signal).

  --config DIR   folder of the settings file; it is created when missing.
                 Otherwise $XDG_CONFIG_HOME/trelvan or ~/.config/trelvan.
  --help         shows this text
  --version      shows the version

simulate runs a script of events on a simulated desktop and prints what would
happen, one JSON object a line; nothing of this computer is touched.
  --shortcuts    whose key combinations the actions send: macos (the default)
                 or linux

Exit status: 0 normal end, 1 no display or a needed part of it is missing,
2 wrong arguments.
)";

constexpr std::string_view spanishHelp =
    R"(Uso: trelvan [--config CARPETA]
     trelvan simulate [--shortcuts macos|linux] GUION|-
     trelvan --help | --version

Convierte los botones extra y la rueda de un trackball o ratón en atajos,
acciones del sistema y apertura de aplicaciones. Funciona hasta que se le pide
terminar (Control+C o la señal de terminación).

  --config CARPETA   carpeta del archivo de ajustes; se crea si no existe.
                     Si no, $XDG_CONFIG_HOME/trelvan o ~/.config/trelvan.
  --help             muestra este texto
  --version          muestra la versión

simulate ejecuta un guion de eventos en un escritorio simulado y muestra lo que
pasaría, un objeto JSON por línea; nada de este ordenador se toca.
  --shortcuts        de quién son los atajos que envían las acciones: macos (lo
                     habitual) o linux

Estado de salida: 0 fin normal, 1 no hay pantalla o falta una parte necesaria,
2 argumentos incorrectos.
)";

/// The same sentence in the language asked for.
std::string_view pick(AppLanguage language, std::string_view english, std::string_view spanish) {
    return language == AppLanguage::spanish ? spanish : english;
}

command::BadUsage wrong(std::string_view what, std::string_view argument) {
    return {std::string(what) + " '" + std::string(argument) + "'"};
}

/// Takes the folder of `--config`; it may be missing, but nothing else may stand in its place.
Command withConfig(std::string_view folder, AppLanguage language) {
    if (folder.empty()) {
        return command::BadUsage{
            std::string(pick(language, "--config needs a folder", "--config necesita una carpeta"))};
    }
    std::error_code error;
    const auto status = std::filesystem::status(folder, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_directory(status))
        return wrong(pick(language, "--config: not a folder:", "--config: no es una carpeta:"), folder);
    return command::Run{std::string(folder)};
}

/// Reads what follows "simulate".
Command parseSimulate(std::span<const std::string_view> arguments, AppLanguage language) {
    command::Simulate result;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--help") return command::ShowHelp{};
        if (argument == "--shortcuts") {
            const std::string_view whose = index + 1 < arguments.size() ? arguments[++index] : "";
            if (whose != "linux" && whose != "macos") {
                return wrong(
                    pick(language, "--shortcuts: macos or linux, not", "--shortcuts: macos o linux, no"),
                    whose);
            }
            result.linuxShortcuts = whose == "linux";
        } else if (argument.starts_with('-') && argument != "-") {
            return wrong(pick(language, "unknown option", "opción desconocida"), argument);
        } else if (result.script.empty()) {
            result.script = argument;
        } else {
            return wrong(pick(language, "unexpected argument", "argumento inesperado"), argument);
        }
    }
    if (result.script.empty())
        return command::BadUsage{
            std::string(pick(language, "simulate needs a script", "simulate necesita un guion"))};
    return result;
}

}  // namespace

Command parseCommandLine(std::span<const std::string_view> arguments, AppLanguage language) {
    constexpr std::string_view configOption = "--config";
    constexpr std::string_view configPrefix = "--config=";
    if (!arguments.empty() && arguments.front() == "simulate")
        return parseSimulate(arguments.subspan(1), language);
    Command result = command::Run{};
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--help" || argument == "-h") return command::ShowHelp{};
        if (argument == "--version") return command::ShowVersion{};
        if (argument == configOption) {
            const bool hasValue = index + 1 < arguments.size();
            result = withConfig(hasValue ? arguments[++index] : std::string_view{}, language);
        } else if (argument.starts_with(configPrefix)) {
            result = withConfig(argument.substr(configPrefix.size()), language);
        } else if (argument.starts_with('-')) {
            return wrong(pick(language, "unknown option", "opción desconocida"), argument);
        } else {
            return wrong(pick(language, "unexpected argument", "argumento inesperado"), argument);
        }
        if (std::holds_alternative<command::BadUsage>(result)) return result;
    }
    return result;
}

std::string_view helpText(AppLanguage language) {
    return pick(language, englishHelp, spanishHelp);
}

AppLanguage terminalLanguage() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0') continue;
        return std::string_view(value).starts_with("es") ? AppLanguage::spanish : AppLanguage::english;
    }
    return AppLanguage::english;
}

}  // namespace trelvan
