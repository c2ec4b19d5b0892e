#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Platform/ActionShortcuts.hpp"

#include <string>
#include <vector>

namespace trelvan {

/// A combination as people write it, "Control+Shift+C". Any thread.
[[nodiscard]] std::string describeChord(KeyChord chord, AppLanguage language);

/// What an action does on the platform with these shortcuts, in one or two sentences without a full stop.
/// What a mapping adds of its own (a recorded shortcut, an application, a folder) is not in it. Any thread.
[[nodiscard]] std::vector<std::string> describeAction(ButtonAction action, const ActionShortcuts& shortcuts,
                                                      AppLanguage language);

}  // namespace trelvan
