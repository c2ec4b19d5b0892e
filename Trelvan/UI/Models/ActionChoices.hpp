#pragma once

#include "Core/Model/ActionCatalogue.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/HotKeyTable.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// The groups of actions in the order of their chips. They only filter; the order of actions is always the
/// catalogue's.
inline constexpr std::array allActionSections{ActionSection::editing,
                                              ActionSection::windowsAndDesktops,
                                              ActionSection::screenshots,
                                              ActionSection::soundAndMedia,
                                              ActionSection::applicationsAndFolders,
                                              ActionSection::tools,
                                              ActionSection::clicks,
                                              ActionSection::custom};

/// One action as the picker offers it.
struct ActionChoice {
    ButtonAction action = ButtonAction::none;
    std::string label;
    /// What it sends here, short: "⌃C", "media key", "the desktop"; empty for nothing.
    std::string sends;
    friend bool operator==(const ActionChoice&, const ActionChoice&) = default;
};

/// The label in the language of the interface.
[[nodiscard]] std::string actionDisplayName(ButtonAction action, AppLanguage language);
/// What the action sends on this desktop, in a word or a combination.
[[nodiscard]] std::string shortDescription(ButtonAction action, const ActionShortcuts& shortcuts,
                                           const HotKeyTable& hotKeys, AppLanguage language);

/// Which actions are offered.
struct ActionFilter {
    /// Words that all have to occur in the label, in either language; capitals and accents do not count.
    std::string_view text{};
    std::optional<ActionSection> section{};
};
[[nodiscard]] std::vector<ActionChoice> matchingActions(const ActionFilter& filter,
                                                        const ActionShortcuts& shortcuts,
                                                        const HotKeyTable& hotKeys, AppLanguage language);

}  // namespace trelvan
