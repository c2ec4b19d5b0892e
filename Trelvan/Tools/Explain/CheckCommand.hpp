#pragma once

#include "CommandLine.hpp"
#include "Core/Check/MappingCheck.hpp"
#include "Core/Model/AppLanguage.hpp"

namespace trelvan {

/// Lists on standard output everything wrong or odd in the user's settings. Reads only. `terminal` is the
/// language where neither the command nor the settings name one. The exit status.
[[nodiscard]] int checkSettingsFile(const command::Check& request, const CheckSurroundings& surroundings,
                                    AppLanguage terminal);

}  // namespace trelvan
