#include "CommandTable.hpp"

#include "Core/ModifierNames.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace trelvan {

namespace {

constexpr std::array<std::string_view, 2> systems{"macos", "linux"};
constexpr std::array<std::string_view, 2> languages{"en", "es"};

constexpr OptionRow configOption{
    .name = "--config",
    .kind = ValueKind::folder,
    .valueName = {"DIR", "CARPETA"},
    .help = {"folder of the settings file; otherwise $XDG_CONFIG_HOME/trelvan or ~/.config/trelvan",
             "carpeta del archivo de ajustes; si no, $XDG_CONFIG_HOME/trelvan o ~/.config/trelvan"}};

constexpr OptionRow jsonOption{.name = "--json",
                               .help = {"one JSON object for programs", "un objeto JSON para programas"}};

constexpr OptionRow languageOption{.name = "--language",
                                   .kind = ValueKind::choice,
                                   .valueName = {"en|es", "en|es"},
                                   .help = {"language of the answer; otherwise that of the settings",
                                            "idioma de la respuesta; si no, el de los ajustes"},
                                   .choices = languages};

constexpr std::array runOptions{
    OptionRow{.name = "--show",
              .help = {"opens the settings window, of the Trelvan that runs or else of this one",
                       "abre la ventana de ajustes, del Trelvan que funciona o, si no, de este"}},
    configOption,
    OptionRow{.name = "--version", .help = {"shows the version", "muestra la versión"}},
};

constexpr std::array simulateOptions{
    OptionRow{.name = "--shortcuts",
              .kind = ValueKind::choice,
              .valueName = {"macos|linux", "macos|linux"},
              .help = {"whose key combinations the actions send, and whose desktop's rules hold; otherwise "
                       "those that the script names, or macos",
                       "de quién son los atajos que envían las acciones y las reglas del escritorio; si no, "
                       "los que nombra el guion, o macos"},
              .choices = systems},
};

constexpr std::array recordOptions{configOption};

constexpr std::array explainOptions{
    OptionRow{
        .name = "--button",
        .kind = ValueKind::wholeNumber,
        .valueName = {"N", "N"},
        .help = {"button number: 0 left, 1 right, 2 middle, 3 and up the extra buttons, -100 wheel up, "
                 "-101 wheel down",
                 "número de botón: 0 izquierdo, 1 derecho, 2 medio, 3 y siguientes los extra, -100 rueda "
                 "arriba, -101 rueda abajo"},
        .required = true},
    OptionRow{.name = "--modifiers",
              .kind = ValueKind::modifiers,
              .valueName = {"M", "M"},
              .help = {"modifiers held: shift, control (ctrl), option (alt), command (super, meta) and fn, "
                       "joined by + or comma",
                       "modificadores pulsados: shift, control (ctrl), option (alt), command (super, meta) y "
                       "fn, unidos por + o coma"}},
    OptionRow{
        .name = "--profile",
        .kind = ValueKind::text,
        .valueName = {"NAME", "NOMBRE"},
        .help = {"name of the profile; otherwise the active one", "nombre del perfil; si no, el activo"}},
    languageOption,
    jsonOption,
    configOption,
};

constexpr std::array actionsOptions{languageOption, jsonOption, configOption};
constexpr std::array checkOptions{languageOption, jsonOption, configOption};
constexpr std::array initOptions{configOption};
constexpr std::array buttonsOptions{languageOption, configOption};

constexpr std::array runStatuses{
    StatusRow{exitStatus::alreadyThere,
              {"Trelvan already runs on this display and cannot be asked to open its window",
               "Trelvan ya funciona en esta pantalla y no se le puede pedir que abra su ventana"}}};
constexpr std::array checkStatuses{
    StatusRow{exitStatus::findings, {"something is wrong or odd", "algo está mal o es extraño"}}};
constexpr std::array initStatuses{
    StatusRow{exitStatus::alreadyThere, {"the file is already there", "el archivo ya existe"}}};

std::int64_t wholeNumber(std::string_view text) {
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::optional<AppLanguage> languageOf(const GivenArguments& given) {
    const auto value = given.value(languageOption.name);
    if (!value) return std::nullopt;
    return *value == "es" ? AppLanguage::spanish : AppLanguage::english;
}

Command makeRun(const GivenArguments& given) {
    if (given.has("--version")) return command::ShowVersion{};
    return command::Run{.configDirectory = given.text("--config"), .show = given.has("--show")};
}

Command makeSimulate(const GivenArguments& given) {
    const auto asked = given.value("--shortcuts");
    const ActionShortcuts* shortcuts = asked == "linux" ? &linuxShortcuts : &macShortcuts;
    return command::Simulate{.script = std::string(given.argument().value_or("")),
                             .shortcuts = asked ? shortcuts : nullptr};
}

Command makeRecord(const GivenArguments& given) {
    return command::Record{.script = std::string(given.argument().value_or("")),
                           .configDirectory = given.text("--config")};
}

Command makeExplain(const GivenArguments& given) {
    const auto profile = given.value("--profile");
    return command::Explain{.buttonNumber = wholeNumber(given.text("--button")),
                            .modifiers = readModifiers(given.text("--modifiers")).flags,
                            .profile = profile ? std::optional<std::string>(*profile) : std::nullopt,
                            .language = languageOf(given),
                            .json = given.has("--json"),
                            .configDirectory = given.text("--config")};
}

Command makeActions(const GivenArguments& given) {
    return command::Actions{.language = languageOf(given),
                            .json = given.has("--json"),
                            .configDirectory = given.text("--config")};
}

Command makeCheck(const GivenArguments& given) {
    return command::Check{.language = languageOf(given),
                          .json = given.has("--json"),
                          .configDirectory = given.text("--config")};
}

Command makeInit(const GivenArguments& given) {
    return command::Init{given.text("--config")};
}

Command makeButtons(const GivenArguments& given) {
    return command::Buttons{.language = languageOf(given), .configDirectory = given.text("--config")};
}

constexpr std::array rows{
    CommandRow{.name = {},
               .summary = {},
               .description =
                   {"Turns the extra buttons and the wheel of a trackball or mouse into shortcuts, system "
                    "actions and application launches. Runs until it is told to end (Control+C, or the "
                    "terminate signal). Where it runs on this display already its settings window is "
                    "opened.",
                    "Convierte los botones extra y la rueda de un trackball o ratón en atajos, acciones "
                    "del sistema y apertura de aplicaciones. Funciona hasta que se le pide terminar "
                    "(Control+C o la señal de terminación). Donde ya funciona en esta pantalla se abre su "
                    "ventana de ajustes."},
               .options = runOptions,
               .argument = std::nullopt,
               .example = "trelvan --config ~/trelvan-test",
               .exampleMeaning = {"runs with the settings in that folder, which is created when missing",
                                  "funciona con los ajustes de esa carpeta, que se crea si no existe"},
               .statuses = runStatuses,
               .make = makeRun},
    CommandRow{
        .name = "init",
        .summary = {"writes a settings file to begin with", "escribe un archivo de ajustes para empezar"},
        .description =
            {"Writes a settings file with a profile to begin with: Copy, and Paste with Shift, on "
             "the first extra button, Back and Forward on the second, the volume on the wheel with "
             "the Super key. A file that is there already stays as it is.",
             "Escribe un archivo de ajustes con un perfil para empezar: Copiar, y Pegar con Shift, "
             "en el primer botón extra, Atrás y Adelante en el segundo, el volumen en la rueda con "
             "la tecla Súper. Un archivo que ya existe queda como está."},
        .options = initOptions,
        .argument = std::nullopt,
        .example = "trelvan init",
        .exampleMeaning = {"writes it where the program reads it", "lo escribe donde el programa lo lee"},
        .statuses = initStatuses,
        .make = makeInit},
    CommandRow{
        .name = "check",
        .summary = {"what is wrong or odd in the settings", "lo que está mal o es extraño en los ajustes"},
        .description =
            {"Reads the settings without acting and lists everything wrong or odd, with its place "
             "in the file: words that stand for nothing, unknown keys, values that are corrected, "
             "functions that can never fire or do nothing. Changes nothing and needs no display.",
             "Lee los ajustes sin actuar y enumera todo lo que está mal o es extraño, con su lugar "
             "en el archivo: palabras que no significan nada, claves desconocidas, valores que se "
             "corrigen, funciones que nunca se ejecutan o no hacen nada. No cambia nada ni necesita "
             "pantalla."},
        .options = checkOptions,
        .argument = std::nullopt,
        .example = "trelvan check --config ~/trelvan-test",
        .exampleMeaning = {"checks the settings in that folder", "revisa los ajustes de esa carpeta"},
        .statuses = checkStatuses,
        .make = makeCheck},
    CommandRow{
        .name = "buttons",
        .summary = {"shows each press and what it fires", "muestra cada pulsación y lo que ejecuta"},
        .description =
            {"Shows each press of a mouse button and each turn of a wheel with its number, its "
             "device, the modifiers held and what it would fire, until Control+C. It acts on "
             "nothing and takes nothing, so Trelvan may run meanwhile.",
             "Muestra cada pulsación de un botón del ratón y cada giro de una rueda con su número, "
             "su dispositivo, los modificadores pulsados y lo que ejecutaría, hasta Control+C. No "
             "actúa ni retiene nada, así que Trelvan puede funcionar mientras tanto."},
        .options = buttonsOptions,
        .argument = std::nullopt,
        .example = "trelvan buttons",
        .exampleMeaning = {"press the button whose number you look for", "pulsa el botón cuyo número buscas"},
        .statuses = {},
        .make = makeButtons},
    CommandRow{.name = "simulate",
               .summary = {"what a script of events would do", "lo que haría un guion de eventos"},
               .description =
                   {"Runs a script of events on a simulated desktop and prints what would happen, one JSON "
                    "object a line; nothing of this computer is touched. SCRIPT may be - for standard "
                    "input.",
                    "Ejecuta un guion de eventos en un escritorio simulado y muestra lo que pasaría, un "
                    "objeto JSON por línea; nada de este ordenador se toca. GUION puede ser - para la "
                    "entrada estándar."},
               .options = simulateOptions,
               .argument = ArgumentRow{.kind = ValueKind::file,
                                       .name = {"SCRIPT", "GUION"},
                                       .noun = {"a script", "un guion"},
                                       .required = true},
               .example = "trelvan simulate --shortcuts linux press.jsonl",
               .exampleMeaning = {"shows what the events of press.jsonl would send on Linux",
                                  "muestra lo que los eventos de press.jsonl enviarían en Linux"},
               .statuses = {},
               .make = makeSimulate},
    CommandRow{.name = "record",
               .summary = {"runs and writes what it sees, for a bug report",
                           "funciona y escribe lo que ve, para un informe de error"},
               .description =
                   {"Runs Trelvan and writes what its tap sees as a script for simulate, with the settings "
                    "at the head, for a bug report. SCRIPT must not exist yet; without one, "
                    "trelvan-recording-1.jsonl or the next free number is taken. It never writes key "
                    "presses, only which modifier keys are held.",
                    "Ejecuta Trelvan y escribe lo que ve como guion para simulate, con los ajustes al "
                    "principio, para un informe de error. GUION no debe existir aún; si no se da, se usa "
                    "trelvan-recording-1.jsonl o el siguiente número libre. Nunca escribe teclas pulsadas, "
                    "solo qué modificadores lo están."},
               .options = recordOptions,
               .argument = ArgumentRow{.kind = ValueKind::file, .name = {"SCRIPT", "GUION"}, .noun = {}},
               .example = "trelvan record lost-press.jsonl",
               .exampleMeaning = {"records until Control+C", "graba hasta Control+C"},
               .statuses = runStatuses,
               .make = makeRecord},
    CommandRow{.name = "explain",
               .summary = {"which function a press would fire, and why",
                           "qué función ejecutaría una pulsación, y por qué"},
               .description =
                   {"Tells which function a press would fire with your settings, and why. Changes nothing "
                    "and needs no display.",
                    "Dice qué función ejecutaría una pulsación con tus ajustes, y por qué. No cambia nada "
                    "ni necesita pantalla."},
               .options = explainOptions,
               .argument = std::nullopt,
               .example = "trelvan explain --button 3 --modifiers ctrl+shift",
               .exampleMeaning = {"explains a press of the first extra button",
                                  "explica una pulsación del primer botón extra"},
               .statuses = {},
               .make = makeExplain},
    CommandRow{.name = "actions",
               .summary = {"every action, what it sends on this desktop, and whether it can",
                           "cada acción, qué envía en este escritorio y si puede"},
               .description =
                   {"Lists every action by the name that the settings file has for it and by its English "
                    "name, what it sends on this desktop, and what is missing where it can do nothing here. "
                    "Asks the desktop and changes nothing.",
                    "Enumera cada acción por el nombre que tiene en el archivo de ajustes y por su nombre "
                    "inglés, qué envía en este escritorio y qué falta donde aquí no puede hacer nada. "
                    "Pregunta al escritorio y no cambia nada."},
               .options = actionsOptions,
               .argument = std::nullopt,
               .example = "trelvan actions --json",
               .exampleMeaning = {"lists the actions for a program", "enumera las acciones para un programa"},
               .statuses = {},
               .make = makeActions},
};

constexpr OptionRow help{.name = "--help", .letter = 'h', .help = {"shows this text", "muestra este texto"}};

}  // namespace

std::optional<std::string_view> GivenArguments::value(std::string_view option) const {
    for (auto given = options_.rbegin(); given != options_.rend(); ++given) {
        if (given->first->name == option) return given->second;
    }
    return std::nullopt;
}

std::span<const CommandRow> commandTable() {
    return rows;
}

const OptionRow& helpOption() {
    return help;
}

const CommandRow* commandNamed(std::string_view name) {
    const auto* const row = std::ranges::find(rows.begin() + 1, rows.end(), name, &CommandRow::name);
    return row == rows.end() ? nullptr : row;
}

}  // namespace trelvan
