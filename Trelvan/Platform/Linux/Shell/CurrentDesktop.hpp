#pragma once

#include <cstdint>
#include <string_view>

namespace trelvan {

/// The desktops whose shortcut settings are known.
enum class DesktopKind : std::uint8_t { gnome, cinnamon, mate, kde, xfce, other };

/// The desktop that a value of XDG_CURRENT_DESKTOP names: names joined by colons, the nearest first.
[[nodiscard]] DesktopKind desktopKind(std::string_view names);

/// The desktop that this process runs on, as the environment says.
[[nodiscard]] DesktopKind currentDesktop();

}  // namespace trelvan
