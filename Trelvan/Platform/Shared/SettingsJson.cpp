#include "Platform/Shared/SettingsJson.hpp"

#include "Platform/Shared/Base64.hpp"
#include "Utilities/Text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
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

/// Whether the bytes are the text of a JSON list that can be read again.
bool isList(const std::string& bytes) {
    const auto start = bytes.find_first_not_of(" \t\r\n");
    return start != std::string::npos && bytes[start] == '[' && !tooDeepAt(bytes) && Json::accept(bytes);
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

SettingsDamage damage(std::string_view text, std::size_t offset, std::string english, std::string spanish) {
    return {positionOf(text, offset), std::move(english), std::move(spanish)};
}

/// The first number that no double holds.
std::size_t immenseNumber(std::string_view text) {
    bool isInString = false;
    for (std::size_t offset = 0; offset < text.size(); ++offset) {
        const char c = text[offset];
        if (isInString && c == '\\') {
            ++offset;
        } else if (c == '"') {
            isInString = !isInString;
        } else if (!isInString && (c == '-' || (c >= '0' && c <= '9'))) {
            const auto end = std::min(text.find_first_not_of("+-.0123456789eE", offset), text.size());
            if (std::isinf(std::strtod(std::string(text.substr(offset, end - offset)).c_str(), nullptr)))
                return offset;
            offset = end - 1;
        }
    }
    return 0;
}

/// Why the text is no JSON object; none when it is one.
std::optional<SettingsDamage> unlikeObject(std::string_view text) {
    if (const auto place = tooDeepAt(text)) {
        return damage(text, *place, "lists and objects are nested too deeply",
                      "listas y objetos anidados con demasiada profundidad");
    }
    try {
        if (Json::parse(text).is_object()) return std::nullopt;
        return damage(text, 0, "not a JSON object", "no es un objeto JSON");
    } catch (const Json::parse_error& error) {
        return damage(text, error.byte > 0 ? error.byte - 1 : 0, "not valid JSON", "no es JSON válido");
    } catch (const Json::exception&) {
        return damage(text, immenseNumber(text), "the number is too large", "el número es demasiado grande");
    }
}

/// A member's value, read from its text.
std::optional<DefaultsValue> valueOf(std::string_view text) {
    // Token for token, so that numbers, the order of keys and unknown ones stay.
    if (text.starts_with('[')) return Data{compactJson(text)};
    return valueOf(Json::parse(text));
}

}  // namespace

std::string settingsText(const SettingsValues& values) {
    constexpr std::size_t indent = 2;
    std::string text = "{";
    for (const auto& [key, value] : values) {
        const auto* data = std::get_if<Data>(&value);
        const std::string member =
            data != nullptr && isList(data->bytes)
                ? data->bytes
                : std::visit([](const auto& held) { return jsonOf(held); }, value).dump();
        text += text.size() > 1 ? ",\n  " : "\n  ";
        // A key that is not UTF-8 is written with its bad bytes replaced rather than not at all.
        text += Json(key).dump(-1, ' ', false, Json::error_handler_t::replace) + ": " +
                indentedJson(member, indent, 1);
    }
    return text + (values.empty() ? "}\n" : "\n}\n");
}

std::variant<SettingsValues, SettingsDamage> parseSettings(std::string_view text) {
    if (auto problem = unlikeObject(text)) return std::move(*problem);
    SettingsValues values;
    for (const auto& member : jsonMembers(text)) {
        auto value = valueOf(jsonValueAt(text, member.offset));
        auto key = Json::parse(member.key).get<std::string>();
        if (!value) {
            return damage(text, member.offset,
                          "\"" + key + "\" is neither a boolean, a number, a string nor an array",
                          "\"" + key + "\" no es un booleano, un número, una cadena ni una lista");
        }
        values.insert_or_assign(std::move(key), std::move(*value));
    }
    return values;
}

}  // namespace trelvan
