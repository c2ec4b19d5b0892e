#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// What a desktop entry says about starting its application.
struct DesktopEntry {
    std::string name;
    std::string icon;
    /// The Exec value with its general escapes undone, field codes still inside.
    std::string exec;
    /// Working folder; empty for none of its own.
    std::string path;
    bool terminal = false;
    bool hidden = false;
};

/// Reads the group "Desktop Entry" of a file's text; none when it is no application.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

/// The program and arguments of an entry opened without files; empty when Exec is not well formed.
[[nodiscard]] std::vector<std::string> commandLine(const DesktopEntry& entry, std::string_view entryPath);

/// The path of the entry with this id ("org.gnome.Notes", without ".desktop") in the XDG data folders.
[[nodiscard]] std::optional<std::string> findDesktopEntry(std::string_view id);

/// The XDG data folders, most important first.
[[nodiscard]] std::vector<std::string> dataFolders();

}  // namespace trelvan
