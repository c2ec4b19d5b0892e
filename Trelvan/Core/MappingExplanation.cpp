#include "Core/MappingExplanation.hpp"

#include "Core/ActionDescription.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Core/Model/ButtonNumbers.hpp"
#include "Core/ModifierNames.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

/// Puts the texts of one explanation together.
class Explainer {
  public:
    Explainer(const ProfileSnapshot& profile, EventFlags flags, const ActionShortcuts& shortcuts,
              AppLanguage language, const NamedHotKeys& hotKeys)
        : profile_(profile), flags_(flags), shortcuts_(shortcuts), language_(language), hotKeys_(hotKeys) {}

    MappingExplanation explain(std::int64_t buttonNumber) {
        result_.buttonNumber = buttonNumber;
        say({"Active profile: '", "Perfil activo: '"}, profile_.profile().name, {"'", "'"});
        const std::string held = namesOf(flags_);
        if (held.empty()) {
            say({"No modifier is held", "No hay ningún modificador pulsado"});
        } else {
            say({"Held: ", "Pulsados: "}, held);
        }
        const auto group = profile_.mappings(buttonNumber);
        if (group.empty()) {
            say({"Button ", "El botón "}, std::to_string(buttonNumber),
                {" has no mapping: the press passes", " no tiene asignación: la pulsación pasa"});
        } else if (isScrollButton(buttonNumber)) {
            explainScroll(group);
        } else {
            explainButton(profile_.mapping(group.front()), group.size());
        }
        return std::move(result_);
    }

    std::vector<std::string> explainFunction(const ButtonMapping& mapping, FunctionSlot slot) {
        sayWhatIsSent(mapping, {mapping.function(slot).action, slot});
        return std::move(result_.why);
    }

  private:
    /// The same text in both languages.
    struct Pair {
        std::string_view english;
        std::string_view spanish;
    };

    std::string_view pick(Pair pair) const { return localized(language_, pair.english, pair.spanish); }
    void say(Pair before, std::string_view middle = {}, Pair after = {}) {
        // Names and paths of the user's are among them.
        result_.why.push_back(visible(InlineText(pick(before), middle, pick(after))));
    }
    std::string labelOf(ButtonAction action) const { return std::string(label(action, rawValue(language_))); }

    void explainScroll(std::span<const std::uint32_t> group) {
        say({"Mappings of this scroll direction: ", "Asignaciones de esta dirección de scroll: "},
            std::to_string(group.size()),
            {"; the first that does something runs", "; se ejecuta la primera que hace algo"});
        for (const auto index : group) {
            const ButtonMapping& mapping = profile_.mapping(index);
            const auto function = resolvedAction(mapping, flags_);
            explainSlots(mapping, function, false);
            if (function.action == ButtonAction::none) continue;
            conclude(mapping, function, true);
            return;
        }
        conclude(profile_.mapping(group.front()), {}, false);
    }

    void explainButton(const ButtonMapping& mapping, std::size_t count) {
        if (count > 1) {
            say({"Mappings of this button: ", "Asignaciones de este botón: "}, std::to_string(count),
                {"; only the first counts", "; solo cuenta la primera"});
        }
        if (!isOwnClick(mapping)) {
            const auto function = resolvedAction(mapping, flags_);
            explainSlots(mapping, function, false);
            conclude(mapping, function, function.action != ButtonAction::none);
            return;
        }
        say({"The primary function is the button's own click, which is never synthesised",
             "La función primaria es el propio clic del botón, que nunca se sintetiza"});
        const auto function = resolvedAlternateAction(mapping, flags_);
        explainSlots(mapping, function.value_or(ResolvedFunction{}), true);
        conclude(mapping, function.value_or(ResolvedFunction{}), function.has_value());
    }

    /// Says of each slot what the resolution finds there, highest first, up to the one that fires.
    void explainSlots(const ButtonMapping& mapping, ResolvedFunction fires, bool triggeredOnly) {
        say({"Functions in use: ", "Funciones en uso: "}, std::to_string(mapping.functionSlots));
        for (const auto slot : {FunctionSlot::quaternary, FunctionSlot::tertiary, FunctionSlot::secondary}) {
            if (!isInUse(mapping, slot)) continue;
            saySlot(mapping, slot);
            if (slot == fires.slot && triggerFlags(mapping.function(slot)) != 0) return;
        }
        if (!triggeredOnly) saySlot(mapping, FunctionSlot::primary);
        if (!triggeredOnly && fires.slot != FunctionSlot::primary) {
            say({"The primary's modifiers are not held: the lowest function without triggers stands in",
                 "Los modificadores de la primaria no están pulsados: la sustituye la primera función sin "
                 "disparadores"});
        }
    }

