#pragma once

#include "Core/Model/ButtonAction.hpp"
#include "Core/Model/ButtonModifierTrigger.hpp"
#include "Core/Model/CustomShortcut.hpp"
#include "Core/Model/RecordField.hpp"
#include "Utilities/Uuid.hpp"

#include <cstdint>
#include <string>
#include <tuple>

namespace trelvan {

/// What one button does: up to four functions, told apart by the modifier keys held with it.
struct ButtonMapping {
    static constexpr std::int64_t minimumFunctionSlots = 1;
    static constexpr std::int64_t maximumFunctionSlots = 4;

    Uuid id;
    /// 0 left, 1 right, 2 middle, 3 and up the extra buttons, -100 and below the scroll wheel.
    std::int64_t buttonNumber = 0;
    std::string buttonLabel;
    ButtonModifierTrigger primaryTrigger1 = ButtonModifierTrigger::none;
    ButtonModifierTrigger primaryTrigger2 = ButtonModifierTrigger::none;
    ButtonAction action = ButtonAction::none;
    /// How many functions are shown and considered, 1 to 4.
    std::int64_t functionSlots = minimumFunctionSlots;
    ButtonModifierTrigger secondaryTrigger1 = ButtonModifierTrigger::none;
    ButtonModifierTrigger secondaryTrigger2 = ButtonModifierTrigger::none;
    ButtonModifierTrigger secondaryTrigger3 = ButtonModifierTrigger::none;
    ButtonAction secondaryAction = ButtonAction::none;
    ButtonModifierTrigger tertiaryTrigger1 = ButtonModifierTrigger::none;
    ButtonModifierTrigger tertiaryTrigger2 = ButtonModifierTrigger::none;
    ButtonAction tertiaryAction = ButtonAction::none;
    ButtonModifierTrigger quaternaryTrigger1 = ButtonModifierTrigger::none;
    ButtonModifierTrigger quaternaryTrigger2 = ButtonModifierTrigger::none;
    ButtonAction quaternaryAction = ButtonAction::none;
    CustomShortcut secondaryShortcut;
    CustomShortcut tertiaryShortcut;
    CustomShortcut quaternaryShortcut;
    /// The primary function's.
    CustomShortcut shortcut;
    std::string shortcutName;
    std::string secondaryShortcutName;
    std::string tertiaryShortcutName;
    std::string quaternaryShortcutName;
    /// What starts the system's dictation.
    CustomShortcut dictationShortcut;
    /// File path of the application to open, for all functions.
    std::string appPath;
    /// File path of the folder to open, for all functions.
    std::string folderPath;

    /// A mapping without any function.
    [[nodiscard]] static ButtonMapping unassigned(const Uuid& id, std::int64_t buttonNumber,
                                                  std::string buttonLabel);

    /// The number of functions up to the last one that has an action; the primary one always counts.
    [[nodiscard]] std::int64_t functionSlotsInUse() const;

    static constexpr auto fields() {
        using Self = ButtonMapping;
        return std::tuple{
            identifier("id", &Self::id),
            required("buttonNumber", &Self::buttonNumber),
            required("buttonLabel", &Self::buttonLabel),
            defaulted("primaryTrigger1", &Self::primaryTrigger1),
            defaulted("primaryTrigger2", &Self::primaryTrigger2),
            defaulted("action", &Self::action),
            defaulted("functionSlots", &Self::functionSlots),
            defaulted("secondaryTrigger1", &Self::secondaryTrigger1, "secondaryTrigger"),
            defaulted("secondaryTrigger2", &Self::secondaryTrigger2),
            defaulted("secondaryTrigger3", &Self::secondaryTrigger3),
            defaulted("secondaryAction", &Self::secondaryAction),
            defaulted("tertiaryTrigger1", &Self::tertiaryTrigger1),
            defaulted("tertiaryTrigger2", &Self::tertiaryTrigger2),
            defaulted("tertiaryAction", &Self::tertiaryAction),
            defaulted("quaternaryTrigger1", &Self::quaternaryTrigger1),
            defaulted("quaternaryTrigger2", &Self::quaternaryTrigger2),
            defaulted("quaternaryAction", &Self::quaternaryAction),
            defaulted("secondaryShortcut", &Self::secondaryShortcut),
            defaulted("tertiaryShortcut", &Self::tertiaryShortcut),
            defaulted("quaternaryShortcut", &Self::quaternaryShortcut),
            defaulted("shortcut", &Self::shortcut),
            defaulted("shortcutName", &Self::shortcutName),
            defaulted("secondaryShortcutName", &Self::secondaryShortcutName),
            defaulted("tertiaryShortcutName", &Self::tertiaryShortcutName),
            defaulted("quaternaryShortcutName", &Self::quaternaryShortcutName),
            defaulted("dictationShortcut", &Self::dictationShortcut),
            defaulted("appPath", &Self::appPath),
            defaulted("folderPath", &Self::folderPath),
        };
    }
    friend bool operator==(const ButtonMapping& left, const ButtonMapping& right) {
        return equalFields(left, right);
    }
};

}  // namespace trelvan
