#pragma once

#include "CommandLine.hpp"
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

/// Prints a line for each press and turn of the wheel until the program is told to end. The settings are read
/// anew for each, and nothing is done. The exit status.
[[nodiscard]] int showButtons(const command::Buttons& request, const ActionShortcuts& shortcuts,
                              const NamedHotKeys& hotKeys, AppLanguage terminal);

}  // namespace trelvan
