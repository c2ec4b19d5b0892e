#pragma once

#include "Platform/UserDefaults.hpp"
#include "Utilities/JsonText.hpp"

#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// All settings by key, in the order of the file.
using SettingsValues = std::map<std::string, DefaultsValue, std::less<>>;

/// Why a settings text cannot be read, and where.
struct SettingsDamage {
    TextPosition position;
    std::string english;
    std::string spanish;
};

/// The text of a settings file: one JSON object with sorted keys.
///
/// Booleans, numbers and strings are themselves; a number with a fraction or exponent is a double. Data that
/// is the JSON text of a list is that list, token for token as it is; other data is {"utf8": …} where it is
/// UTF-8, else {"base64": …}, and all three are read. A string that is not UTF-8 is {"text": base64}, a
/// double that JSON cannot write is {"double": "inf" | "-inf" | "nan"}.
[[nodiscard]] std::string settingsText(const SettingsValues& values);
[[nodiscard]] std::variant<SettingsValues, SettingsDamage> parseSettings(std::string_view text);

}  // namespace trelvan
