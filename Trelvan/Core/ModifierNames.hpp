#pragma once

#include "Core/Model/ButtonModifierTrigger.hpp"
#include "Platform/Quartz.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// What the modifier keys are called, wherever a person reads or types it.
namespace trelvan {

/// A modifier key: its flag and the trigger that asks for it.
struct Modifier {
    EventFlags flag;
    ButtonModifierTrigger trigger;
};

/// In the order in which a combination is written.
inline constexpr std::array<Modifier, 5> modifiers{{
    {flag::control, ButtonModifierTrigger::control},
    {flag::option, ButtonModifierTrigger::option},
    {flag::shift, ButtonModifierTrigger::shift},
    {flag::command, ButtonModifierTrigger::command},
    {flag::function, ButtonModifierTrigger::function},
}};

/// The modifiers among the flags by the names that the interface shows, joined by a plus; empty when there
/// are none.
[[nodiscard]] std::string namesOf(EventFlags flags);

/// The modifier of that name or symbol, as people call it on any system ("ctrl", "alt", "super", "⌘");
/// capitals and accents do not count.
[[nodiscard]] std::optional<Modifier> modifierNamed(std::string_view name);

/// What a combination of modifier names says.
struct ModifierCombination {
    EventFlags flags = 0;
    /// The first part that names no modifier; empty when all of them do.
    std::string unknown;
};

/// Reads names joined by a plus or a comma, with or without blanks; an empty text is no modifier.
[[nodiscard]] ModifierCombination readModifiers(std::string_view text);

/// The names that a person is told about, each with the other names of the key: "shift, control (ctrl), …".
inline constexpr std::string_view knownModifierNames =
    "shift, control (ctrl), option (alt), command (super, meta, cmd, win), fn";

/// The name that was probably meant by one that is none; none when no name is near.
[[nodiscard]] std::optional<std::string_view> nearestModifierName(std::string_view name);

}  // namespace trelvan
