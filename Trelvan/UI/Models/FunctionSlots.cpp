#include "UI/Models/FunctionSlots.hpp"

#include <algorithm>

namespace trelvan {

EventFlags wantedBy(const ButtonMapping& mapping, FunctionSlot slot) {
    return triggerFlags(mapping.function(slot));
}

bool isMuted(const ButtonMapping& mapping, FunctionSlot slot) {
    return slot != FunctionSlot::primary && wantedBy(mapping, slot) == 0;
}

bool hasDuplicateFunction(const ButtonMapping& mapping, FunctionSlot slot) {
    const EventFlags wanted = wantedBy(mapping, slot);
    return wanted != 0 && isInUse(mapping, slot) &&
           std::ranges::any_of(allFunctionSlots, [&](FunctionSlot other) {
               return other != slot && isInUse(mapping, other) && wantedBy(mapping, other) == wanted;
           });
}

void addFunction(ButtonMapping& mapping) {
    if (mapping.functionSlots >= ButtonMapping::maximumFunctionSlots) return;
    // What an earlier version of the mapping left in the slot is not meant now.
    mapping.functions[static_cast<std::size_t>(mapping.functionSlots)] = {};
    ++mapping.functionSlots;
}

void removeFunction(ButtonMapping& mapping, FunctionSlot slot) {
    if (slot == FunctionSlot::primary || !isInUse(mapping, slot)) return;
    if (slot == FunctionSlot::secondary) mapping.secondaryTrigger3 = ButtonModifierTrigger::none;
    const auto last = static_cast<std::size_t>(mapping.functionSlots - 1);
    for (auto place = indexOf(slot); place < last; ++place)
        mapping.functions[place] = mapping.functions[place + 1];
    mapping.functions[last] = {};
    --mapping.functionSlots;
}

}  // namespace trelvan
