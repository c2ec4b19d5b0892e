#pragma once

#include "CommandLine.hpp"
#include "Platform/ActionShortcuts.hpp"

namespace trelvan {

/// `trelvan actions`: lists the actions on standard output. `terminalLanguage` is the language of the answer
/// unless the request or the settings name one. The exit status.
[[nodiscard]] int listActions(const command::Actions& request, const ActionShortcuts& shortcuts,
                              AppLanguage terminalLanguage);

}  // namespace trelvan
