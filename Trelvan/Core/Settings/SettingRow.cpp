#include "Core/Settings/SettingRow.hpp"

#include "Utilities/Text.hpp"

#include <algorithm>
#include <cmath>

namespace trelvan {

std::optional<double> SettingRow::accepted(std::optional<double> given) const {
    if (!given || std::isnan(*given)) return std::nullopt;
    return std::clamp(*given, minimum, maximum);
}

bool SettingRow::isReset(double loaded) const {
    return resetsOutside && (loaded < minimum || loaded > maximumLoaded);
}

bool SettingRow::isWord(std::string_view given) const {
    return words.empty() ||
           std::ranges::any_of(words, [given](auto word) { return canonicallyEquivalent(word, given); });
}

std::optional<bool> SettingRow::booleanOf(const DefaultsValue& stored) const {
    return reading == Reading::loose ? looseBool(stored) : strictBool(stored);
}

std::optional<double> SettingRow::numberOf(const DefaultsValue& stored) const {
    return reading == Reading::loose ? asDouble(stored) : strictNumber(stored);
}

DefaultsValue SettingRow::defaultValue() const {
    switch (kind) {
        case SettingKind::boolean:
            return isOn;
        case SettingKind::number:
            return initial;
        case SettingKind::string:
            return std::string(text);
        case SettingKind::data:
            break;
    }
    return Data{};
}

}  // namespace trelvan
