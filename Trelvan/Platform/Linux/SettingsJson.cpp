#include "Platform/Linux/SettingsJson.hpp"

#include "Platform/Linux/Base64.hpp"
#include "Utilities/Text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace trelvan {

namespace {

using Json = nlohmann::json;

constexpr const char* utf8Key = "utf8";
constexpr const char* base64Key = "base64";
constexpr const char* textKey = "text";
constexpr const char* doubleKey = "double";

bool isUtf8(const std::string& bytes) {
    try {
        (void)Json(bytes).dump();
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

Json jsonOf(double number) {
    if (std::isfinite(number)) return number;
    if (std::isnan(number)) return {{doubleKey, "nan"}};
    return {{doubleKey, number > 0 ? "inf" : "-inf"}};
}

Json jsonOf(const std::string& text) {
    if (isUtf8(text)) return text;
    return {{textKey, base64Encode(text)}};
}

Json jsonOf(const Data& data) {
    if (isUtf8(data.bytes)) return {{utf8Key, data.bytes}};
    return {{base64Key, base64Encode(data.bytes)}};
}

Json jsonOf(bool truth) {
    return truth;
}
Json jsonOf(std::int64_t number) {
    return number;
}

std::optional<DefaultsValue> specialDouble(const std::string& name) {
    if (name == "inf") return std::numeric_limits<double>::infinity();
    if (name == "-inf") return -std::numeric_limits<double>::infinity();
    if (name == "nan") return std::numeric_limits<double>::quiet_NaN();
    return std::nullopt;
}

/// A value wrapped in an object of one member.
std::optional<DefaultsValue> wrappedValue(const Json& json) {
    if (json.size() != 1 || !json.begin()->is_string()) return std::nullopt;
    const auto& kind = json.begin().key();
    const auto& content = json.begin()->get_ref<const std::string&>();
    if (kind == utf8Key) return Data{content};
    if (kind == doubleKey) return specialDouble(content);
    if (kind != base64Key && kind != textKey) return std::nullopt;
    auto bytes = base64Decode(content);
    if (!bytes) return std::nullopt;
    if (kind == textKey) return std::move(*bytes);
    return Data{std::move(*bytes)};
}

std::optional<DefaultsValue> valueOf(const Json& json) {
    switch (json.type()) {
        case Json::value_t::boolean:
            return json.get<bool>();
        case Json::value_t::number_integer:
            return json.get<std::int64_t>();
        case Json::value_t::number_float:
            return json.get<double>();
        case Json::value_t::string:
            return json.get<std::string>();
        case Json::value_t::object:
            return wrappedValue(json);
        case Json::value_t::number_unsigned: {
            const auto number = json.get<std::uint64_t>();
            if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                return static_cast<double>(number);
            }
            return static_cast<std::int64_t>(number);
        }
        default:
            return std::nullopt;
    }
}

SettingsDamage atByte(std::string_view text, std::size_t byte) {
    const auto before = text.substr(0, std::min(byte, text.size()));
    const auto line = 1 + std::ranges::count(before, '\n');
    return {std::string(ShortText("línea ", line))};
}

}  // namespace

std::string settingsText(const SettingsValues& values) {
    Json json = Json::object();
    for (const auto& [key, value] : values) {
        json[key] = std::visit([](const auto& held) { return jsonOf(held); }, value);
    }
    // A key that is not UTF-8 is written with its bad bytes replaced rather than not at all.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::variant<SettingsValues, SettingsDamage> parseSettings(std::string_view text) {
    Json json;
    try {
        json = Json::parse(text);
    } catch (const Json::parse_error& error) {
        return atByte(text, error.byte > 0 ? error.byte - 1 : 0);
    } catch (const Json::exception&) {
        return SettingsDamage{"número fuera de rango"};
    }
    if (!json.is_object()) return SettingsDamage{"línea 1: no es un objeto"};
    SettingsValues values;
    for (const auto& [key, member] : json.items()) {
        auto value = valueOf(member);
        if (!value) return SettingsDamage{"clave \"" + key + "\""};
        values.emplace(key, std::move(*value));
    }
    return values;
}

}  // namespace trelvan
