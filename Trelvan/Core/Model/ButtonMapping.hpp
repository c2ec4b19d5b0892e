#pragma once

#include "Core/Model/MappingFunction.hpp"
#include "Core/Model/RecordField.hpp"
#include "Utilities/Uuid.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

namespace trelvan {

/// What one button does: up to four functions, told apart by the modifier keys held with it.
struct ButtonMapping {
    static constexpr std::int64_t minimumFunctionSlots = 1;
    static constexpr std::int64_t maximumFunctionSlots = allFunctionSlots.size();

    Uuid id;
    /// 0 left, 1 right, 2 middle, 3 and up the extra buttons, -100 and below the scroll wheel.
    std::int64_t buttonNumber = 0;
    std::string buttonLabel;
    /// How many functions are shown and considered, 1 to 4.
    std::int64_t functionSlots = minimumFunctionSlots;
    /// By slot.
    std::array<MappingFunction, allFunctionSlots.size()> functions;
    /// Stored with the secondary function and never consulted.
    ButtonModifierTrigger secondaryTrigger3 = ButtonModifierTrigger::none;
    /// What starts the system's dictation.
    CustomShortcut dictationShortcut;
    /// File path of the application to open, for all functions.
    std::string appPath;
    /// File path of the folder to open, for all functions.
    std::string folderPath;

    /// A mapping without any function.
    [[nodiscard]] static ButtonMapping unassigned(const Uuid& id, std::int64_t buttonNumber,
                                                  std::string buttonLabel);

    [[nodiscard]] MappingFunction& function(FunctionSlot slot) { return functions[indexOf(slot)]; }
    [[nodiscard]] const MappingFunction& function(FunctionSlot slot) const {
        return functions[indexOf(slot)];
    }

    /// The number of functions up to the last one that has an action; the primary one always counts.
    [[nodiscard]] std::int64_t functionSlotsInUse() const;

    // The members of the functions by the names that they are stored under.
    ButtonModifierTrigger& primaryTrigger1() { return functions[0].trigger1; }
    [[nodiscard]] ButtonModifierTrigger primaryTrigger1() const { return functions[0].trigger1; }
    ButtonModifierTrigger& primaryTrigger2() { return functions[0].trigger2; }
    [[nodiscard]] ButtonModifierTrigger primaryTrigger2() const { return functions[0].trigger2; }
    ButtonAction& action() { return functions[0].action; }
    [[nodiscard]] ButtonAction action() const { return functions[0].action; }
    CustomShortcut& shortcut() { return functions[0].shortcut; }
    [[nodiscard]] const CustomShortcut& shortcut() const { return functions[0].shortcut; }
    std::string& shortcutName() { return functions[0].shortcutName; }
    [[nodiscard]] const std::string& shortcutName() const { return functions[0].shortcutName; }
    ButtonModifierTrigger& secondaryTrigger1() { return functions[1].trigger1; }
    [[nodiscard]] ButtonModifierTrigger secondaryTrigger1() const { return functions[1].trigger1; }
    ButtonModifierTrigger& secondaryTrigger2() { return functions[1].trigger2; }
    [[nodiscard]] ButtonModifierTrigger secondaryTrigger2() const { return functions[1].trigger2; }
    ButtonAction& secondaryAction() { return functions[1].action; }
    [[nodiscard]] ButtonAction secondaryAction() const { return functions[1].action; }
    CustomShortcut& secondaryShortcut() { return functions[1].shortcut; }
    [[nodiscard]] const CustomShortcut& secondaryShortcut() const { return functions[1].shortcut; }
    std::string& secondaryShortcutName() { return functions[1].shortcutName; }
    [[nodiscard]] const std::string& secondaryShortcutName() const { return functions[1].shortcutName; }
    ButtonModifierTrigger& tertiaryTrigger1() { return functions[2].trigger1; }
    [[nodiscard]] ButtonModifierTrigger tertiaryTrigger1() const { return functions[2].trigger1; }
    ButtonModifierTrigger& tertiaryTrigger2() { return functions[2].trigger2; }
    [[nodiscard]] ButtonModifierTrigger tertiaryTrigger2() const { return functions[2].trigger2; }
    ButtonAction& tertiaryAction() { return functions[2].action; }
    [[nodiscard]] ButtonAction tertiaryAction() const { return functions[2].action; }
    CustomShortcut& tertiaryShortcut() { return functions[2].shortcut; }
    [[nodiscard]] const CustomShortcut& tertiaryShortcut() const { return functions[2].shortcut; }
    std::string& tertiaryShortcutName() { return functions[2].shortcutName; }
    [[nodiscard]] const std::string& tertiaryShortcutName() const { return functions[2].shortcutName; }
    ButtonModifierTrigger& quaternaryTrigger1() { return functions[3].trigger1; }
    [[nodiscard]] ButtonModifierTrigger quaternaryTrigger1() const { return functions[3].trigger1; }
    ButtonModifierTrigger& quaternaryTrigger2() { return functions[3].trigger2; }
    [[nodiscard]] ButtonModifierTrigger quaternaryTrigger2() const { return functions[3].trigger2; }
    ButtonAction& quaternaryAction() { return functions[3].action; }
    [[nodiscard]] ButtonAction quaternaryAction() const { return functions[3].action; }
    CustomShortcut& quaternaryShortcut() { return functions[3].shortcut; }
    [[nodiscard]] const CustomShortcut& quaternaryShortcut() const { return functions[3].shortcut; }
    std::string& quaternaryShortcutName() { return functions[3].shortcutName; }
    [[nodiscard]] const std::string& quaternaryShortcutName() const { return functions[3].shortcutName; }

