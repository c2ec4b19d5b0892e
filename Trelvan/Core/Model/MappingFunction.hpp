#pragma once

#include "Core/Model/ButtonAction.hpp"
#include "Core/Model/ButtonModifierTrigger.hpp"
#include "Core/Model/CustomShortcut.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace trelvan {

/// The functions of a mapping, in order.
enum class FunctionSlot : std::uint8_t { primary, secondary, tertiary, quaternary };

inline constexpr std::array allFunctionSlots{FunctionSlot::primary, FunctionSlot::secondary,
                                             FunctionSlot::tertiary, FunctionSlot::quaternary};

/// The place of a slot's function in a mapping's array.
constexpr std::size_t indexOf(FunctionSlot slot) {
    return static_cast<std::size_t>(slot);
}

/// One of a button's functions.
struct MappingFunction {
    /// The modifier keys that choose it.
    ButtonModifierTrigger trigger1 = ButtonModifierTrigger::none;
    ButtonModifierTrigger trigger2 = ButtonModifierTrigger::none;
    ButtonAction action = ButtonAction::none;
    /// Sent when the action is `customShortcut`.
    CustomShortcut shortcut;
    /// The user's name for the shortcut.
    std::string shortcutName;
};

/// The keys that the members of a slot's function are stored under.
struct FunctionKeys {
    std::string_view trigger1;
    std::string_view trigger2;
    std::string_view action;
    std::string_view shortcut;
    std::string_view shortcutName;
};

inline constexpr std::array functionKeys{
    FunctionKeys{"primaryTrigger1", "primaryTrigger2", "action", "shortcut", "shortcutName"},
    FunctionKeys{"secondaryTrigger1", "secondaryTrigger2", "secondaryAction", "secondaryShortcut",
                 "secondaryShortcutName"},
    FunctionKeys{"tertiaryTrigger1", "tertiaryTrigger2", "tertiaryAction", "tertiaryShortcut",
                 "tertiaryShortcutName"},
    FunctionKeys{"quaternaryTrigger1", "quaternaryTrigger2", "quaternaryAction", "quaternaryShortcut",
                 "quaternaryShortcutName"},
};

constexpr const FunctionKeys& keysOf(FunctionSlot slot) {
    return functionKeys[indexOf(slot)];
}

}  // namespace trelvan
