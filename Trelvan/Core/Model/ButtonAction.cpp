#include "Core/Model/ButtonAction.hpp"

#include "Core/Model/AppLanguage.hpp"

#include <cstddef>

namespace trelvan {

namespace {

constexpr std::array<std::string_view, RawValueTable<ButtonAction>::rawValues.size()> englishLabels{
    "None",
    "Back",
    "Forward",
    "Mission Control",
    "App Expose",
    "Launchpad",
    "Open Folder",
    "Show Desktop",
    "Move Desktop Left",
    "Move Desktop Right",
    "Copy",
    "Paste",
    "Cut",
    "Undo",
    "Area Screenshot",
    "Full Screenshot",
    "Volume +",
    "Volume -",
    "Mute",
    "Play/Pause",
    "Open Explorer",
    "New Note",
    "Emoji",
    "Start Dictation",
    "Explore AI",
    "Screenshot",
    "Lock Workstation",
    "Smart Button",
    "Left Click",
    "Right Click",
    "Middle Click",
    "Custom Shortcut",
    "Open App",
};

}  // namespace

std::string_view englishLabel(ButtonAction action) {
    return englishLabels[static_cast<std::size_t>(action)];
}

std::string_view label(ButtonAction action, std::string_view languageSetting) {
    return localized(spanishUnlessEnglish(languageSetting), englishLabel(action), rawValue(action));
}

}  // namespace trelvan
