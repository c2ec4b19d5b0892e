#pragma once

#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <string_view>

namespace trelvan {

/// What a button can do. The order is the catalogue's, wherever actions are listed.
enum class ButtonAction {
    none,
    back,
    forward,
    missionControl,
    appExpose,
    launchpad,
    openFolder,
    showDesktop,
    moveDesktopLeft,
    moveDesktopRight,
    copy,
    paste,
    cut,
    undo,
    screenshotArea,
    screenshotFull,
    volumeUp,
    volumeDown,
    mute,
    playPause,
    openExplorer,
    newNote,
    emojiPanel,
    dictation,
    exploreAI,
    screenshotTool,
    lockWorkstation,
    smartButton,
    leftClick,
    rightClick,
    middleClick,
    customShortcut,
    launchApp,
};

/// The raw values are at once what is stored, for good, and the Spanish labels; those in English are meant
/// so.
template <>
struct RawValueTable<ButtonAction> {
    static constexpr std::string_view noun = "an action";
    static constexpr std::array<std::string_view, 33> rawValues{
        "Ninguna",
        "Atrás",
        "Adelante",
        "Mission Control",
        "App Exposé",
        "Launchpad",
        "Abrir carpeta",
        "Mostrar Escritorio",
        "Mover escritorio izquierda",
        "Mover escritorio derecha",
        "Copiar",
        "Pegar",
        "Cortar",
        "Deshacer",
        "Captura de Área",
        "Captura Completa",
        "Volumen +",
        "Volumen -",
        "Silencio",
        "Play/Pause",
        "Open Explorer",
        "New Note",
        "Emoji",
        "Iniciar dictado",
        "Explore AI",
        "Screenshot",
        "Lock Workstation",
        "Smart Button",
        "Click Izquierdo",
        "Click Derecho",
        "Click Medio",
        "Atajo Personalizado",
        "Abrir Aplicación",
    };
};

/// The English interface's label.
[[nodiscard]] std::string_view englishLabel(ButtonAction action);

/// The label for the interface, given the text of the language setting: the English label for "English", the
/// raw value for every other text.
[[nodiscard]] std::string_view label(ButtonAction action, std::string_view languageSetting);

}  // namespace trelvan
