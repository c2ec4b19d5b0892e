#pragma once

#include "Platform/UserDefaults.hpp"

#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// All settings by key, in the order of the file.
using SettingsValues = std::map<std::string, DefaultsValue, std::less<>>;

/// Why a settings text cannot be read: the place, for a person.
struct SettingsDamage {
    std::string place;
};

/// The text of a settings file: one JSON object with sorted keys.
///
/// Truth values, numbers and texts are themselves; a number with a fraction or exponent is a double. Data is
/// {"utf8": …} where it is UTF-8, else {"base64": …}; a text that is not UTF-8 is {"text": base64}, a double
/// that JSON cannot write is {"double": "inf" | "-inf" | "nan"}.
[[nodiscard]] std::string settingsText(const SettingsValues& values);
[[nodiscard]] std::variant<SettingsValues, SettingsDamage> parseSettings(std::string_view text);

}  // namespace trelvan
