#pragma once

#include "Utilities/Text.hpp"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace trelvan {

/// The cases of an enumeration that is stored as text. Specialised for each such enumeration with
/// `rawValues`, the stored texts in the order of the cases, and `noun`, what one case is called in an error
/// text.
template <typename Enum>
struct RawValueTable;

template <typename Enum>
concept RawRepresentable = requires {
    RawValueTable<Enum>::rawValues.size();
    RawValueTable<Enum>::noun;
};

/// The stored text of a case, in its composed form.
template <RawRepresentable Enum>
constexpr std::string_view rawValue(Enum value) {
    return RawValueTable<Enum>::rawValues[static_cast<std::size_t>(value)];
}

/// Every case in table order.
template <RawRepresentable Enum>
constexpr auto allCases() {
    std::array<Enum, RawValueTable<Enum>::rawValues.size()> cases{};
    for (std::size_t index = 0; index < cases.size(); ++index) cases[index] = static_cast<Enum>(index);
    return cases;
}

/// The case that is stored as the text; none when no case is. Case and accents count, but not whether an
/// accented letter is written composed or decomposed.
template <RawRepresentable Enum>
[[nodiscard]] std::optional<Enum> fromRawValue(std::string_view text) {
    // Nearly every text is exactly a table's one; the costly comparison is for the few that are not.
    for (const Enum value : allCases<Enum>()) {
        if (rawValue(value) == text) return value;
    }
    for (const Enum value : allCases<Enum>()) {
        if (canonicallyEquivalent(rawValue(value), text)) return value;
    }
    return std::nullopt;
}

}  // namespace trelvan
