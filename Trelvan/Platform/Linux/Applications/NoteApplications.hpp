#pragma once

#include <string_view>
#include <vector>

namespace trelvan {

/// The ids of the desktop entries that may serve for a new note, the best first: the editors of the desktop
/// that a value of XDG_CURRENT_DESKTOP names, then note takers, then every other editor. Any thread.
[[nodiscard]] std::vector<std::string_view> noteApplications(std::string_view desktops);

}  // namespace trelvan
