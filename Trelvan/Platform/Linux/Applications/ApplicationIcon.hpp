#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// The icon of a desktop entry, an AppImage or an executable: what the entry says, else the name that
/// packages give an icon of their program, which the theme may have. None for an entry without an icon. Reads
/// the entry's file.
[[nodiscard]] std::optional<std::string> applicationIcon(std::string_view path);

}  // namespace trelvan
