#pragma once

#include "CommandLine.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/HotKeyTable.hpp"

#include <functional>
#include <map>

namespace trelvan {

/// The desktop's shortcuts by their symbolic identifiers.
using ReadHotKeys = std::function<std::map<int, NamedHotKey>()>;

/// Tells on standard output which function a press would fire with the user's real settings, and why. Reads
/// only. `hotKeys` reads the desktop's shortcuts, for a platform that asks the desktop first. `errorLanguage`
/// is for errors met before the settings are known. The exit status.
[[nodiscard]] int explain(const command::Explain& request, const ActionShortcuts& shortcuts,
                          const ReadHotKeys& hotKeys, AppLanguage errorLanguage);

}  // namespace trelvan
