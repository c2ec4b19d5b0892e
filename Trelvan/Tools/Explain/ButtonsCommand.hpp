#pragma once

#include "CommandLine.hpp"
#include "Core/MappingExplanation.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Platform/ActionShortcuts.hpp"

namespace trelvan {

/// Prints a line for each press and turn of the wheel until the program is told to end. The settings are read
/// anew for each, and nothing is done. The exit status.
[[nodiscard]] int showButtons(const command::Buttons& request, const ActionShortcuts& shortcuts,
                              const NamedHotKeys& hotKeys, AppLanguage terminal);

}  // namespace trelvan
