#include "Core/Model/ActionCatalogue.hpp"

#include "Core/ButtonMapper.hpp"
#include "Platform/HotKeyTable.hpp"

#include <array>
#include <cstddef>

namespace trelvan {

namespace {

using enum ActionSection;

constexpr EventFlags commandShift = flag::command | flag::shift;
constexpr EventFlags controlCommand = flag::control | flag::command;

// In the order in which they are tried.
constexpr std::array missionControlKeys{hotkey::missionControl, hotkey::menuBar, hotkey::dock,
                                        hotkey::activeWindow};
constexpr std::array appExposeKeys{hotkey::appWindows, hotkey::appWindowsAlternate};
constexpr std::array launchpadKeys{hotkey::launchpad, hotkey::launchpadAlternate};
constexpr std::array showDesktopKeys{hotkey::showDesktop, hotkey::showDesktopAlternate};
constexpr std::array desktopLeftKeys{hotkey::desktopLeft, hotkey::desktopLeftAlternate};
constexpr std::array desktopRightKeys{hotkey::desktopRight, hotkey::desktopRightAlternate};
constexpr std::array screenshotAreaKeys{hotkey::screenshotArea};
constexpr std::array screenshotFullKeys{hotkey::screenshotFull};
constexpr std::array screenshotToolKeys{hotkey::screenshotTool};
constexpr std::array emojiPanelKeys{hotkey::emojiPanel};
constexpr std::array lockScreenKeys{hotkey::lockScreen};

/// On Linux applications look for the letter, wherever the layout has it.
constexpr KeyChord letter(KeyCode keyCode, EventFlags flags, char32_t character) {
    return {keyCode, flags, character};
}

/// On a desktop of Linux, F13 is the place of Print Screen, and command the Super key.
constexpr KeyCode printScreen = key::f13;

constexpr TextPair recordedShortcut{"Sent: the shortcut recorded for it",
                                    "Se envía: el atajo grabado para ello"};

}  // namespace

/// Friend of the mapper, whose private operations the rows run.
struct ActionRows {
    static const std::array<ActionRow, actionCount> all;
};

constexpr std::array<ActionRow, actionCount> ActionRows::all{{
    {.action = ButtonAction::none,
     .rawValue = "Ninguna",
     .englishLabel = "None",
     .section = std::nullopt,
     .effect = does::Nothing{}},
    {.action = ButtonAction::back,
     .rawValue = "Atrás",
     .englishLabel = "Back",
     .section = windowsAndDesktops,
     .effect = does::Keys{{.onMac = {key::leftArrow, flag::command | flag::numericPad},
                           .onLinux = {key::leftArrow, flag::option | flag::numericPad}}}},
    {.action = ButtonAction::forward,
     .rawValue = "Adelante",
     .englishLabel = "Forward",
     .section = windowsAndDesktops,
     .effect = does::Keys{{.onMac = {key::rightArrow, flag::command | flag::numericPad},
                           .onLinux = {key::rightArrow, flag::option | flag::numericPad}}}},
    {.action = ButtonAction::missionControl,
     .rawValue = "Mission Control",
     .englishLabel = "Mission Control",
     .section = windowsAndDesktops,
     .effect = does::View{.tool = {SystemView::missionControl, missionControlKeys},
                          .run = [](const ActionCall& call) { call.mapper.triggerMissionControl(); }}},
    {.action = ButtonAction::appExpose,
     .rawValue = "App Exposé",
     .englishLabel = "App Expose",
     .section = windowsAndDesktops,
     .effect = does::View{.tool = {SystemView::appExpose, appExposeKeys},
                          .run = [](const ActionCall& call) { call.mapper.triggerAppExpose(); }}},
    {.action = ButtonAction::launchpad,
     .rawValue = "Launchpad",
     .englishLabel = "Launchpad",
     .section = applicationsAndFolders,
     .effect = does::View{.tool = {SystemView::launchpad, launchpadKeys},
                          .run = [](const ActionCall& call) { call.mapper.triggerLaunchpad(); }}},
    {.action = ButtonAction::openFolder,
     .rawValue = "Abrir carpeta",
     .englishLabel = "Open Folder",
     .section = applicationsAndFolders,
     .effect =
         does::Own{.run = [](const ActionCall& call) { call.mapper.openFolder(call.mapping.folderPath); },
                   .description = {"Opens the folder chosen for it, or the home folder",
                                   "Abre la carpeta elegida, o la personal"}},
     .input = ActionInput::folder},
    {.action = ButtonAction::showDesktop,
     .rawValue = "Mostrar Escritorio",
     .englishLabel = "Show Desktop",
     .section = windowsAndDesktops,
     .effect = does::View{.tool = {SystemView::showDesktop, showDesktopKeys},
                          .run = [](const ActionCall& call) { call.mapper.triggerShowDesktop(); }}},
    {.action = ButtonAction::moveDesktopLeft,
     .rawValue = "Mover escritorio izquierda",
     .englishLabel = "Move Desktop Left",
     .section = windowsAndDesktops,
     .effect =
         does::View{.tool = {SystemView::desktopLeft, desktopLeftKeys},
                    .run = [](const ActionCall& call) { call.mapper.triggerMoveDesktop(key::leftArrow); }}},
    {.action = ButtonAction::moveDesktopRight,
     .rawValue = "Mover escritorio derecha",
     .englishLabel = "Move Desktop Right",
     .section = windowsAndDesktops,
     .effect =
         does::View{.tool = {SystemView::desktopRight, desktopRightKeys},
                    .run = [](const ActionCall& call) { call.mapper.triggerMoveDesktop(key::rightArrow); }}},
    {.action = ButtonAction::copy,
     .rawValue = "Copiar",
     .englishLabel = "Copy",
     .section = editing,
     .effect = does::Keys{{.onMac = {key::c, flag::command}, .onLinux = letter(key::c, flag::control, U'c')},
                          TerminalUse::copy}},
    {.action = ButtonAction::paste,
     .rawValue = "Pegar",
     .englishLabel = "Paste",
     .section = editing,
     .effect = does::Keys{{.onMac = {key::v, flag::command}, .onLinux = letter(key::v, flag::control, U'v')},
                          TerminalUse::paste}},
    {.action = ButtonAction::cut,
     .rawValue = "Cortar",
     .englishLabel = "Cut",
     .section = editing,
     .effect = does::Keys{{.onMac = {key::x, flag::command}, .onLinux = letter(key::x, flag::control, U'x')},
                          TerminalUse::copy}},
    {.action = ButtonAction::undo,
     .rawValue = "Deshacer",
     .englishLabel = "Undo",
     .section = editing,
     .effect = does::Keys{{.onMac = {key::z, flag::command}, .onLinux = letter(key::z, flag::control, U'z')},
                          TerminalUse::undo}},
    {.action = ButtonAction::screenshotArea,
     .rawValue = "Captura de Área",
     .englishLabel = "Area Screenshot",
     .section = screenshots,
     .effect = does::Tool{{SystemView::screenshotArea, screenshotAreaKeys},
                          {.onMac = {key::digit4, commandShift}, .onLinux = {printScreen, flag::shift}}}},
    {.action = ButtonAction::screenshotFull,
     .rawValue = "Captura Completa",
     .englishLabel = "Full Screenshot",
     .section = screenshots,
     .effect = does::Tool{{SystemView::screenshotFull, screenshotFullKeys},
                          {.onMac = {key::digit3, commandShift}, .onLinux = {printScreen, 0}}}},
    {.action = ButtonAction::volumeUp,
     .rawValue = "Volumen +",
     .englishLabel = "Volume +",
     .section = soundAndMedia,
     .effect = does::Media{MediaKey::volumeUp}},
    {.action = ButtonAction::volumeDown,
     .rawValue = "Volumen -",
     .englishLabel = "Volume -",
     .section = soundAndMedia,
     .effect = does::Media{MediaKey::volumeDown}},
    {.action = ButtonAction::mute,
     .rawValue = "Silencio",
     .englishLabel = "Mute",
     .section = soundAndMedia,
     .effect = does::Media{MediaKey::mute}},
    {.action = ButtonAction::playPause,
     .rawValue = "Play/Pause",
     .englishLabel = "Play/Pause",
     .section = soundAndMedia,
     .effect = does::Media{MediaKey::playPause}},
    {.action = ButtonAction::openExplorer,
     .rawValue = "Open Explorer",
     .englishLabel = "Open Explorer",
     .section = applicationsAndFolders,
     .effect = does::Own{.run = [](const ActionCall& call) { call.mapper.revealHome(); },
                         .description = {"Opens the home folder in the file manager",
                                         "Abre la carpeta personal en el gestor de archivos"}}},
    {.action = ButtonAction::newNote,
     .rawValue = "New Note",
     .englishLabel = "New Note",
     .section = tools,
     .effect =
         does::Note{"com.apple.Notes",
                    {.onMac = {key::n, flag::command}, .onLinux = letter(key::n, flag::control, U'n')}}},
    {.action = ButtonAction::emojiPanel,
     .rawValue = "Emoji",
     .englishLabel = "Emoji",
     .section = tools,
     .effect = does::Tool{{SystemView::emojiPanel, emojiPanelKeys},
                          {.onMac = {key::space, controlCommand},
                           .onLinux = letter(key::period, flag::control, U'.')}}},
    {.action = ButtonAction::dictation,
     .rawValue = "Iniciar dictado",
     .englishLabel = "Start Dictation",
     .section = tools,
     .effect = does::Own{.run =
                             [](const ActionCall& call) {
                                 call.mapper.triggerDictation(call.mapping.dictationShortcut);
                             },
                         .description = recordedShortcut},
     .input = ActionInput::dictationShortcut},
    {.action = ButtonAction::exploreAI,
     .rawValue = "Explore AI",
     .englishLabel = "Explore AI",
     .section = tools,
     .effect = does::Own{.run = [](const ActionCall& call) { call.mapper.openExploreAI(); },
                         .description = {"Opens ", "Abre "},
                         .object = ButtonMapper::exploreAIAddress}},
    {.action = ButtonAction::screenshotTool,
     .rawValue = "Screenshot",
     .englishLabel = "Screenshot",
     .section = screenshots,
     .effect = does::Tool{{SystemView::screenshotTool, screenshotToolKeys},
                          {.onMac = {key::digit5, commandShift}, .onLinux = {printScreen, flag::control}}}},
    {.action = ButtonAction::lockWorkstation,
     .rawValue = "Lock Workstation",
     .englishLabel = "Lock Workstation",
     .section = tools,
     .effect =
         does::Tool{{SystemView::lockScreen, lockScreenKeys},
                    {.onMac = {key::q, controlCommand}, .onLinux = letter(key::l, flag::command, U'l')}}},
    {.action = ButtonAction::smartButton,
     .rawValue = "Smart Button",
     .englishLabel = "Smart Button",
     .section = tools,
     .effect = does::Own{.run = [](const ActionCall& call) { call.mapper.showSmartButton(); },
                         .description = {"Opens the radial menu at the pointer",
                                         "Abre el menú radial en el puntero"}},
     .input = ActionInput::menu},
    {.action = ButtonAction::leftClick,
     .rawValue = "Click Izquierdo",
     .englishLabel = "Left Click",
     .section = clicks,
     .effect = does::Click{0, {"A left click at the pointer", "Un clic izquierdo en el puntero"}}},
    {.action = ButtonAction::rightClick,
     .rawValue = "Click Derecho",
     .englishLabel = "Right Click",
     .section = clicks,
     .effect = does::Click{1, {"A right click at the pointer", "Un clic derecho en el puntero"}}},
    {.action = ButtonAction::middleClick,
     .rawValue = "Click Medio",
     .englishLabel = "Middle Click",
     .section = clicks,
     .effect = does::Click{2, {"A middle click at the pointer", "Un clic medio en el puntero"}}},
    {.action = ButtonAction::customShortcut,
     .rawValue = "Atajo Personalizado",
     .englishLabel = "Custom Shortcut",
     .section = custom,
     .effect = does::Own{.run =
                             [](const ActionCall& call) {
                                 call.mapper.sendRecorded(call.mapping.function(call.slot).shortcut);
                             },
                         .description = recordedShortcut},
     .input = ActionInput::shortcut},
    {.action = ButtonAction::launchApp,
     .rawValue = "Abrir Aplicación",
     .englishLabel = "Open App",
     .section = applicationsAndFolders,
     .effect =
         does::Own{.run = [](const ActionCall& call) { call.mapper.launchApp(call.mapping.appPath); },
                   .description = {"Opens the application chosen for it", "Abre la aplicación elegida"}},
     .input = ActionInput::application},
}};

namespace {

constexpr std::array<std::string_view, actionCount> rawValues() {
    std::array<std::string_view, actionCount> values;
    for (std::size_t index = 0; index < actionCount; ++index) values[index] = ActionRows::all[index].rawValue;
    return values;
}

constexpr bool rowsFollowTheEnumeration() {
    for (std::size_t index = 0; index < actionCount; ++index) {
        const auto& row = ActionRows::all[index];
        if (row.action != static_cast<ButtonAction>(index) || row.rawValue.empty() ||
            row.englishLabel.empty())
            return false;
    }
    return true;
}
static_assert(rowsFollowTheEnumeration(), "each action needs its row, in the order of the enumeration");

}  // namespace

constinit const std::array<std::string_view, actionCount> RawValueTable<ButtonAction>::rawValues =
    trelvan::rawValues();

std::span<const ActionRow, actionCount> actionCatalogue() {
    return ActionRows::all;
}

const ActionRow& rowOf(ButtonAction action) {
    return ActionRows::all[static_cast<std::size_t>(action)];
}

TextPair label(ActionSection section) {
    static constexpr std::array<TextPair, 8> labels{{
        {"Editing", "Edición"},
        {"Windows and desktops", "Ventanas y escritorios"},
        {"Screenshots", "Capturas"},
        {"Sound and media", "Sonido y multimedia"},
        {"Applications and folders", "Aplicaciones y carpetas"},
        {"Tools", "Herramientas"},
        {"Clicks", "Clics"},
        {"Custom", "Personalizado"},
    }};
    return labels[static_cast<std::size_t>(section)];
}

const DesktopTool* desktopTool(ButtonAction action) {
    const auto& effect = rowOf(action).effect;
    if (const auto* const view = std::get_if<does::View>(&effect)) return &view->tool;
    if (const auto* const tool = std::get_if<does::Tool>(&effect)) return &tool->tool;
    return nullptr;
}

const Combination* catalogueCombination(ButtonAction action) {
    const auto& effect = rowOf(action).effect;
    if (const auto* const keys = std::get_if<does::Keys>(&effect)) return &keys->combination;
    if (const auto* const tool = std::get_if<does::Tool>(&effect)) return &tool->combination;
    if (const auto* const note = std::get_if<does::Note>(&effect)) return &note->combination;
    return nullptr;
}

std::optional<KeyChord> shortcutInTerminal(TerminalUse use, const TerminalShortcuts& terminal) {
    if (use == TerminalUse::copy) return terminal.copy;
    if (use == TerminalUse::paste) return terminal.paste;
    return std::nullopt;
}

}  // namespace trelvan
