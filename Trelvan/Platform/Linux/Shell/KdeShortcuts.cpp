#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/DesktopShortcuts.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <string>

namespace trelvan {

namespace {

struct Place {
    int id;
    /// The last part of the group's name: services stand in a group within a group since Plasma 6.
    std::string_view group;
    std::string_view key;
    /// What is in force where the file has no entry, as it does for services that nobody changed.
    std::string_view standard;
};

constexpr Place places[]{
    {hotkey::missionControl, "kwin", "Overview", ""},
    {hotkey::missionControl, "kwin", "ExposeAll", ""},
    {hotkey::missionControl, "kwin", "Expose", ""},
    {hotkey::appWindows, "kwin", "ExposeClass", ""},
    {hotkey::launchpad, "plasmashell", "activate application launcher", ""},
    {hotkey::showDesktop, "kwin", "Show Desktop", ""},
    {hotkey::desktopLeft, "kwin", "Switch One Desktop to the Left", ""},
    {hotkey::desktopLeft, "kwin", "Switch to Previous Desktop", ""},
    {hotkey::desktopRight, "kwin", "Switch One Desktop to the Right", ""},
    {hotkey::desktopRight, "kwin", "Switch to Next Desktop", ""},
    {hotkey::screenshotFull, "org.kde.spectacle.desktop", "FullScreenScreenShot", "Shift+Print"},
    {hotkey::screenshotArea, "org.kde.spectacle.desktop", "RectangularRegionScreenShot", "Meta+Shift+Print"},
    {hotkey::screenshotTool, "org.kde.spectacle.desktop", "_launch", "Print"},
    {hotkey::emojiPanel, "org.kde.plasma.emojier.desktop", "_launch", "Meta+."},
    {hotkey::lockScreen, "ksmserver", "Lock Session", ""},
};

/// Undoes the escapes of the file.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            result += value[index];
            continue;
        }
        const char next = value[++index];
        if (next == 't') {
            result += '\t';
        } else if (next == 's') {
            result += ' ';
        } else if (next == '\\') {
            result += '\\';
        } else {
            // Of the list's own level.
            (result += '\\') += next;
        }
    }
    return result;
}

/// The first element of a list whose commas inside elements are escaped.
std::string firstElement(std::string_view list) {
    std::string element;
    for (std::size_t index = 0; index < list.size() && list[index] != ','; ++index) {
        if (list[index] == '\\' && index + 1 < list.size()) ++index;
        element += list[index];
    }
    return element;
}

/// The first of the shortcuts in force, which are joined by tabs.
std::optional<Accelerator> firstIn(std::string_view shortcuts) {
    while (!shortcuts.empty()) {
        const auto end = shortcuts.find('\t');
        if (const auto accelerator = qtAccelerator(shortcuts.substr(0, end))) return accelerator;
        shortcuts.remove_prefix(end == std::string_view::npos ? shortcuts.size() : end + 1);
    }
    return std::nullopt;
}

/// "[services][org.kde.spectacle.desktop]": the part in the last brackets.
std::string_view groupOf(std::string_view line) {
    const auto start = line.rfind('[');
    const auto end = line.rfind(']');
    if (start == std::string_view::npos || end == std::string_view::npos || end < start) return {};
    return line.substr(start + 1, end - start - 1);
}

using Values = std::map<std::pair<std::string_view, std::string_view>, std::string_view>;

Values valuesOf(std::string_view text) {
    Values values;
    std::string_view group;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) group = groupOf(line);
        const auto equals = line.find('=');
        if (line.starts_with('[') || line.starts_with('#') || equals == std::string_view::npos) continue;
        values[{group, trimmed(line.substr(0, equals))}] = trimmed(line.substr(equals + 1));
    }
    return values;
}

}  // namespace

ShortcutTable readKdeShortcuts(std::string_view text) {
    const auto values = valuesOf(text);
    ShortcutTable table;
    for (const auto& [id, group, key, standard] : places) {
        const auto found = values.find({group, key});
        const auto accelerator =
            found != values.end() ? firstIn(firstElement(unescaped(found->second))) : firstIn(standard);
        if (accelerator) table.emplace(id, *accelerator);
    }
    return table;
}

}  // namespace trelvan
