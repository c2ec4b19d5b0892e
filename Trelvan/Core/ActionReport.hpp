#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/DesktopAbilities.hpp"

#include <optional>
#include <string>
#include <vector>

namespace trelvan {

/// What one action comes to on one desktop.
struct ActionReport {
    ButtonAction action = ButtonAction::none;
    /// Sentences: what it does on this platform and, where that can be told, in what way here.
    std::vector<std::string> sends;
    /// Why it can do nothing here; none when it can, or when that cannot be told.
    std::optional<std::string> obstacle;
};

/// Why the action can do nothing on the desktop; none when it can, or when that cannot be told. Any thread.
[[nodiscard]] std::optional<std::string> obstacleTo(ButtonAction action, const DesktopAbilities& desktop,
                                                    AppLanguage language);

/// Every action, in the catalogue's order. Any thread.
[[nodiscard]] std::vector<ActionReport> reportActions(const ActionShortcuts& shortcuts,
                                                      const DesktopAbilities& desktop, AppLanguage language);

}  // namespace trelvan
