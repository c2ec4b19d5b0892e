#pragma once

#include "Core/Model/CustomShortcut.hpp"

#include <QString>

namespace trelvan {

/// The combination as the user reads it, "⌃C": what was recorded with it, else put together from its key and
/// modifiers. Empty for a shortcut of nothing, and for a key that has no short name.
[[nodiscard]] QString shortcutText(const CustomShortcut& shortcut);

}  // namespace trelvan
