#pragma once

#include "Utilities/Text.hpp"
#include "Utilities/Uuid.hpp"

#include <array>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

/// A record lists its members once, in `static constexpr auto fields()`; equality, encoding and decoding all
/// walk that list, so that a new member needs one line there and nothing elsewhere.
namespace trelvan {

/// What a key that is missing from a stored object means.
enum class WhenAbsent {
    /// The object cannot be decoded.
    fails,
    /// The member keeps the value it has in a new record.
    keepsDefault,
    /// The member becomes a new identifier.
    newIdentifier,
};

/// One member of a record with the key that it is stored under.
template <typename Record, typename T>
struct RecordField {
    using Value = T;

    std::string_view key;
    T Record::*member;
    WhenAbsent whenAbsent;
    /// An older key, read when `key` is missing and never written; empty when there is none.
    std::string_view legacyKey = {};

    constexpr T& of(Record& record) const { return record.*member; }
    constexpr const T& of(const Record& record) const { return record.*member; }
};

/// The same for one member of an element of an array that the record holds.
template <typename Record, typename Element, std::size_t Size, typename T>
struct ElementField {
    using Value = T;

    std::string_view key;
    std::array<Element, Size> Record::*elements;
    std::size_t index;
    T Element::*member;
    WhenAbsent whenAbsent;
    std::string_view legacyKey = {};

    constexpr T& of(Record& record) const { return (record.*elements)[index].*member; }
    constexpr const T& of(const Record& record) const { return (record.*elements)[index].*member; }
};

template <typename Record, typename Value>
constexpr RecordField<Record, Value> required(std::string_view key, Value Record::*member) {
    return {key, member, WhenAbsent::fails};
}

template <typename Record, typename Value>
constexpr RecordField<Record, Value> defaulted(std::string_view key, Value Record::*member,
                                               std::string_view legacyKey = {}) {
    return {key, member, WhenAbsent::keepsDefault, legacyKey};
}

template <typename Record, typename Element, std::size_t Size, typename Value>
constexpr ElementField<Record, Element, Size, Value> defaulted(std::string_view key,
                                                               std::array<Element, Size> Record::*elements,
                                                               std::size_t index, Value Element::*member,
                                                               std::string_view legacyKey = {}) {
    return {key, elements, index, member, WhenAbsent::keepsDefault, legacyKey};
}

template <typename Record>
constexpr RecordField<Record, Uuid> identifier(std::string_view key, Uuid Record::*member) {
    return {key, member, WhenAbsent::newIdentifier};
}

template <typename Record>
concept RecordWithFields = requires {
    Record::fields();
};

/// Texts are equal under canonical equivalence, everything else as usual.
template <typename Value>
[[nodiscard]] bool equalValues(const Value& left, const Value& right) {
    if constexpr (std::same_as<Value, std::string>) {
        return canonicallyEquivalent(left, right);
    } else {
        return left == right;
    }
}

/// Whether two records are equal member by member, in the order of their list.
template <RecordWithFields Record>
[[nodiscard]] bool equalFields(const Record& left, const Record& right) {
    return std::apply(
        [&](const auto&... field) { return (equalValues(field.of(left), field.of(right)) && ...); },
        Record::fields());
}

}  // namespace trelvan
