#include "Core/Check/MappingCheck.hpp"

#include "Core/MappingResolution.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Core/Model/ButtonNumbers.hpp"
#include "Core/Model/ProfileNormalization.hpp"
#include "Core/ModifierNames.hpp"
#include "Core/RadialLayout.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>
#include <vector>

namespace trelvan {

namespace {

/// Every combination of the modifiers, none included.
std::vector<EventFlags> combinations(EventFlags possible) {
    std::vector<EventFlags> result{0};
    for (const auto& [bit, trigger] : modifiers) {
        if ((possible & bit) == 0) continue;
        for (std::size_t index = result.size(); index-- > 0;) result.push_back(result[index] | bit);
    }
    return result;
}

class ProfileCheck {
  public:
    ProfileCheck(const TrackballProfile& stored, const std::string& path,
                 const CheckSurroundings& surroundings, Findings& findings)
        : stored_(stored),
          profile_(normalizeProfile(stored)),
          path_(path),
          surroundings_(surroundings),
          findings_(findings),
          combinations_(combinations(surroundings.modifiers)) {}

    void run() {
        for (std::size_t index = 0; index < profile_.mappings.size(); ++index) {
            checkNumber(index);
            checkCorrections(index);
            checkThirdTrigger(index);
        }
        findWhatFires();
        for (std::size_t index = 0; index < profile_.mappings.size(); ++index) {
            if (isBehindAnother(index)) continue;
            for (const auto slot : allFunctionSlots) checkFunction(index, slot);
        }
        checkMenu();
    }

  private:
    std::string place(std::size_t mapping, std::string_view key = {}) const {
        std::string text = path_ + ".mappings[" + std::to_string(mapping) + "]";
        if (!key.empty()) text.append(".").append(key);
        return text;
    }

    void warn(std::string path, TextPair message) {
        findings_.push_back({.severity = Severity::warning,
                             .path = std::move(path),
                             .message = {std::string(message.english), std::string(message.spanish)}});
    }

    void checkNumber(std::size_t index) {
        const auto number = stored_.mappings[index].buttonNumber;
        const bool isDevices = number >= 0 && number <= surroundings_.highestButton;
        if (isDevices || isScrollButton(number)) return;
        warn(place(index, "buttonNumber"),
             {"no device has a button of that number: 0 left, 1 right, 2 middle, 3 and up the extra buttons, "
              "-100 wheel up, -101 wheel down",
              "ningún dispositivo tiene un botón con ese número: 0 izquierdo, 1 derecho, 2 medio, 3 y "
              "siguientes los extra, -100 rueda arriba, -101 rueda abajo"});
    }

    /// What the start makes of the mapping. A key that is not written is no surprise.
    void checkCorrections(std::size_t index) {
        const auto& before = stored_.mappings[index];
        const auto& after = profile_.mappings[index];
        if (before.buttonNumber != after.buttonNumber) {
            warn(place(index, "buttonNumber"),
                 {"counts as -100, the wheel up: the profile has no mapping with that number",
                  "cuenta como -100, la rueda arriba: el perfil no tiene ninguna asignación con ese número"});
            return;
        }
        std::apply([&](const auto&... field) { (checkPinned(index, field, before, after), ...); },
                   ButtonMapping::fields());
    }

    template <typename Field>
    void checkPinned(std::size_t index, const Field& field, const ButtonMapping& before,
                     const ButtonMapping& after) {
        const auto& was = field.of(before);
        if (equalValues(was, field.of(after)) || equalValues(was, field.of(fresh_))) return;
        warn(place(index, field.key),
             {"has no effect: the left and right buttons keep their own clicks",
              "no tiene efecto: los botones izquierdo y derecho conservan sus propios clics"});
    }

    void checkThirdTrigger(std::size_t index) {
        if (profile_.mappings[index].secondaryTrigger3 == ButtonModifierTrigger::none) return;
        warn(place(index, "secondaryTrigger3"),
             {"is kept but never consulted: a function asks for two modifiers at most",
              "se conserva pero nunca se consulta: una función pide dos modificadores como máximo"});
    }

