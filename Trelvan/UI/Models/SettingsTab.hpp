#pragma once

#include "Core/Model/AppLanguage.hpp"

#include <string_view>
#include <vector>

namespace trelvan {

/// The pages of the settings window. The order is the index that is used everywhere and stays as it is;
/// `scroll` is never offered.
enum class SettingsTab {
    keepAwake,
    buttons,
    smartButton,
    notifications,
    debug,
    settings,
    backup,
    privacyLegal,
    share,
    scroll,
};

/// The page that is shown first after the program's start.
inline constexpr SettingsTab firstTab = SettingsTab::settings;

[[nodiscard]] TextPair tabTitle(SettingsTab tab);
/// The name of the page's symbol.
[[nodiscard]] std::string_view iconName(SettingsTab tab);
/// The pages in the order in which they are shown.
[[nodiscard]] std::vector<SettingsTab> availableTabs(bool debugMode);

}  // namespace trelvan
