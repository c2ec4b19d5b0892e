#pragma once

#include "Core/Model/ButtonMapping.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/Quartz.hpp"

#include <cstdint>
#include <optional>
#include <string_view>

namespace trelvan {

/// "primary", "secondary", "tertiary" or "quaternary".
[[nodiscard]] std::string_view nameOf(FunctionSlot slot);

/// The function that fires.
struct ResolvedFunction {
    ButtonAction action = ButtonAction::none;
    FunctionSlot slot = FunctionSlot::primary;
    friend bool operator==(const ResolvedFunction&, const ResolvedFunction&) = default;
};

/// The flag bit that a trigger stands for; 0 for `none`.
[[nodiscard]] constexpr EventFlags flagBit(ButtonModifierTrigger trigger) {
    switch (trigger) {
        case ButtonModifierTrigger::none:
            return 0;
        case ButtonModifierTrigger::shift:
            return flag::shift;
        case ButtonModifierTrigger::option:
            return flag::option;
        case ButtonModifierTrigger::control:
            return flag::control;
        case ButtonModifierTrigger::command:
            return flag::command;
        case ButtonModifierTrigger::function:
            return flag::function;
    }
    return 0;
}

// The modifier tests are subset tests: further modifiers held never prevent a match. A primary function
// without triggers always matches; another function without triggers is never active.
[[nodiscard]] bool isPrimaryModifiersMatch(const ButtonMapping& mapping, EventFlags flags);
[[nodiscard]] bool areSecondaryModifiersActive(const ButtonMapping& mapping, EventFlags flags);
[[nodiscard]] bool areTertiaryModifiersActive(const ButtonMapping& mapping, EventFlags flags);
[[nodiscard]] bool areQuaternaryModifiersActive(const ButtonMapping& mapping, EventFlags flags);

/// The function that fires with these modifiers held: the highest triggered slot in use, else the primary
/// when its modifiers are held, else the lowest usable slot without triggers, else (`none`, `primary`).
[[nodiscard]] ResolvedFunction resolvedAction(const ButtonMapping& mapping, EventFlags flags);

/// The triggered slots alone, for buttons whose primary function is their own click. None when none fires.
[[nodiscard]] std::optional<ResolvedFunction> resolvedAlternateAction(const ButtonMapping& mapping,
                                                                      EventFlags flags);

/// The modifiers that a function asks for; 0 for one without triggers.
[[nodiscard]] constexpr EventFlags triggerFlags(const MappingFunction& function) {
    return flagBit(function.trigger1) | flagBit(function.trigger2);
}
/// Whether the mapping uses the slot at all.
[[nodiscard]] bool isInUse(const ButtonMapping& mapping, FunctionSlot slot);
/// Whether the mapping's primary function is the button's own click, which is let through and never
/// synthesised.
[[nodiscard]] bool isOwnClick(const ButtonMapping& mapping);
/// The combination of a symbolic hot key; none when it is disabled, has no key or is of another shape.
[[nodiscard]] std::optional<KeyChord> combinationOf(const std::optional<HotKeyEntry>& entry);

}  // namespace trelvan
