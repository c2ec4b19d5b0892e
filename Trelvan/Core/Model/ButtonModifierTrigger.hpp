#pragma once

#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <string_view>

namespace trelvan {

/// The modifier key that chooses one of a button's functions while it is held; `none` requires no key.
enum class ButtonModifierTrigger { none, shift, option, control, command, function };

template <>
struct RawValueTable<ButtonModifierTrigger> {
    static constexpr std::string_view noun = "a modifier trigger";
    static constexpr std::array<std::string_view, 6> rawValues{"Ninguno", "Shift",   "Option",
                                                               "Control", "Command", "Fn"};
};

/// What the interface shows, in every language: the raw value, save for Option, whose key reads "Alt".
constexpr std::string_view displayName(ButtonModifierTrigger trigger) {
    return trigger == ButtonModifierTrigger::option ? "Alt" : rawValue(trigger);
}

}  // namespace trelvan
