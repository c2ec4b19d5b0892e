#pragma once

#include "Platform/Quartz.hpp"

#include <optional>
#include <string_view>

namespace trelvan {

/// A key combination as a desktop's settings name it: the key by what it types.
struct Accelerator {
    /// X keysym; a letter's is that of the small letter.
    unsigned long keysym = 0;
    EventFlags flags = 0;
    friend bool operator==(const Accelerator&, const Accelerator&) = default;
};

/// "<Primary><Alt>Left", "Print", "Super_L": the form of GTK, GNOME and XFCE. None for a disabled shortcut
/// and for one with a modifier or a key that keyboards here do not have.
[[nodiscard]] std::optional<Accelerator> gtkAccelerator(std::string_view text);

/// "Meta+Ctrl+Left", "Print", "Meta": Qt's and KDE's form. None likewise.
[[nodiscard]] std::optional<Accelerator> qtAccelerator(std::string_view text);

}  // namespace trelvan
