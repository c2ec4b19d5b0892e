#pragma once

#include "Platform/TerminalShortcuts.hpp"

#include <cstdint>
#include <span>

namespace trelvan {

/// Whose key combinations the applications and the desktop of a platform understand.
enum class ShortcutConvention : std::uint8_t {
    macOS,
    /// What GTK and Qt applications and the large desktops of Linux share.
    linuxDesktop,
};

/// How the actions' key combinations are sent on a platform.
struct ActionShortcuts {
    ShortcutConvention convention = ShortcutConvention::macOS;
    /// Screenshots, emojis and the lock are asked of the desktop, and the combinations are what is left where
    /// it has no way of its own.
    bool desktopGoesFirst = false;
    /// What is typed into an application that was just opened waits until it has the focus, and is left out
    /// where it does not get it.
    bool typesOnlyInFront = false;
    /// Applications in which the combinations for text mean something else; empty where they do nowhere.
    std::span<const TerminalShortcuts> terminals{};
};

inline constexpr ActionShortcuts macShortcuts{};

inline constexpr ActionShortcuts linuxShortcuts{
    .convention = ShortcutConvention::linuxDesktop,
    .desktopGoesFirst = true,
    .typesOnlyInFront = true,
    .terminals = terminal::known,
};

}  // namespace trelvan
