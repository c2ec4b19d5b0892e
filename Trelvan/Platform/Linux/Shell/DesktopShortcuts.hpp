#pragma once

#include "Platform/Linux/Shell/Accelerator.hpp"
#include "Platform/Linux/Shell/CurrentDesktop.hpp"

#include <map>
#include <string_view>
#include <vector>

namespace trelvan {

/// The shortcuts of a desktop's own functions by their symbolic identifiers (hotkey::…). Functions without a
/// shortcut, or with one that cannot be pressed, are not in it.
using ShortcutTable = std::map<int, Accelerator>;

/// The settings schemas in which GNOME, Cinnamon or MATE keeps the shortcuts; empty for other desktops.
[[nodiscard]] std::vector<std::string_view> shortcutSchemas(DesktopKind desktop);

/// Reads lines of "schema key value", as `gsettings list-recursively` prints them with the values in force.
[[nodiscard]] ShortcutTable readSettingsList(std::string_view text, DesktopKind desktop);

/// Reads KDE's kglobalshortcutsrc.
[[nodiscard]] ShortcutTable readKdeShortcuts(std::string_view text);

/// Reads XFCE's channel file xfce4-keyboard-shortcuts.xml. A file that is not well formed counts up to its
/// fault.
[[nodiscard]] ShortcutTable readXfceShortcuts(std::string_view xml);

}  // namespace trelvan
