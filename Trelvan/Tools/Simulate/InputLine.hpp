#pragma once

#include "Core/MappingExplanation.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/ButtonWatch.hpp"

#include <string>

namespace trelvan {

/// One line about an input: its number, device and modifiers, and what the profile would do with it.
[[nodiscard]] std::string inputLine(const SeenInput& input, const ProfileSnapshot& profile,
                                    const ActionShortcuts& shortcuts, AppLanguage language,
                                    const NamedHotKeys& hotKeys = {});

}  // namespace trelvan
