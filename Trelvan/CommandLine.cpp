#include "CommandLine.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace trelvan {

namespace {

constexpr std::string_view englishHelp =
    R"(Usage: trelvan [--config DIR]
       trelvan simulate [--shortcuts macos|linux] SCRIPT|-
       trelvan record [--config DIR] [SCRIPT]
       trelvan explain --button N [--modifiers M] [--profile NAME]
                       [--language en|es] [--json] [--config DIR]
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

record runs Trelvan and writes what its tap sees as a script for simulate, with
the settings at the head, for a bug report. SCRIPT must not exist yet; without
one, trelvan-recording-1.jsonl or the next free number is taken. It never writes
key presses, only which modifier keys are held.

explain tells which function a press would fire with your settings, and why.
  --button       button number: 0 left, 1 right, 2 middle, 3 and up the extra
                 buttons, -100 wheel up, -101 wheel down
  --modifiers    modifiers held: shift, control, option, command and fn,
                 joined by +
  --profile      name of the profile; otherwise the active one
  --language     language of the answer; otherwise that of the settings
  --json         one JSON object for programs

Exit status: 0 normal end, 1 no display or a needed part of it is missing,
2 wrong arguments.
)";

constexpr std::string_view spanishHelp =
    R"(Uso: trelvan [--config CARPETA]
     trelvan simulate [--shortcuts macos|linux] GUION|-
     trelvan record [--config CARPETA] [GUION]
     trelvan explain --button N [--modifiers M] [--profile NOMBRE]
                     [--language en|es] [--json] [--config CARPETA]
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

record ejecuta Trelvan y escribe lo que ve como guion para simulate, con los
ajustes al principio, para un informe de error. GUION no debe existir aún; si no
se da, se usa trelvan-recording-1.jsonl o el siguiente número libre. Nunca
escribe teclas pulsadas, solo qué modificadores lo están.

explain dice qué función ejecutaría una pulsación con tus ajustes, y por qué.
  --button           número de botón: 0 izquierdo, 1 derecho, 2 medio, 3 y
                     siguientes los extra, -100 rueda arriba, -101 rueda abajo
  --modifiers        modificadores pulsados: shift, control, option, command y
                     fn, unidos por +
  --profile          nombre del perfil; si no, el activo
  --language         idioma de la respuesta; si no, el de los ajustes
  --json             un objeto JSON para programas

Estado de salida: 0 fin normal, 1 no hay pantalla o falta una parte necesaria,
2 argumentos incorrectos.
)";

command::BadUsage wrong(std::string_view what, std::string_view argument) {
    return {std::string(what) + " '" + std::string(argument) + "'"};
}

/// Takes the folder of `--config`; it may be missing, but nothing else may stand in its place.
Command withConfig(std::string_view folder, AppLanguage language) {
    if (folder.empty()) {
        return command::BadUsage{
            std::string(localized(language, "--config needs a folder", "--config necesita una carpeta"))};
    }
    std::error_code error;
    const auto status = std::filesystem::status(folder, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_directory(status))
        return wrong(localized(language, "--config: not a folder:", "--config: no es una carpeta:"), folder);
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
                    localized(language, "--shortcuts: macos or linux, not", "--shortcuts: macos o linux, no"),
                    whose);
            }
            result.linuxShortcuts = whose == "linux";
        } else if (argument.starts_with('-') && argument != "-") {
            return wrong(localized(language, "unknown option", "opción desconocida"), argument);
        } else if (result.script.empty()) {
            result.script = argument;
        } else {
            return wrong(localized(language, "unexpected argument", "argumento inesperado"), argument);
        }
    }
    if (result.script.empty())
        return command::BadUsage{
            std::string(localized(language, "simulate needs a script", "simulate necesita un guion"))};
    return result;
}

/// Reads what follows "record".
Command parseRecord(std::span<const std::string_view> arguments, AppLanguage language) {
    command::Record result;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--help") return command::ShowHelp{};
        if (argument == "--config") {
            const std::string_view folder = index + 1 < arguments.size() ? arguments[++index] : "";
            auto config = withConfig(folder, language);
            if (std::holds_alternative<command::BadUsage>(config)) return config;
            result.configDirectory = folder;
        } else if (argument.starts_with('-')) {
            return wrong(localized(language, "unknown option", "opción desconocida"), argument);
        } else if (result.script.empty()) {
            result.script = argument;
        } else {
            return wrong(localized(language, "unexpected argument", "argumento inesperado"), argument);
        }
    }
    return result;
}

