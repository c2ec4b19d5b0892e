#pragma once

#include "Platform/KeyChord.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace trelvan {

/// What a terminal emulator understands in place of the combinations for text, which its programs take for
/// something else: Control+C ends them, Control+Z stops them.
struct TerminalShortcuts {
    /// The class of its windows (second part of WM_CLASS), in lower case.
    std::string_view windowClass;
    /// None where selecting is copying, and every combination goes to the program inside.
    std::optional<KeyChord> copy;
    KeyChord paste;
};

namespace terminal {

inline constexpr KeyChord usualCopy{key::c, flag::control | flag::shift, U'c'};
inline constexpr KeyChord usualPaste{key::v, flag::control | flag::shift, U'v'};

/// Copies with Control+Shift+C and pastes with Control+Shift+V.
constexpr TerminalShortcuts usual(std::string_view windowClass) {
    return {windowClass, usualCopy, usualPaste};
}

/// Copies by selecting alone, and pastes what is selected with Shift+Insert.
constexpr TerminalShortcuts bySelection(std::string_view windowClass) {
    return {windowClass, std::nullopt, {key::help, flag::shift}};
}

/// The terminals of Linux desktops. What is not among them gets what every application gets.
inline constexpr std::array known{
    // Control+Shift+C is Control+C for these, and Control+Insert types an escape sequence into the program.
    bySelection("xterm"),
    bySelection("uxterm"),
    bySelection("koi8rxterm"),
    bySelection("rxvt"),
    bySelection("aterm"),
    bySelection("eterm"),
    bySelection("mlterm"),
    bySelection("pterm"),
    // Takes Control+Shift+C for Control+C while nothing is selected.
    bySelection("terminology"),
    // So does this one, but it has a second key.
    TerminalShortcuts{"terminator", KeyChord{key::help, flag::control}, usualPaste},
    TerminalShortcuts{"urxvt",
                      KeyChord{key::c, flag::control | flag::option, U'c'},
                      {key::v, flag::control | flag::option, U'v'}},
    usual("alacritty"),
    usual("com.mitchellh.ghostty"),
    usual("com.raggesilver.blackbox"),
    usual("contour"),
    usual("cool-retro-term"),
    usual("deepin-terminal"),
    usual("foot"),
    usual("footclient"),
    usual("ghostty"),
    usual("gnome-terminal"),
    usual("gnome-terminal-server"),
    usual("guake"),
    usual("io.elementary.terminal"),
    usual("kgx"),
    usual("kitty"),
    usual("konsole"),
    usual("lilyterm"),
    usual("lxterminal"),
    usual("mate-terminal"),
    usual("org.gnome.console"),
    usual("org.gnome.ptyxis"),
    usual("org.gnome.terminal"),
    usual("org.wezfurlong.wezterm"),
    usual("ptyxis"),
    usual("qterminal"),
    usual("rio"),
    usual("roxterm"),
    usual("sakura"),
    usual("st"),
    usual("st-256color"),
    usual("stterm"),
    usual("tilda"),
    usual("tilix"),
    usual("xfce4-terminal"),
    usual("yakuake"),
    usual("zutty"),
};

}  // namespace terminal

/// The terminal with this window class, in whatever case; none for any other application. Allocates nothing:
/// it is asked within the tap.
[[nodiscard]] constexpr const TerminalShortcuts* terminalOf(std::span<const TerminalShortcuts> terminals,
                                                            std::string_view windowClass) {
    const auto lower = [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    };
    for (const auto& one : terminals) {
        if (std::ranges::equal(windowClass, one.windowClass, {}, lower)) return &one;
    }
    return nullptr;
}

}  // namespace trelvan
