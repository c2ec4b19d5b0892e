#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Platform/BundleInfo.hpp"
#include "Utilities/Uuid.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace trelvan {

/// The program's short version, "1.0" where its package does not tell.
[[nodiscard]] std::string shortVersion(const BundleInfo& bundle);

/// What the menu-bar item shows.
struct MenuBarLabel {
    /// A name of the symbol catalogue.
    std::string_view symbol;
    /// Beside the symbol where the desktop shows texts, else in its tooltip.
    std::string text;
    friend bool operator==(const MenuBarLabel&, const MenuBarLabel&) = default;
};
[[nodiscard]] MenuBarLabel menuBarLabel(bool isRunning, const BundleInfo& bundle);

enum class MenuCommand { open, start, stop, pause, profile, keepAwake, quit };

struct MenuEntry {
    MenuCommand command = MenuCommand::open;
    std::string text = {};
    /// None for an entry that cannot be on or off.
    std::optional<bool> isOn = std::nullopt;
    bool beginsGroup = false;
    /// Of `MenuCommand::profile`.
    std::optional<Uuid> profile = std::nullopt;
    friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

/// What the context menu depends on.
struct MenuState {
    AppLanguage language = AppLanguage::english;
    bool isRunning = false;
    /// The time of day at which a pause ends, "14:05"; none without a pause.
    std::optional<std::string> pausedUntil = std::nullopt;
    /// In their order, with the active one.
    std::vector<std::pair<Uuid, std::string>> profiles = {};
    std::optional<Uuid> activeProfile = std::nullopt;
    bool keepsAwake = false;
};

/// The context menu, in order; the profiles follow each other.
[[nodiscard]] std::vector<MenuEntry> menuEntries(const MenuState& state);
/// The title over the profiles.
inline constexpr TextPair profilesTitle{"Profile", "Perfil"};

}  // namespace trelvan