    void saySlot(const ButtonMapping& mapping, FunctionSlot slot) {
        const auto number = static_cast<int>(slot) + 1;
        const std::string head = std::string(InlineText(pick({"Function ", "Función "}), number, " ('",
                                                        labelOf(mapping.function(slot).action), "'): ")
                                                 .view());
        if (slot != FunctionSlot::primary && mapping.function(slot).action == ButtonAction::none) {
            say({head, head},
                pick({"does nothing, so it never fires", "no hace nada, así que nunca se ejecuta"}));
            return;
        }
        const EventFlags wanted = triggerFlags(mapping.function(slot));
        if (wanted == 0) {
            say({head, head}, slot == FunctionSlot::primary
                                  ? pick({"asks for no modifier", "no pide ningún modificador"})
                                  : pick({"has no triggers, so it can only stand in",
                                          "no tiene disparadores, así que solo puede sustituir"}));
        } else if (const EventFlags missing = wanted & ~flags_; missing != 0) {
            say({head, head}, namesOf(missing), {" is not held", " no está pulsado"});
        } else {
            say({head, head}, namesOf(wanted), {" is held: it fires", " está pulsado: se ejecuta"});
        }
    }

    void conclude(const ButtonMapping& mapping, ResolvedFunction function, bool handled) {
        result_.function = function;
        result_.handled = handled;
        if (!handled) {
            say({"Nothing fires: the press passes", "No se ejecuta nada: la pulsación pasa"});
            return;
        }
        say({"The press is swallowed and runs '", "La pulsación se retiene y ejecuta '"},
            labelOf(function.action), {"'", "'"});
        sayWhatIsSent(mapping, function);
    }

    void sayWhatIsSent(const ButtonMapping& mapping, ResolvedFunction function) {
        const auto input = rowOf(function.action).input;
        if (const auto given = givenFor(input, mapping, function.slot); !given.empty())
            return say({"With: ", "Con: "}, given);
        if (lacks(input, mapping, function.slot)) return sayWhyNothing(input);
        for (auto& sentence : describeAction(function.action, shortcuts_, language_, hotKeys_))
            result_.why.push_back(std::move(sentence));
    }

    /// What was recorded or chosen for the action; empty when nothing was.
    static std::string_view givenFor(ActionInput input, const ButtonMapping& mapping, FunctionSlot slot) {
        switch (input) {
            case ActionInput::shortcut:
                return mapping.function(slot).shortcut.displayString;
            case ActionInput::dictationShortcut:
                return mapping.dictationShortcut.displayString;
            case ActionInput::application:
                return mapping.appPath;
            case ActionInput::folder:
                return mapping.folderPath;
            case ActionInput::nothing:
            case ActionInput::menu:
                break;
        }
        return {};
    }

    /// Whether the action does nothing for want of its input.
    static bool lacks(ActionInput input, const ButtonMapping& mapping, FunctionSlot slot) {
        if (input == ActionInput::shortcut) return mapping.function(slot).shortcut.isEmpty();
        if (input == ActionInput::dictationShortcut) return mapping.dictationShortcut.isEmpty();
        return input == ActionInput::application && mapping.appPath.empty();
    }

    void sayWhyNothing(ActionInput input) {
        if (input == ActionInput::application) {
            say({"Nothing is opened: no application has been chosen",
                 "No se abre nada: no se ha elegido ninguna aplicación"});
        } else {
            say({"Nothing is sent: no shortcut has been recorded",
                 "No se envía nada: no se ha grabado ningún atajo"});
        }
    }

    const ProfileSnapshot& profile_;
    EventFlags flags_;
    const ActionShortcuts& shortcuts_;
    AppLanguage language_;
    const NamedHotKeys& hotKeys_;
    MappingExplanation result_;
};

}  // namespace

MappingExplanation explainPress(const ProfileSnapshot& profile, std::int64_t buttonNumber, EventFlags flags,
                                const ActionShortcuts& shortcuts, AppLanguage language,
                                const NamedHotKeys& hotKeys) {
    return Explainer(profile, flags, shortcuts, language, hotKeys).explain(buttonNumber);
}

std::vector<std::string> explainFunction(const ButtonMapping& mapping, FunctionSlot slot,
                                         const ActionShortcuts& shortcuts, AppLanguage language,
                                         const NamedHotKeys& hotKeys) {
    const ProfileSnapshot none{TrackballProfile{}};
    return Explainer(none, 0, shortcuts, language, hotKeys).explainFunction(mapping, slot);
}

}  // namespace trelvan
