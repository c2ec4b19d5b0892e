#pragma once

#include "Platform/MenuInput.hpp"

#include <optional>

namespace trelvan {

/// What a key is to a menu: by the symbols that it gives with the locks that are on, without and with Shift,
/// and by its place where it types the digits of another script. None for a key that is nothing to it. Pure.
[[nodiscard]] std::optional<MenuKey> menuKeyOf(int keycode, unsigned long plain, unsigned long shifted);

}  // namespace trelvan
