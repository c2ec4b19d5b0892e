#include "Core/StarterProfile.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <array>
#include <string>
#include <utility>

namespace trelvan {

namespace {

struct StarterRow {
    std::int64_t buttonNumber;
    TextPair label;
    ButtonAction action;
    ButtonModifierTrigger trigger = ButtonModifierTrigger::none;
    ButtonAction secondaryAction = ButtonAction::none;
};

constexpr std::array starterRows{
    StarterRow{nonRemappableLeftButtonNumber, {"Left click", "Click izquierdo"}, ButtonAction::leftClick},
    StarterRow{nonRemappableRightButtonNumber, {"Right click", "Click derecho"}, ButtonAction::rightClick},
    StarterRow{2, {"Middle click", "Click medio"}, ButtonAction::none},
    StarterRow{3,
               {"Extra button 1", "Botón extra 1"},
               ButtonAction::copy,
               ButtonModifierTrigger::shift,
               ButtonAction::paste},
    StarterRow{4,
               {"Extra button 2", "Botón extra 2"},
               ButtonAction::back,
               ButtonModifierTrigger::shift,
               ButtonAction::forward},
    StarterRow{scrollUpButtonNumber,
               {"Wheel up", "Rueda arriba"},
               ButtonAction::none,
               ButtonModifierTrigger::command,
               ButtonAction::volumeUp},
    StarterRow{scrollDownButtonNumber,
               {"Wheel down", "Rueda abajo"},
               ButtonAction::none,
               ButtonModifierTrigger::command,
               ButtonAction::volumeDown},
};

}  // namespace

TrackballProfile starterProfile(AppLanguage language, const UuidSource& newId) {
    TrackballProfile profile;
    profile.id = newId();
    profile.name = localized(language, "My buttons", "Mis botones");
    for (const auto& row : starterRows) {
        auto mapping =
            ButtonMapping::unassigned(newId(), row.buttonNumber, std::string(localized(language, row.label)));
        mapping.action() = row.action;
        mapping.secondaryTrigger1() = row.trigger;
        mapping.secondaryAction() = row.secondaryAction;
        mapping.functionSlots = mapping.functionSlotsInUse();
        profile.mappings.push_back(std::move(mapping));
    }
    return profile;
}

}  // namespace trelvan
