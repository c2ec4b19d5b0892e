#include "Core/MappingResolution.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <array>

namespace trelvan {

namespace {

constexpr bool contains(EventFlags flags, EventFlags wanted) {
    return (flags & wanted) == wanted;
}

bool isActive(const ButtonMapping& mapping, FunctionSlot slot, EventFlags flags) {
    const EventFlags wanted = triggerFlags(mapping.function(slot));
    return wanted != 0 && contains(flags, wanted);
}

/// Whether the slot is in use and does something.
bool isUsable(const ButtonMapping& mapping, FunctionSlot slot) {
    return isInUse(mapping, slot) && mapping.function(slot).action != ButtonAction::none;
}

}  // namespace

bool isInUse(const ButtonMapping& mapping, FunctionSlot slot) {
    return mapping.functionSlots > static_cast<std::int64_t>(slot);
}

std::string_view nameOf(FunctionSlot slot) {
    static constexpr std::array<std::string_view, allFunctionSlots.size()> names{"primary", "secondary",
                                                                                 "tertiary", "quaternary"};
    return names[indexOf(slot)];
}

bool isOwnClick(const ButtonMapping& mapping) {
    return (mapping.buttonNumber == nonRemappableLeftButtonNumber &&
            mapping.action() == ButtonAction::leftClick) ||
           (mapping.buttonNumber == nonRemappableRightButtonNumber &&
            mapping.action() == ButtonAction::rightClick);
}

std::optional<KeyChord> combinationOf(const std::optional<HotKeyEntry>& entry) {
    // The key code that says that no key is assigned.
    constexpr std::int64_t noKeyAssigned = 65535;
    if (!entry || !entry->enabled || entry->parameters.size() < 3) return std::nullopt;
    const auto keyCode = entry->parameters[1];
    const auto modifiers = entry->parameters[2];
    if (!keyCode || *keyCode < 0 || *keyCode >= noKeyAssigned || !modifiers || *modifiers < 0)
        return std::nullopt;
    return KeyChord{static_cast<KeyCode>(*keyCode), static_cast<EventFlags>(*modifiers)};
}

bool isPrimaryModifiersMatch(const ButtonMapping& mapping, EventFlags flags) {
    return contains(flags, triggerFlags(mapping.function(FunctionSlot::primary)));
}

bool areSecondaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::secondary, flags);
}

bool areTertiaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::tertiary, flags);
}

bool areQuaternaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::quaternary, flags);
}

std::optional<ResolvedFunction> resolvedAlternateAction(const ButtonMapping& mapping, EventFlags flags) {
    for (const auto slot : {FunctionSlot::quaternary, FunctionSlot::tertiary, FunctionSlot::secondary}) {
        if (isUsable(mapping, slot) && isActive(mapping, slot, flags))
            return ResolvedFunction{mapping.function(slot).action, slot};
    }
    return std::nullopt;
}

ResolvedFunction resolvedAction(const ButtonMapping& mapping, EventFlags flags) {
    if (const auto triggered = resolvedAlternateAction(mapping, flags)) return *triggered;
    if (isPrimaryModifiersMatch(mapping, flags)) return {mapping.action(), FunctionSlot::primary};
    for (const auto slot : {FunctionSlot::secondary, FunctionSlot::tertiary, FunctionSlot::quaternary}) {
        if (isUsable(mapping, slot) && triggerFlags(mapping.function(slot)) == 0)
            return {mapping.function(slot).action, slot};
    }
    return {};
}

}  // namespace trelvan
