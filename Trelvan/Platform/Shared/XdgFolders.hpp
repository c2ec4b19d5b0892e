#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The folders that the user's environment names. A value that is not an absolute path counts as not set. Any
/// thread, as long as nobody changes the environment.
namespace trelvan {

/// The user's home folder: $HOME, else that of the password file, else "/".
[[nodiscard]] std::string homeFolder();

/// $XDG_CONFIG_HOME, else ~/.config.
[[nodiscard]] std::string configHome();

/// $XDG_CONFIG_DIRS, else /etc/xdg; the most important first.
[[nodiscard]] std::vector<std::string> configFolders();

/// $XDG_DATA_HOME, else ~/.local/share, then $XDG_DATA_DIRS, else /usr/local/share and /usr/share; the most
/// important first.
[[nodiscard]] std::vector<std::string> dataFolders();

/// A folder for what need not outlive the session: $XDG_RUNTIME_DIR, else `trelvan` in $XDG_CACHE_HOME, each
/// if it can be written to, else ~/.cache/trelvan.
[[nodiscard]] std::string runtimeFolder();

/// $XDG_CURRENT_DESKTOP as it is; empty where it is not set.
[[nodiscard]] std::string_view currentDesktopNames();

/// The parts of a list joined by colons, empty ones left out.
[[nodiscard]] std::vector<std::string> colonSeparated(std::string_view list);

}  // namespace trelvan
