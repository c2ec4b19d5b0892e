#pragma once

#include "Platform/HotKeyTable.hpp"
#include "Platform/Quartz.hpp"

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
};

/// macOS: the catalogue's own combinations.
inline constexpr ActionShortcuts macShortcuts{};

/// Linux desktops: the combinations that GTK and Qt applications and the large desktops share. F13 is the
/// place of Print Screen; command is the Super key.
inline constexpr ActionShortcuts linuxShortcuts{
    .back = {key::leftArrow, flag::option | flag::numericPad},
    .forward = {key::rightArrow, flag::option | flag::numericPad},
    .copy = {key::c, flag::control},
    .paste = {key::v, flag::control},
    .cut = {key::x, flag::control},
    .undo = {key::z, flag::control},
    .screenshotArea = {key::f13, flag::shift},
    .screenshotFull = {key::f13, 0},
    .screenshotTool = {key::f13, flag::control},
    .emojiPanel = {key::period, flag::control},
    .lockWorkstation = {key::l, flag::command},
    .newNote = {key::n, flag::control},
};

}  // namespace trelvan
