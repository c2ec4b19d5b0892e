#include "UI/Models/ActionChoices.hpp"

#include "Core/MappingResolution.hpp"
#include "UI/Models/ModifierSigns.hpp"
#include "UI/ShortcutText.hpp"
#include "Utilities/NearestWord.hpp"
#include "Utilities/Overloaded.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>

namespace trelvan {

namespace {

std::string signsOf(KeyChord chord) {
    const CustomShortcut shortcut{chord.keyCode, chord.flags & combinationModifiers, {}};
    return shortcutText(shortcut).toStdString();
}

/// The desktop's hot key for the tool, as signs; empty when it has none.
std::string hotKeySigns(const DesktopTool& tool, const HotKeyTable& hotKeys) {
    for (const int id : tool.hotKeys) {
        if (const auto chord = combinationOf(hotKeys.entry(id))) return signsOf(*chord);
    }
    return {};
}

/// Whether every word of `text` is in `label`; both folded.
bool hasAllWords(std::string_view label, std::string_view text) {
    while (!(text = trimmed(text)).empty()) {
        const auto end = text.find(' ');
        if (label.find(text.substr(0, end)) == std::string_view::npos) return false;
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end);
    }
    return true;
}

}  // namespace

std::string actionDisplayName(ButtonAction action, AppLanguage language) {
    return std::string(label(action, rawValue(language)));
}

std::string shortDescription(ButtonAction action, const ActionShortcuts& shortcuts,
                             const HotKeyTable& hotKeys, AppLanguage language) {
    const auto say = [language](TextPair text) { return std::string(localized(language, text)); };
    const auto ofDesktop = [&](const DesktopTool& tool) {
        const auto signs = hotKeySigns(tool, hotKeys);
        return signs.empty() ? say({"the desktop's", "del escritorio"}) : signs;
    };
    const auto& row = rowOf(action);
    if (row.input == ActionInput::shortcut || row.input == ActionInput::dictationShortcut)
        return say({"as recorded", "según se grabe"});
    return std::visit(
        Overloaded{[](const does::Nothing&) { return std::string(); },
                   [&](const does::Keys& keys) { return signsOf(keys.combination.by(shortcuts.convention)); },
                   [&](const does::View& view) { return ofDesktop(view.tool); },
                   [&](const does::Tool& tool) {
                       return shortcuts.desktopGoesFirst ? ofDesktop(tool.tool)
                                                         : signsOf(tool.combination.by(shortcuts.convention));
                   },
                   [&](const does::Media&) {
                       return say({"media key", "tecla multimedia"});
                   },
                   [&](const does::Click&) {
                       return say({"a click", "un clic"});
                   },
                   [&](const does::Note&) {
                       return say({"opens", "abre"});
                   },
                   [&](const does::Own&) {
                       return row.input == ActionInput::menu ? say({"radial menu", "menú radial"})
                                                             : say({"opens", "abre"});
                   }},
        row.effect);
}

std::vector<ActionChoice> matchingActions(const ActionFilter& filter, const ActionShortcuts& shortcuts,
                                          const HotKeyTable& hotKeys, AppLanguage language) {
    const std::string wanted = folded(filter.text);
    std::vector<ActionChoice> choices;
    for (const auto& row : actionCatalogue()) {
        // What is in no section is in every one.
        if (filter.section && row.section && row.section != filter.section) continue;
        if (!hasAllWords(folded(row.rawValue), wanted) && !hasAllWords(folded(row.englishLabel), wanted))
            continue;
        choices.push_back({row.action, actionDisplayName(row.action, language),
                           shortDescription(row.action, shortcuts, hotKeys, language)});
    }
    return choices;
}

}  // namespace trelvan