    static constexpr auto fields() {
        using Self = ButtonMapping;
        using enum FunctionSlot;
        return std::tuple{
            identifier("id", &Self::id),
            required("buttonNumber", &Self::buttonNumber),
            required("buttonLabel", &Self::buttonLabel),
            fieldOf(primary, &FunctionKeys::trigger1, &MappingFunction::trigger1),
            fieldOf(primary, &FunctionKeys::trigger2, &MappingFunction::trigger2),
            fieldOf(primary, &FunctionKeys::action, &MappingFunction::action),
            defaulted("functionSlots", &Self::functionSlots),
            fieldOf(secondary, &FunctionKeys::trigger1, &MappingFunction::trigger1, "secondaryTrigger"),
            fieldOf(secondary, &FunctionKeys::trigger2, &MappingFunction::trigger2),
            defaulted("secondaryTrigger3", &Self::secondaryTrigger3),
            fieldOf(secondary, &FunctionKeys::action, &MappingFunction::action),
            fieldOf(tertiary, &FunctionKeys::trigger1, &MappingFunction::trigger1),
            fieldOf(tertiary, &FunctionKeys::trigger2, &MappingFunction::trigger2),
            fieldOf(tertiary, &FunctionKeys::action, &MappingFunction::action),
            fieldOf(quaternary, &FunctionKeys::trigger1, &MappingFunction::trigger1),
            fieldOf(quaternary, &FunctionKeys::trigger2, &MappingFunction::trigger2),
            fieldOf(quaternary, &FunctionKeys::action, &MappingFunction::action),
            fieldOf(secondary, &FunctionKeys::shortcut, &MappingFunction::shortcut),
            fieldOf(tertiary, &FunctionKeys::shortcut, &MappingFunction::shortcut),
            fieldOf(quaternary, &FunctionKeys::shortcut, &MappingFunction::shortcut),
            fieldOf(primary, &FunctionKeys::shortcut, &MappingFunction::shortcut),
            fieldOf(primary, &FunctionKeys::shortcutName, &MappingFunction::shortcutName),
            fieldOf(secondary, &FunctionKeys::shortcutName, &MappingFunction::shortcutName),
            fieldOf(tertiary, &FunctionKeys::shortcutName, &MappingFunction::shortcutName),
            fieldOf(quaternary, &FunctionKeys::shortcutName, &MappingFunction::shortcutName),
            defaulted("dictationShortcut", &Self::dictationShortcut),
            defaulted("appPath", &Self::appPath),
            defaulted("folderPath", &Self::folderPath),
        };
    }
    friend bool operator==(const ButtonMapping& left, const ButtonMapping& right) {
        return equalFields(left, right);
    }

  private:
    template <typename Value>
    using FunctionField = ElementField<ButtonMapping, MappingFunction, allFunctionSlots.size(), Value>;

    template <typename Value>
    static constexpr FunctionField<Value> fieldOf(FunctionSlot slot, std::string_view FunctionKeys::*key,
                                                  Value MappingFunction::*member,
                                                  std::string_view legacyKey = {}) {
        return defaulted(keysOf(slot).*key, &ButtonMapping::functions, indexOf(slot), member, legacyKey);
    }
};

}  // namespace trelvan
