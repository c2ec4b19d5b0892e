#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Core/Model/CustomShortcut.hpp"
#include "Platform/HotKeyTable.hpp"

#include <optional>
#include <string>

namespace trelvan {

/// The desktop's own function that holds the combination; none when none of those that are known does.
[[nodiscard]] std::optional<ButtonAction> desktopHolderOf(const CustomShortcut& shortcut,
                                                          const HotKeyTable& hotKeys);

/// Says that a combination which the desktop holds may not arrive; none when it does not hold it.
[[nodiscard]] std::optional<std::string> desktopWarning(const CustomShortcut& shortcut,
                                                        const HotKeyTable& hotKeys, AppLanguage language);

}  // namespace trelvan
