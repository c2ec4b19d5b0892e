#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/DesktopShortcuts.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <span>
#include <string>

namespace trelvan {

namespace {

/// Where a function's shortcut stands. A function may have several places: the first with a shortcut counts.
struct Place {
    int id;
    std::string_view schema;
    std::string_view key;
};

constexpr std::string_view gnomeWindows = "org.gnome.desktop.wm.keybindings";
constexpr std::string_view gnomeShell = "org.gnome.shell.keybindings";
constexpr std::string_view gnomeMedia = "org.gnome.settings-daemon.plugins.media-keys";

constexpr Place gnomePlaces[]{
    {hotkey::missionControl, gnomeShell, "toggle-overview"},
    {hotkey::missionControl, "org.gnome.mutter", "overlay-key"},
    {hotkey::launchpad, gnomeShell, "toggle-application-view"},
    {hotkey::showDesktop, gnomeWindows, "show-desktop"},
    {hotkey::desktopLeft, gnomeWindows, "switch-to-workspace-left"},
    {hotkey::desktopRight, gnomeWindows, "switch-to-workspace-right"},
    // Before GNOME 42 the settings daemon took the pictures, since then the shell does; its tool starts with
    // an area.
    {hotkey::screenshotFull, gnomeShell, "screenshot"},
    {hotkey::screenshotFull, gnomeMedia, "screenshot"},
    {hotkey::screenshotArea, gnomeMedia, "area-screenshot"},
    {hotkey::screenshotArea, gnomeShell, "show-screenshot-ui"},
    {hotkey::screenshotTool, gnomeShell, "show-screenshot-ui"},
    {hotkey::lockScreen, gnomeMedia, "screensaver"},
};

constexpr std::string_view cinnamonWindows = "org.cinnamon.desktop.keybindings.wm";
constexpr std::string_view cinnamonMedia = "org.cinnamon.desktop.keybindings.media-keys";

constexpr Place cinnamonPlaces[]{
    // The keys down and up lead to the views of the windows and of the desktops there.
    {hotkey::missionControl, cinnamonWindows, "switch-to-workspace-down"},
    {hotkey::showDesktop, cinnamonWindows, "show-desktop"},
    {hotkey::desktopLeft, cinnamonWindows, "switch-to-workspace-left"},
    {hotkey::desktopRight, cinnamonWindows, "switch-to-workspace-right"},
    {hotkey::screenshotFull, cinnamonMedia, "screenshot"},
    {hotkey::screenshotArea, cinnamonMedia, "area-screenshot"},
    {hotkey::lockScreen, cinnamonMedia, "screensaver"},
};

constexpr std::string_view mateWindows = "org.mate.Marco.global-keybindings";

constexpr Place matePlaces[]{
    {hotkey::launchpad, mateWindows, "panel-main-menu"},
    {hotkey::showDesktop, mateWindows, "show-desktop"},
    {hotkey::desktopLeft, mateWindows, "switch-to-workspace-left"},
    {hotkey::desktopRight, mateWindows, "switch-to-workspace-right"},
    {hotkey::screenshotFull, mateWindows, "run-command-screenshot"},
    {hotkey::lockScreen, "org.mate.SettingsDaemon.plugins.media-keys", "screensaver"},
};

std::span<const Place> placesOf(DesktopKind desktop) {
    switch (desktop) {
        case DesktopKind::gnome:
            return gnomePlaces;
        case DesktopKind::cinnamon:
            return cinnamonPlaces;
        case DesktopKind::mate:
            return matePlaces;
        default:
            return {};
    }
}

/// The texts of a value: one in quotes, or a list of them in brackets.
std::vector<std::string> textsOf(std::string_view value) {
    std::vector<std::string> texts;
    char quote = 0;
    for (std::size_t index = 0; index < value.size(); ++index) {
        const char character = value[index];
        if (quote == 0) {
            if (character != '\'' && character != '"') continue;
            quote = character;
            texts.emplace_back();
        } else if (character == quote) {
            quote = 0;
        } else if (character == '\\' && index + 1 < value.size()) {
            texts.back() += value[++index];
        } else {
            texts.back() += character;
        }
    }
    return texts;
}

/// The first of the shortcuts that can be pressed.
std::optional<Accelerator> firstIn(std::string_view value) {
    for (const auto& text : textsOf(value)) {
        if (const auto accelerator = gtkAccelerator(text)) return accelerator;
    }
    return std::nullopt;
}

/// Takes the text up to the separator, which goes too.
std::string_view take(std::string_view& text, char separator) {
    const auto end = text.find(separator);
    const auto part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

}  // namespace

std::vector<std::string_view> shortcutSchemas(DesktopKind desktop) {
    std::vector<std::string_view> schemas;
    for (const auto& place : placesOf(desktop)) {
        if (std::ranges::find(schemas, place.schema) == schemas.end()) schemas.push_back(place.schema);
    }
    return schemas;
}

ShortcutTable readSettingsList(std::string_view text, DesktopKind desktop) {
    std::map<std::pair<std::string_view, std::string_view>, std::string_view> values;
    while (!text.empty()) {
        auto line = trimmed(take(text, '\n'));
        const auto schema = take(line, ' ');
        const auto key = take(line, ' ');
        if (!line.empty()) values[{schema, key}] = line;
    }
    ShortcutTable table;
    for (const auto& [id, schema, key] : placesOf(desktop)) {
        const auto found = values.find({schema, key});
        if (found == values.end()) continue;
        if (const auto accelerator = firstIn(found->second)) table.emplace(id, *accelerator);
    }
    return table;
}

}  // namespace trelvan
