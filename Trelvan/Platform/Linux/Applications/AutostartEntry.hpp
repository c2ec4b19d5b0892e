#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// The text of an autostart entry as the desktops read it; pure, knows no files.
namespace autostart {

/// An argument in the form of the Exec key: quoted, its special characters escaped.
[[nodiscard]] std::string quotedArgument(std::string_view argument);

/// A whole entry that starts this program with these arguments. `command` is not empty.
[[nodiscard]] std::string entryFor(const std::vector<std::string>& command);

/// The entry with another program in its place, everything else as it was; the arguments are kept.
[[nodiscard]] std::string withProgram(std::string_view entry, std::string_view program);

/// What an entry comes to on a desktop.
struct Reading {
    /// Whether the entry is to be started there: it is an application, and neither hidden, nor switched off,
    /// nor for other desktops only.
    bool isWanted = false;
    /// The program it starts; empty when that cannot be read.
    std::string program;
    /// A program that must be there too; empty for none.
    std::string required;
};

/// `desktops`: the names of the running desktop, as in XDG_CURRENT_DESKTOP, most important first.
[[nodiscard]] Reading read(std::string_view entry, const std::vector<std::string>& desktops);

}  // namespace autostart

}  // namespace trelvan
