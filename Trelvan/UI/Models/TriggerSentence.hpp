#pragma once

#include "Core/MappingResolution.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "UI/Models/ModifierSigns.hpp"

#include <string>

namespace trelvan {

/// When a function of a mapping fires.
struct TriggerSentence {
    /// One sentence without a full stop.
    std::string text;
    /// Whether there is a press that fires it.
    bool fires = false;
};

/// Says when the function fires, as the resolution decides for every combination of the modifiers that the
/// keyboard reports.
[[nodiscard]] TriggerSentence triggerSentence(const ButtonMapping& mapping, FunctionSlot slot,
                                              AppLanguage language,
                                              EventFlags reported = combinationModifiers);

/// "the main function", "function 2".
[[nodiscard]] std::string functionName(FunctionSlot slot, AppLanguage language);

}  // namespace trelvan
