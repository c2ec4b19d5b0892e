#include "UI/Models/TriggerSentence.hpp"

#include "Core/ModifierNames.hpp"
#include "UI/Models/FunctionSlots.hpp"
#include "UI/Models/MappingText.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

/// What one press comes to: the function that fires, none where nothing does.
std::optional<FunctionSlot> firedBy(const ButtonMapping& mapping, EventFlags flags) {
    if (isOwnClick(mapping)) {
        const auto resolved = resolvedAlternateAction(mapping, flags);
        return resolved ? resolved->slot : FunctionSlot::primary;
    }
    const auto resolved = resolvedAction(mapping, flags);
    return resolved.action != ButtonAction::none ? std::optional(resolved.slot) : std::nullopt;
}

/// Every combination of the modifiers that the keyboard reports.
std::vector<EventFlags> combinations(EventFlags reported) {
    std::vector<EventFlags> result{0};
    for (const auto& modifier : modifiers) {
        if ((reported & modifier.flag) == 0) continue;
        const auto count = result.size();
        for (std::size_t index = 0; index < count; ++index) result.push_back(result[index] | modifier.flag);
    }
    return result;
}

/// "Shift", "Shift and Command". The pickers show what is stored, so it stands here too.
std::string keyNames(EventFlags flags, AppLanguage language) {
    std::string text;
    for (const auto& modifier : modifiers) {
        if ((flags & modifier.flag) == 0) continue;
        if (!text.empty()) text += localized(language, " and ", " y ");
        text += rawValue(modifier.trigger);
        if (displayName(modifier.trigger) != rawValue(modifier.trigger))
            text.append(" (").append(displayName(modifier.trigger)).append(")");
    }
    return text;
}

class Sentence {
  public:
    Sentence(const ButtonMapping& mapping, FunctionSlot slot, AppLanguage language, EventFlags reported)
        : mapping_(mapping),
          slot_(slot),
          language_(language),
          reported_(reported),
          wanted_(wantedBy(mapping, slot)) {}

    TriggerSentence make() {
        if (mapping_.function(slot_).action == ButtonAction::none) {
            if (slot_ == FunctionSlot::primary)
                return never(say("No action: the press goes on to the application",
                                 "Sin acción: la pulsación sigue hasta la aplicación"));
            return never(say("Never, until an action is chosen", "Nunca, hasta que se elija una acción"));
        }
        if (const EventFlags missing = wanted_ & ~reported_; missing != 0)
            return never(
                say("Never here: this system does not report ", "Nunca aquí: este sistema no informa de ") +
                keyNames(missing, language_));
        bool fires = false;
        std::vector<FunctionSlot> others;
        for (const EventFlags flags : combinations(reported_)) {
            const auto fired = firedBy(mapping_, flags);
            if (fired == slot_) fires = true;
            if (!fired || fired == slot_ || !wouldFire(flags)) continue;
            if (std::ranges::find(others, *fired) == others.end()) others.push_back(*fired);
        }
        if (!fires) return never(whyNever());
        std::ranges::sort(others);
        return {when() + unless(others) + doubled(), true};
    }

  private:
    [[nodiscard]] std::string say(std::string_view english, std::string_view spanish) const {
        return std::string(localized(language_, english, spanish));
    }
    static TriggerSentence never(std::string text) { return {std::move(text), false}; }

    [[nodiscard]] bool isStandIn() const { return slot_ != FunctionSlot::primary && wanted_ == 0; }

    /// Whether the modifiers are those that the sentence names, other functions aside.
    [[nodiscard]] bool wouldFire(EventFlags flags) const {
        if (!isStandIn()) return (flags & wanted_) == wanted_;
        const EventFlags main = wantedBy(mapping_, FunctionSlot::primary);
        return (flags & main) != main;
    }

    [[nodiscard]] std::string when() const {
        if (isStandIn())
            return say("When the main function's keys are not held",
                       "Cuando no se mantienen las teclas de la función principal");
        if (wanted_ == 0) {
            if (isScrollMapping(mapping_)) return say("At every turn", "En cada giro");
            return say("At every press", "En cada pulsación");
        }
        const bool isOne = (wanted_ & (wanted_ - 1)) == 0;
        return say("While ", "Mientras se ") + say("", isOne ? "mantiene " : "mantienen ") +
               keyNames(wanted_, language_) + say(isOne ? " is held" : " are held", "");
    }

    [[nodiscard]] std::string unless(const std::vector<FunctionSlot>& others) const {
        if (others.empty()) return {};
        std::string names;
        for (std::size_t index = 0; index < others.size(); ++index) {
            if (index > 0) names += index + 1 < others.size() ? ", " : say(" or ", " o ");
            names += functionName(others[index], language_);
        }
        return say(", unless the keys of ", ", salvo que se mantengan las teclas de ") + names +
               say(" are held", "");
    }

    /// Of a function that fires although a lower one asks for the same.
    [[nodiscard]] std::string doubled() const {
        for (const auto other : allFunctionSlots) {
            if (other == slot_ || wanted_ == 0 || !isInUse(mapping_, other) ||
                wantedBy(mapping_, other) != wanted_)
                continue;
            std::string name = functionName(other, language_);
            name.front() = static_cast<char>(name.front() - 'a' + 'A');
            return ". " + name + say(" asks for the same and gives way", " pide lo mismo y cede");
        }
        return {};
    }

    /// The first function that is in the way when exactly the wanted modifiers are held.
    [[nodiscard]] std::string whyNever() const {
        if (isStandIn() && isOwnClick(mapping_))
            return say("Never: this button keeps its own click, so a key must be chosen",
                       "Nunca: este botón conserva su propio clic, así que hay que elegir una tecla");
        if (isStandIn() && wantedBy(mapping_, FunctionSlot::primary) == 0)
            return say("Never: the main function asks for no key and comes first",
                       "Nunca: la función principal no pide ninguna tecla y va antes");
        const auto first = firedBy(mapping_, wanted_);
        if (!first) return say("Never", "Nunca");
        const std::string name = functionName(*first, language_);
        if (isStandIn())
            return say("Never: ", "Nunca: ") + name +
                   say(" asks for no key either and comes first", " tampoco pide ninguna tecla y va antes");
        if (wantedBy(mapping_, *first) == wanted_)
            return say("Never: ", "Nunca: ") + name +
                   say(" asks for the same and comes first", " pide lo mismo y va antes");
        return say("Never: ", "Nunca: ") + name + say(" needs only ", " solo necesita ") +
               keyNames(wantedBy(mapping_, *first), language_) + say(" and comes first", " y va antes");
    }

    const ButtonMapping& mapping_;
    FunctionSlot slot_;
    AppLanguage language_;
    EventFlags reported_;
    EventFlags wanted_;
};

}  // namespace

TriggerSentence triggerSentence(const ButtonMapping& mapping, FunctionSlot slot, AppLanguage language,
                                EventFlags reported) {
    return Sentence(mapping, slot, language, reported).make();
}

std::string functionName(FunctionSlot slot, AppLanguage language) {
    if (slot == FunctionSlot::primary)
        return std::string(localized(language, "the main function", "la función principal"));
    return std::string(localized(language, "function ", "la función ")) +
           std::to_string(static_cast<int>(slot) + 1);
}

}  // namespace trelvan
