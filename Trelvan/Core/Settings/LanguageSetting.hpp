#pragma once

#include "Core/Settings/Setting.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Platform/UserDefaults.hpp"

#include <optional>
#include <string>

namespace trelvan {

/// The text of the language setting as it is now; the English raw value when nothing is stored.
[[nodiscard]] inline std::string languageSetting(const UserDefaults& defaults) {
    return storedValue<std::string>(setting::row("language"), defaults);
}

/// The language that the settings name; none when they name none.
[[nodiscard]] inline std::optional<AppLanguage> chosenLanguage(const UserDefaults& defaults) {
    const auto stored = asText(defaults.object(setting::row("language").key));
    return stored ? std::optional(languageFromSetting(*stored)) : std::nullopt;
}

}  // namespace trelvan