    /// The mappings that answer the same presses as one, in order, itself included.
    std::vector<std::size_t> groupOf(std::size_t index) const {
        const auto number = profile_.mappings[index].buttonNumber;
        std::vector<std::size_t> group;
        for (std::size_t other = 0; other < profile_.mappings.size(); ++other) {
            const auto each = profile_.mappings[other].buttonNumber;
            const bool sameDirection =
                isScrollButton(number) && isScrollButton(each) && isEvenButton(number) == isEvenButton(each);
            if (each == number || sameDirection) group.push_back(other);
        }
        return group;
    }

    bool isBehindAnother(std::size_t index) {
        const auto& mapping = profile_.mappings[index];
        if (isScrollButton(mapping.buttonNumber) || groupOf(index).front() == index) return false;
        warn(place(index), {"never fires: an earlier mapping has the same button, and only the first counts",
                            "nunca se ejecuta: una asignación anterior tiene el mismo botón y solo cuenta la "
                            "primera"});
        return true;
    }

    /// Asks the resolution itself, with every combination of modifiers.
    void findWhatFires() {
        fires_.assign(profile_.mappings.size(), {});
        for (std::size_t index = 0; index < profile_.mappings.size(); ++index) {
            const auto group = groupOf(index);
            if (group.front() != index) continue;
            for (const auto flags : combinations_) {
                if (isScrollButton(profile_.mappings[index].buttonNumber)) {
                    fireScroll(group, flags);
                } else {
                    fireButton(index, flags);
                }
            }
        }
    }

    void fireButton(std::size_t index, EventFlags flags) {
        const auto& mapping = profile_.mappings[index];
        if (!isOwnClick(mapping)) {
            const auto function = resolvedAction(mapping, flags);
            // None stands for a press that nothing answers, whatever the slot.
            if (function.action != ButtonAction::none) fires_[index].insert(function.slot);
        } else if (const auto alternate = resolvedAlternateAction(mapping, flags)) {
            fires_[index].insert(alternate->slot);
        }
    }

    void fireScroll(const std::vector<std::size_t>& group, EventFlags flags) {
        for (const auto index : group) {
            const auto function = resolvedAction(profile_.mappings[index], flags);
            if (function.action == ButtonAction::none) continue;
            fires_[index].insert(function.slot);
            return;
        }
    }

    void checkFunction(std::size_t index, FunctionSlot slot) {
        const auto& mapping = profile_.mappings[index];
        if (mapping.function(slot).action == ButtonAction::none) return;
        if (slot == FunctionSlot::primary && isOwnClick(mapping)) return;
        if (fires_[index].contains(slot)) {
            checkEffect(index, slot);
        } else {
            warn(place(index, keysOf(slot).action), whyNever(mapping, slot));
        }
    }

    TextPair whyNever(const ButtonMapping& mapping, FunctionSlot slot) const {
        const EventFlags wanted = triggerFlags(mapping.function(slot));
        if (!isInUse(mapping, slot))
            return {"never fires: 'functionSlots' leaves this function out",
                    "nunca se ejecuta: 'functionSlots' deja fuera esta función"};
        if ((wanted & ~surroundings_.modifiers) != 0)
            return {"never fires: a key that it asks for is not reported on this system (Fn)",
                    "nunca se ejecuta: este sistema no informa de una tecla que pide (Fn)"};
        if (wanted == 0 && isOwnClick(mapping))
            return {"never fires: on the left and right buttons a function needs a modifier",
                    "nunca se ejecuta: en los botones izquierdo y derecho una función necesita un "
                    "modificador"};
        if (isScrollButton(mapping.buttonNumber))
            return {"never fires: another function or an earlier mapping of this direction comes first",
                    "nunca se ejecuta: otra función o una asignación anterior de esta dirección va antes"};
        if (wanted == 0 && triggerFlags(mapping.function(FunctionSlot::primary)) == 0)
            return {"never fires: it has no modifier, and the main function needs none either",
                    "nunca se ejecuta: no tiene modificador y la función principal tampoco lo necesita"};
        if (wanted == 0)
            return {"never fires: it has no modifier, and an earlier function without one comes first",
                    "nunca se ejecuta: no tiene modificador y una función anterior sin él va antes"};
        return {"never fires: with its modifiers held, a higher function fires",
                "nunca se ejecuta: con sus modificadores pulsados se ejecuta una función superior"};
    }

