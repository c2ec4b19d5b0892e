#pragma once

#include "Core/Model/ButtonMapping.hpp"
#include "Core/Model/CodingError.hpp"
#include "Core/Model/RawRepresentable.hpp"
#include "Core/Model/RecordField.hpp"
#include "Utilities/Uuid.hpp"

#include <nlohmann/json.hpp>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace trelvan {
class AppSettingsSnapshot;
}

/// How any record is read from JSON and written to it. For the sources of coders only: the JSON library is
/// too large for headers that everybody includes. Nothing here throws.
namespace trelvan::json {

using Value = nlohmann::json;
/// What went wrong; none when all is well.
using Problem = std::optional<CodingError>;

/// The value that a text holds.
[[nodiscard]] Coded<Value> parse(std::string_view bytes);
/// The text of a value made by `write`: compact, or indented by some columns; keys in alphabetical order.
[[nodiscard]] std::string serialize(const Value& value, std::optional<int> indent = std::nullopt);

/// What an error says of a value that is not `expected`.
[[nodiscard]] CodingError unexpected(std::string_view expected, const Value& found);
/// The member of an object; null when it is missing or holds JSON's null.
[[nodiscard]] const Value* member(const Value& object, std::string_view key);

[[nodiscard]] Problem read(const Value& value, bool& out, const UuidSource& newId);
[[nodiscard]] Problem read(const Value& value, double& out, const UuidSource& newId);
[[nodiscard]] Problem read(const Value& value, std::string& out, const UuidSource& newId);
[[nodiscard]] Problem read(const Value& value, Uuid& out, const UuidSource& newId);
/// A whole number within both limits, as the bits of its two's complement.
[[nodiscard]] Problem readWhole(const Value& value, std::int64_t minimum, std::uint64_t maximum,
                                std::uint64_t& bits);
[[nodiscard]] CodingError notOneOf(std::string_view noun, const std::string& text);

[[nodiscard]] Problem read(const Value& value, AppSettingsSnapshot& out, const UuidSource& newId);

template <std::integral Number>
[[nodiscard]] Problem read(const Value& value, Number& out, const UuidSource& /*newId*/) {
    using Limits = std::numeric_limits<Number>;
    std::uint64_t bits = 0;
    auto problem = readWhole(value, std::int64_t{Limits::min()}, std::uint64_t{Limits::max()}, bits);
    if (!problem) out = static_cast<Number>(bits);
    return problem;
}

template <RawRepresentable Enum>
[[nodiscard]] Problem read(const Value& value, Enum& out, const UuidSource& newId) {
    std::string text;
    if (auto problem = read(value, text, newId)) return problem;
    const auto known = fromRawValue<Enum>(text);
    if (!known) return notOneOf(RawValueTable<Enum>::noun, text);
    out = *known;
    return std::nullopt;
}

template <RecordWithFields Record>
[[nodiscard]] Problem read(const Value& value, Record& out, const UuidSource& newId);

template <typename T>
[[nodiscard]] Problem read(const Value& value, std::optional<T>& out, const UuidSource& newId) {
    return read(value, out.emplace(), newId);
}

template <typename T>
[[nodiscard]] Problem read(const Value& value, std::vector<T>& out, const UuidSource& newId) {
    if (!value.is_array()) return unexpected("an array", value);
    out.clear();
    out.reserve(value.size());
    for (const auto& element : value) {
        if (auto problem = read(element, out.emplace_back(), newId)) {
            return std::move(*problem).inside(out.size() - 1);
        }
    }
    return std::nullopt;
}

/// What is left to do once all keys of an object have been read.
template <typename Record>
void finishReading(const Value& /*object*/, Record& /*record*/) {}
void finishReading(const Value& object, ButtonMapping& mapping);

template <typename Field, typename Record>
[[nodiscard]] Problem readField(const Value& object, const Field& field, Record& out,
                                const UuidSource& newId) {
    std::string_view key = field.key;
    const Value* value = member(object, key);
    if (value == nullptr && !field.legacyKey.empty()) {
        key = field.legacyKey;
        value = member(object, key);
    }
    if (value != nullptr) {
        auto problem = read(*value, field.of(out), newId);
        return problem ? Problem(std::move(*problem).inside(key)) : std::nullopt;
    }
    if (field.whenAbsent == WhenAbsent::fails) {
        return CodingError{std::string(field.key),
                           object.contains(field.key) ? "required key is null" : "required key is missing"};
    }
    if constexpr (std::same_as<typename Field::Value, Uuid>) {
        if (field.whenAbsent == WhenAbsent::newIdentifier) field.of(out) = newId();
    }
    return std::nullopt;
}

template <RecordWithFields Record>
Problem read(const Value& value, Record& out, const UuidSource& newId) {
    if (!value.is_object()) return unexpected("an object", value);
    Problem problem;
    std::apply(
        [&](const auto&... field) {
            static_cast<void>((!(problem = readField(value, field, out, newId)) && ...));
        },
        Record::fields());
    if (!problem) finishReading(value, out);
    return problem;
}

[[nodiscard]] Problem write(bool in, Value& value);
/// Fails on what is not a finite number.
[[nodiscard]] Problem write(double in, Value& value);
/// Fails on what is not UTF-8.
[[nodiscard]] Problem write(const std::string& in, Value& value);
[[nodiscard]] Problem write(const Uuid& in, Value& value);
[[nodiscard]] Problem write(const AppSettingsSnapshot& in, Value& value);

template <std::integral Number>
[[nodiscard]] Problem write(Number in, Value& value) {
    value = in;
    return std::nullopt;
}

template <RawRepresentable Enum>
[[nodiscard]] Problem write(Enum in, Value& value) {
    value = rawValue(in);
    return std::nullopt;
}

template <RecordWithFields Record>
[[nodiscard]] Problem write(const Record& in, Value& value);

template <typename T>
[[nodiscard]] Problem write(const std::vector<T>& in, Value& value) {
    value = Value::array();
    for (std::size_t index = 0; index < in.size(); ++index) {
        if (auto problem = write(in[index], value.emplace_back())) return std::move(*problem).inside(index);
    }
    return std::nullopt;
}

template <typename T>
[[nodiscard]] Problem writeField(std::string_view key, const T& in, Value& object) {
    auto problem = write(in, object[key]);
    return problem ? Problem(std::move(*problem).inside(key)) : std::nullopt;
}

/// A key without a value is left out.
template <typename T>
[[nodiscard]] Problem writeField(std::string_view key, const std::optional<T>& in, Value& object) {
    return in ? writeField(key, *in, object) : std::nullopt;
}

template <RecordWithFields Record>
Problem write(const Record& in, Value& value) {
    value = Value::object();
    Problem problem;
    std::apply(
        [&](const auto&... field) {
            static_cast<void>((!(problem = writeField(field.key, field.of(in), value)) && ...));
        },
        Record::fields());
    return problem;
}

/// Reads a whole text as a value of one type.
template <typename T>
[[nodiscard]] Coded<T> decode(std::string_view bytes, const UuidSource& newId) {
    const auto value = parse(bytes);
    if (!value) return value.error();
    T result{};
    if (auto problem = read(*value, result, newId)) return std::move(*problem);
    return result;
}

/// The text of a value, compact or indented.
template <typename T>
[[nodiscard]] Coded<std::string> encode(const T& in, std::optional<int> indent = std::nullopt) {
    Value value;
    if (auto problem = write(in, value)) return std::move(*problem);
    return serialize(value, indent);
}

}  // namespace trelvan::json
