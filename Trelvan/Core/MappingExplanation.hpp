#pragma once

#include "Core/ActionDescription.hpp"
#include "Core/MappingResolution.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Platform/ActionShortcuts.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace trelvan {

/// What a press would do, and why.
struct MappingExplanation {
    std::int64_t buttonNumber = 0;
    ResolvedFunction function;
    /// Whether the press would be swallowed.
    bool handled = false;
    /// One text for each step of the resolution, in order.
    std::vector<std::string> why;
};

/// Explains a press of the button with these modifiers held. The verdict is that of the resolution itself;
/// the texts say what it looked at and what is sent, which for the desktop's views and tools may be one of
/// the hot keys. Reads only; any thread.
[[nodiscard]] MappingExplanation explainPress(const ProfileSnapshot& profile, std::int64_t buttonNumber,
                                              EventFlags flags, const ActionShortcuts& shortcuts,
                                              AppLanguage language, const NamedHotKeys& hotKeys = {});

/// What one function of a mapping sends or opens, or why it can do nothing, in sentences without a full stop.
/// Any thread.
[[nodiscard]] std::vector<std::string> explainFunction(const ButtonMapping& mapping, FunctionSlot slot,
                                                       const ActionShortcuts& shortcuts, AppLanguage language,
                                                       const NamedHotKeys& hotKeys = {});

}  // namespace trelvan
