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
    /// A program that must be there for the application to be; empty for none.
    std::string tryExec;
    /// The class that its windows have, where it names one (StartupWMClass).
    std::string windowClass;
    bool terminal = false;
    /// The application can be asked over the session bus, under the entry's id, to show itself.
    bool dbusActivatable = false;
    bool hidden = false;
};

/// Reads the group "Desktop Entry" of a file's text; none when it is no application.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

/// The program and arguments of an entry opened without files; empty when Exec is not well formed.
[[nodiscard]] std::vector<std::string> commandLine(const DesktopEntry& entry, std::string_view entryPath);

/// The id of an entry by its path ("org.gnome.Notes").
[[nodiscard]] std::string_view desktopEntryId(std::string_view path);

/// The object that an application with this id offers on the bus ("/org/gnome/Notes").
[[nodiscard]] std::string applicationObjectPath(std::string_view id);

/// The path of the entry with this id ("org.gnome.Notes", without ".desktop") in the XDG data folders.
[[nodiscard]] std::optional<std::string> findDesktopEntry(std::string_view id);

/// The XDG data folders, most important first.
[[nodiscard]] std::vector<std::string> dataFolders();

}  // namespace trelvan
