#pragma once

#include "Platform/Quartz.hpp"

#include <string>

namespace trelvan {

/// The five modifiers that a combination is written with.
inline constexpr EventFlags combinationModifiers =
    flag::shift | flag::control | flag::option | flag::command | flag::function;

/// The modifiers among the flags as they are written before a key, in their fixed order: "⌃⌥⇧⌘fn".
[[nodiscard]] inline std::string modifierSigns(EventFlags flags) {
    std::string text;
    if ((flags & flag::control) != 0) text += "⌃";
    if ((flags & flag::option) != 0) text += "⌥";
    if ((flags & flag::shift) != 0) text += "⇧";
    if ((flags & flag::command) != 0) text += "⌘";
    if ((flags & flag::function) != 0) text += "fn";
    return text;
}

}  // namespace trelvan
