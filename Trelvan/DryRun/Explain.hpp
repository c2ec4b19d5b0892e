#pragma once

#include "CommandLine.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Platform/ActionShortcuts.hpp"

namespace trelvan {

/// Tells on standard output which function a press would fire with the user's real settings, and why. Reads
/// only. `errorLanguage` is for errors met before the settings are known. The exit status.
[[nodiscard]] int explain(const command::Explain& request, const ActionShortcuts& shortcuts,
                          AppLanguage errorLanguage);

}  // namespace trelvan