    void checkEffect(std::size_t index, FunctionSlot slot) {
        const auto& mapping = profile_.mappings[index];
        const auto action = mapping.function(slot).action;
        const std::string here = place(index, keysOf(slot).action);
        if (const auto obstacle = surroundings_.obstacle(action))
            warn(here, {obstacle->english, obstacle->spanish});
        switch (rowOf(action).input) {
            case ActionInput::shortcut:
                if (mapping.function(slot).shortcut.isEmpty()) warnNoKey(here, keysOf(slot).shortcut);
                return;
            case ActionInput::dictationShortcut:
                if (mapping.dictationShortcut.isEmpty()) warnNoKey(here, "dictationShortcut");
                return;
            case ActionInput::application:
                if (mapping.appPath.empty()) {
                    warn(here, {"opens nothing: 'appPath' names no application",
                                "no abre nada: 'appPath' no nombra ninguna aplicación"});
                } else {
                    checkThere(place(index, "appPath"), mapping.appPath);
                }
                return;
            case ActionInput::folder:
                if (!mapping.folderPath.empty() && !surroundings_.exists(mapping.folderPath))
                    warn(place(index, "folderPath"), {"is not there; the home folder opens instead",
                                                      "no está; en su lugar se abre la carpeta personal"});
                return;
            case ActionInput::menu:
                if (profile_.smartButton.apps.empty())
                    warn(here, {"opens nothing: the radial menu has no entries",
                                "no abre nada: el menú radial no tiene entradas"});
                return;
            case ActionInput::nothing:
                return;
        }
    }

    void warnNoKey(const std::string& here, std::string_view key) {
        const InlineText english("sends nothing: '", key, "' has no key");
        const InlineText spanish("no envía nada: '", key, "' no tiene tecla");
        warn(here, {english.view(), spanish.view()});
    }

    void checkThere(const std::string& here, const std::string& path) {
        if (!surroundings_.exists(path)) warn(here, {"is not there", "no está"});
    }

    void checkMenu() {
        const auto& apps = profile_.smartButton.apps;
        for (std::size_t index = 0; index < apps.size(); ++index) {
            const auto& app = apps[index];
            const std::string here = path_ + ".smartButton.apps[" + std::to_string(index) + "]";
            if (index >= RadialLayout::maxEntries) {
                warn(here, {"is not shown: the menu has eight places",
                            "no se muestra: el menú tiene ocho lugares"});
            } else if (app.kind == SmartButtonItemKind::shortcut) {
                if (app.shortcut.isEmpty()) warnNoKey(here, "shortcut");
            } else if (app.path.empty()) {
                warn(here, {"opens nothing: 'path' names no application",
                            "no abre nada: 'path' no nombra ninguna aplicación"});
            } else {
                checkThere(here + ".path", app.path);
            }
            if (!app.iconPath.empty()) checkThere(here + ".iconPath", app.iconPath);
        }
    }

    /// What a mapping has where nothing is written.
    const ButtonMapping fresh_{};
    const TrackballProfile& stored_;
    /// As the program uses it; mappings keep their places.
    TrackballProfile profile_;
    std::string path_;
    const CheckSurroundings& surroundings_;
    Findings& findings_;
    std::vector<EventFlags> combinations_;
    /// For each mapping the functions that some combination fires.
    std::vector<std::set<FunctionSlot>> fires_;
};

}  // namespace

void checkProfile(const TrackballProfile& profile, const std::string& path,
                  const CheckSurroundings& surroundings, Findings& findings) {
    ProfileCheck(profile, path, surroundings, findings).run();
}

}  // namespace trelvan
