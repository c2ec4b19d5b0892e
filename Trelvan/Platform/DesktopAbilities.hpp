#pragma once

#include "Platform/HotKeyTable.hpp"
#include "Platform/Quartz.hpp"
#include "Platform/SystemViews.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace trelvan {

/// How a desktop shows a view, as far as that can be told without showing it.
struct ViewAbility {
    enum class Way : std::uint8_t {
        /// Nobody can be asked: there is no display or no session bus.
        unknown,
        windowManager,
        /// The desktop's shell or a service of it, by the name in `with`.
        shell,
        /// The program in `with`.
        program,
        /// The desktop's own shortcut: the key in `with` and the modifiers in `flags`.
        shortcut,
        nothing,
    } way = Way::unknown;
    std::string with = {};
    EventFlags flags = 0;
    /// With `nothing`: a program that shows the view once it is installed; empty where none is known.
    std::string toInstall = {};
};

/// What the desktop of this session can do.
struct DesktopAbilities {
    /// What the desktop calls itself; empty where it says nothing.
    std::string desktop;
    std::map<SystemView, ViewAbility> views;
    /// The shortcuts that its settings give its functions, by their symbolic identifiers.
    std::map<int, NamedHotKey> hotKeys = {};
    /// The application that a new note is written in; none when none is installed.
    std::optional<std::string> noteApplication;
};

/// Asks the desktop of this session; takes a moment and changes nothing. Main thread of a program without a
/// platform.
[[nodiscard]] DesktopAbilities desktopAbilities();

}  // namespace trelvan
