#include "Core/ModifierNames.hpp"

#include "Utilities/NearestWord.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <cstddef>

namespace trelvan {

namespace {

struct ModifierAlias {
    std::string_view name;
    ButtonModifierTrigger trigger;
};

/// All in the form that `folded` gives.
constexpr std::array aliases{
    ModifierAlias{"shift", ButtonModifierTrigger::shift},
    ModifierAlias{"mayus", ButtonModifierTrigger::shift},
    ModifierAlias{"mayusculas", ButtonModifierTrigger::shift},
    ModifierAlias{"⇧", ButtonModifierTrigger::shift},
    ModifierAlias{"control", ButtonModifierTrigger::control},
    ModifierAlias{"ctrl", ButtonModifierTrigger::control},
    ModifierAlias{"ctl", ButtonModifierTrigger::control},
    ModifierAlias{"⌃", ButtonModifierTrigger::control},
    ModifierAlias{"option", ButtonModifierTrigger::option},
    ModifierAlias{"opt", ButtonModifierTrigger::option},
    ModifierAlias{"opcion", ButtonModifierTrigger::option},
    ModifierAlias{"alt", ButtonModifierTrigger::option},
    ModifierAlias{"⌥", ButtonModifierTrigger::option},
    ModifierAlias{"command", ButtonModifierTrigger::command},
    ModifierAlias{"cmd", ButtonModifierTrigger::command},
    ModifierAlias{"comando", ButtonModifierTrigger::command},
    ModifierAlias{"super", ButtonModifierTrigger::command},
    ModifierAlias{"meta", ButtonModifierTrigger::command},
    ModifierAlias{"win", ButtonModifierTrigger::command},
    ModifierAlias{"windows", ButtonModifierTrigger::command},
    ModifierAlias{"⌘", ButtonModifierTrigger::command},
    ModifierAlias{"fn", ButtonModifierTrigger::function},
    ModifierAlias{"function", ButtonModifierTrigger::function},
    ModifierAlias{"funcion", ButtonModifierTrigger::function},
};

}  // namespace

std::string namesOf(EventFlags flags) {
    std::string result;
    for (const auto& [bit, trigger] : modifiers) {
        if ((flags & bit) == 0) continue;
        if (!result.empty()) result += '+';
        result += displayName(trigger);
    }
    return result;
}

std::optional<Modifier> modifierNamed(std::string_view name) {
    const auto* const alias = std::ranges::find(aliases, folded(trimmed(name)), &ModifierAlias::name);
    if (alias == aliases.end()) return std::nullopt;
    return *std::ranges::find(modifiers, alias->trigger, &Modifier::trigger);
}

ModifierCombination readModifiers(std::string_view text) {
    ModifierCombination result;
    while (!text.empty()) {
        const auto end = text.find_first_of("+,");
        const auto name = text.substr(0, end);
        const auto modifier = modifierNamed(name);
        if (!modifier) return {0, name.empty() ? std::string(text) : std::string(trimmed(name))};
        result.flags |= modifier->flag;
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    }
    return result;
}

std::optional<std::string_view> nearestModifierName(std::string_view name) {
    std::array<std::string_view, aliases.size()> names;
    std::ranges::transform(aliases, names.begin(), &ModifierAlias::name);
    const auto nearest = nearestWord(name, names);
    return nearest ? std::optional(names[*nearest]) : std::nullopt;
}

}  // namespace trelvan
