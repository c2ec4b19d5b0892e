#pragma once

#include "Platform/KeyChord.hpp"

namespace trelvan {

/// The key combinations by which the applications and the desktop of a platform know the catalogue's actions.
struct ActionShortcuts {
    KeyChord back{key::leftArrow, flag::command | flag::numericPad};
    KeyChord forward{key::rightArrow, flag::command | flag::numericPad};
    KeyChord copy{key::c, flag::command};
    KeyChord paste{key::v, flag::command};
    KeyChord cut{key::x, flag::command};
    KeyChord undo{key::z, flag::command};
    KeyChord screenshotArea{key::digit4, flag::command | flag::shift};
    KeyChord screenshotFull{key::digit3, flag::command | flag::shift};
    KeyChord screenshotTool{key::digit5, flag::command | flag::shift};
    KeyChord emojiPanel{key::space, flag::control | flag::command};
    KeyChord lockWorkstation{key::q, flag::control | flag::command};
    KeyChord newNote{key::n, flag::command};
    /// Screenshots, emojis and the lock are asked of the desktop, and the combinations are what is left where
    /// it has no way of its own.
    bool desktopGoesFirst = false;

    friend bool operator==(const ActionShortcuts&, const ActionShortcuts&) = default;
};

/// macOS: the catalogue's own combinations.
inline constexpr ActionShortcuts macShortcuts{};

/// Linux desktops: the combinations that GTK and Qt applications and the large desktops share. F13 is the
/// place of Print Screen; command is the Super key. Applications look for the letter, wherever the layout has
/// it.
inline constexpr ActionShortcuts linuxShortcuts{
    .back = {key::leftArrow, flag::option | flag::numericPad},
    .forward = {key::rightArrow, flag::option | flag::numericPad},
    .copy = {key::c, flag::control, U'c'},
    .paste = {key::v, flag::control, U'v'},
    .cut = {key::x, flag::control, U'x'},
    .undo = {key::z, flag::control, U'z'},
    .screenshotArea = {key::f13, flag::shift},
    .screenshotFull = {key::f13, 0},
    .screenshotTool = {key::f13, flag::control},
    .emojiPanel = {key::period, flag::control, U'.'},
    .lockWorkstation = {key::l, flag::command, U'l'},
    .newNote = {key::n, flag::control, U'n'},
    .desktopGoesFirst = true,
};

}  // namespace trelvan
