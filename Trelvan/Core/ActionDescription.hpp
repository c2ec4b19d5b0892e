#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/HotKeyTable.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trelvan {

/// A combination as people write it, "Control+Shift+C". Any thread.
[[nodiscard]] std::string describeChord(KeyChord chord, AppLanguage language);

/// The combination of a symbolic hot key by its identifier; none where it has none.
using NamedHotKeys = std::function<std::optional<NamedHotKey>(int id)>;
/// Those of a table, which must live as long; their keys by the names of the catalogue's.
[[nodiscard]] NamedHotKeys namedHotKeys(const HotKeyTable& table);

/// What an action does on the platform with these shortcuts, in one or two sentences without a full stop.
/// For the desktop's views and tools it may be one of the hot keys. What a mapping adds of its own (a
/// recorded shortcut, an application, a folder) is not in it. Any thread.
[[nodiscard]] std::vector<std::string> describeAction(ButtonAction action, const ActionShortcuts& shortcuts,
                                                      AppLanguage language, const NamedHotKeys& hotKeys = {});

}  // namespace trelvan
