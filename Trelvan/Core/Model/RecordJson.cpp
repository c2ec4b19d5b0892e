#include "Core/Model/RecordJson.hpp"

#include <utf8proc.h>

#include <algorithm>
#include <cmath>

namespace trelvan::json {

namespace {

/// No profiles, backup or line of a script come near it.
constexpr std::size_t largestText = std::size_t{16} * 1024 * 1024;

/// Texts longer than this are not repeated in an error.
constexpr std::size_t longestQuoted = 80;

/// Up to here a number with a fraction or an exponent says exactly which whole number it means.
constexpr double exactLimit = 9007199254740992.0;

bool isUtf8(std::string_view text) {
    auto* at = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t codepoint = 0;
        const auto length = utf8proc_iterate(at, left, &codepoint);
        if (length <= 0) return false;
        at += length;
        left -= length;
    }
    return true;
}

std::string_view nameOf(const Value& value) {
    switch (value.type()) {
        case Value::value_t::object:
            return "an object";
        case Value::value_t::array:
            return "an array";
        case Value::value_t::string:
            return "a string";
        case Value::value_t::boolean:
            return "a boolean";
        case Value::value_t::number_integer:
        case Value::value_t::number_unsigned:
        case Value::value_t::number_float:
            return "a number";
        default:
            return "null";
    }
}

}  // namespace

Coded<Value> parse(std::string_view bytes) {
    if (bytes.size() > largestText) return CodingError{"", "the text is too large"};
    if (const auto place = tooDeepAt(bytes))
        return CodingError{"", "lists and objects are nested too deeply", positionOf(bytes, *place)};
    try {
        return Value::parse(bytes);
    } catch (const Value::parse_error& error) {
        return CodingError{"", "not valid JSON", positionOf(bytes, error.byte > 0 ? error.byte - 1 : 0)};
    } catch (const Value::exception&) {
        return CodingError{"", "a number is too large for JSON"};
    }
}

std::string serialize(const Value& value, std::optional<int> indent) {
    // Every text has been checked when it was written, so nothing is ever replaced and nothing thrown.
    return value.dump(indent.value_or(-1), ' ', false, Value::error_handler_t::replace);
}

CodingError unexpected(std::string_view expected, const Value& found) {
    return {"", "expected " + std::string(expected) + ", found " + std::string(nameOf(found))};
}

const Value* member(const Value& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

CodingError notOneOf(std::string_view noun, const std::string& text) {
    if (text.size() > longestQuoted) {
        return {"", "a string of " + std::to_string(text.size()) + " bytes is not " + std::string(noun)};
    }
    return {"", "\"" + text + "\" is not " + std::string(noun)};
}

Problem read(const Value& value, bool& out, const UuidSource& /*newId*/) {
    if (!value.is_boolean()) return unexpected("a boolean", value);
    out = value.get<bool>();
    return std::nullopt;
}

Problem read(const Value& value, double& out, const UuidSource& /*newId*/) {
    if (!value.is_number()) return unexpected("a number", value);
    out = value.get<double>();
    return std::nullopt;
}

Problem read(const Value& value, std::string& out, const UuidSource& /*newId*/) {
    if (!value.is_string()) return unexpected("a string", value);
    out = value.get_ref<const std::string&>();
    return std::nullopt;
}

Problem read(const Value& value, Uuid& out, const UuidSource& newId) {
    std::string text;
    if (auto problem = read(value, text, newId)) return problem;
    const auto parsed = Uuid::parse(text);
    if (!parsed) return notOneOf("a UUID", text);
    out = *parsed;
    return std::nullopt;
}

Problem readWhole(const Value& value, std::int64_t minimum, std::uint64_t maximum, std::uint64_t& bits) {
    if (!value.is_number()) return unexpected("a number", value);
    bool isNegative = false;
    if (value.is_number_float()) {
        const double number = value.get<double>();
        if (std::trunc(number) != number) return CodingError{"", value.dump() + " is not a whole number"};
        if (std::abs(number) >= exactLimit) {
            return CodingError{"", value.dump() + " is too large to be read exactly"};
        }
        isNegative = number < 0;
        bits = static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
    } else {
        isNegative = !value.is_number_unsigned() && value.get<std::int64_t>() < 0;
        bits = value.get<std::uint64_t>();
    }
    const bool inRange = isNegative ? static_cast<std::int64_t>(bits) >= minimum : bits <= maximum;
    if (inRange) return std::nullopt;
    return CodingError{
        "", value.dump() + " is out of range " + std::to_string(minimum) + ".." + std::to_string(maximum)};
}

void finishReading(const Value& object, ButtonMapping& mapping) {
    if (member(object, "functionSlots") == nullptr) mapping.functionSlots = mapping.functionSlotsInUse();
    mapping.functionSlots = std::clamp(mapping.functionSlots, ButtonMapping::minimumFunctionSlots,
                                       ButtonMapping::maximumFunctionSlots);
}

Problem write(bool in, Value& value) {
    value = in;
    return std::nullopt;
}

Problem write(double in, Value& value) {
    if (!std::isfinite(in)) return CodingError{"", "not a finite number"};
    value = in;
    return std::nullopt;
}

Problem write(const std::string& in, Value& value) {
    if (!isUtf8(in)) return CodingError{"", "the text is not UTF-8"};
    value = in;
    return std::nullopt;
}

Problem write(const Uuid& in, Value& value) {
    value = in.text();
    return std::nullopt;
}

}  // namespace trelvan::json
