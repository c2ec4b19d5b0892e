#pragma once

#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <cstddef>
#include <string_view>

namespace trelvan {

/// What a button can do; the catalogue (ActionCatalogue.hpp) says what that is. The order is the one in which
/// actions are listed everywhere.
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

inline constexpr std::size_t actionCount = static_cast<std::size_t>(ButtonAction::launchApp) + 1;

/// The raw values are the catalogue's.
template <>
struct RawValueTable<ButtonAction> {
    static constexpr std::string_view noun = "an action";
    static const std::array<std::string_view, actionCount> rawValues;
};

/// The English interface's label.
[[nodiscard]] std::string_view englishLabel(ButtonAction action);

/// The label for the interface, given the text of the language setting: the English label for "English", the
/// raw value for every other text.
[[nodiscard]] std::string_view label(ButtonAction action, std::string_view languageSetting);

}  // namespace trelvan