std::optional<EventFlags> parseModifiers(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, EventFlags>, 7> names{{{"shift", flag::shift},
                                                                            {"control", flag::control},
                                                                            {"option", flag::option},
                                                                            {"alt", flag::option},
                                                                            {"command", flag::command},
                                                                            {"fn", flag::function},
                                                                            {"function", flag::function}}};
    EventFlags flags = 0;
    while (!text.empty()) {
        const auto plus = text.find('+');
        const auto name = text.substr(0, plus);
        const auto known = std::ranges::find(names, name, &std::pair<std::string_view, EventFlags>::first);
        if (known == names.end()) return std::nullopt;
        flags |= known->second;
        text = plus == std::string_view::npos ? std::string_view{} : text.substr(plus + 1);
    }
    return flags;
}

/// Takes one option of "explain" with its value; none when it is well, else what is wrong.
std::optional<command::BadUsage> takeExplainOption(command::Explain& result, std::string_view option,
                                                   std::string_view value, AppLanguage language) {
    if (option == "--button") {
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), result.buttonNumber);
        if (error == std::errc{} && end == value.data() + value.size()) return std::nullopt;
        return wrong(
            localized(language, "--button: not a whole number:", "--button: no es un número entero:"), value);
    }
    if (option == "--modifiers") {
        if (const auto flags = parseModifiers(value)) {
            result.modifiers = *flags;
            return std::nullopt;
        }
        return wrong(localized(language, "--modifiers: shift, control, option, command or fn, not",
                               "--modifiers: shift, control, option, command o fn, no"),
                     value);
    }
    if (option == "--language") {
        if (value != "en" && value != "es")
            return wrong(localized(language, "--language: en or es, not", "--language: en o es, no"), value);
        result.language = value == "es" ? AppLanguage::spanish : AppLanguage::english;
    } else if (option == "--profile") {
        result.profile = value;
    } else if (option == "--config") {
        const auto config = withConfig(value, language);
        if (const auto* bad = std::get_if<command::BadUsage>(&config)) return *bad;
        result.configDirectory = value;
    } else {
        return wrong(localized(language, "unknown option", "opción desconocida"), option);
    }
    return std::nullopt;
}

/// Reads what follows "explain".
Command parseExplain(std::span<const std::string_view> arguments, AppLanguage language) {
    command::Explain result;
    bool hasButton = false;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view option = arguments[index];
        if (option == "--help") return command::ShowHelp{};
        if (option == "--json") {
            result.json = true;
            continue;
        }
        const std::string_view value = index + 1 < arguments.size() ? arguments[++index] : "";
        if (const auto bad = takeExplainOption(result, option, value, language)) return *bad;
        hasButton = hasButton || option == "--button";
    }
    if (hasButton) return result;
    return command::BadUsage{
        std::string(localized(language, "explain needs --button N", "explain necesita --button N"))};
}

}  // namespace

Command parseCommandLine(std::span<const std::string_view> arguments, AppLanguage language) {
    constexpr std::string_view configOption = "--config";
    constexpr std::string_view configPrefix = "--config=";
    if (!arguments.empty() && arguments.front() == "simulate")
        return parseSimulate(arguments.subspan(1), language);
    if (!arguments.empty() && arguments.front() == "record")
        return parseRecord(arguments.subspan(1), language);
    if (!arguments.empty() && arguments.front() == "explain")
        return parseExplain(arguments.subspan(1), language);
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
            return wrong(localized(language, "unknown option", "opción desconocida"), argument);
        } else {
            return wrong(localized(language, "unexpected argument", "argumento inesperado"), argument);
        }
        if (std::holds_alternative<command::BadUsage>(result)) return result;
    }
    return result;
}

std::string_view helpText(AppLanguage language) {
    return localized(language, englishHelp, spanishHelp);
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
