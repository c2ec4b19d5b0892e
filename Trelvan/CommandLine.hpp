#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/Quartz.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// What the command line asks for.
namespace command {
struct Run {
    /// Folder of the settings file; empty for the platform's own place.
    std::string configDirectory;
    /// Whether the window is opened, of a program that runs already or of the one that starts.
    bool show = false;
};
struct Simulate {
    /// A file's path, or "-" for standard input.
    std::string script;
    /// The platform whose shortcuts and rules hold whatever the script says; null for the script's.
    const ActionShortcuts* shortcuts = nullptr;
};
struct Record {
    /// Where the script goes, a file that does not exist yet; empty for a free name in the working folder.
    std::string script;
    std::string configDirectory;
};
struct Explain {
    std::int64_t buttonNumber = 0;
    EventFlags modifiers = 0;
    /// None for the active profile.
    std::optional<std::string> profile;
    /// None for the language of the settings.
    std::optional<AppLanguage> language;
    bool json = false;
    std::string configDirectory;
};
struct Actions {
    /// None for the language of the settings.
    std::optional<AppLanguage> language;
    bool json = false;
    std::string configDirectory;
};
struct Check {
    /// None for the language of the settings, or of the terminal where they say nothing.
    std::optional<AppLanguage> language;
    bool json = false;
    std::string configDirectory;
};
struct Init {
    std::string configDirectory;
};
struct Buttons {
    std::optional<AppLanguage> language;
    std::string configDirectory;
};
struct ShowHelp {
    /// The subcommand whose help is wanted; empty for that of the program.
    std::string_view subcommand;
};
struct ShowVersion {};
/// The arguments make no sense; the text says which and why.
struct BadUsage {
    std::string message;
    /// The subcommand whose help to point to; empty for the program's.
    std::string_view subcommand;
};
}  // namespace command

using Command = std::variant<command::Run, command::Simulate, command::Record, command::Explain,
                             command::Actions, command::Check, command::Init, command::Buttons,
                             command::ShowHelp, command::ShowVersion, command::BadUsage>;

/// Exit statuses of the program.
namespace exitStatus {
inline constexpr int ok = 0;
/// The platform cannot serve: no display, a missing extension, a connection lost.
inline constexpr int unavailable = 1;
inline constexpr int badUsage = 2;
/// A check found something wrong.
inline constexpr int findings = 3;
/// Trelvan already serves this display, or the settings that should be made are already there.
inline constexpr int alreadyThere = 4;
}  // namespace exitStatus

/// Reads the arguments that follow the program's name.
[[nodiscard]] Command parseCommandLine(std::span<const std::string_view> arguments, AppLanguage language);

/// What `--help` prints, for the program or one of its subcommands.
[[nodiscard]] std::string helpText(AppLanguage language, std::string_view subcommand = {});

/// The language of the terminal, from the POSIX locale variables; the setting of the interface is not at hand
/// before the settings are read.
[[nodiscard]] AppLanguage terminalLanguage();

}  // namespace trelvan
