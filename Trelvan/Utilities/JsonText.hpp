#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A place in a text; both count from 1, columns in bytes.
struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
    friend bool operator==(const TextPosition&, const TextPosition&) = default;
};

/// Where the byte at `offset` stands; past the end where the text ends before it.
[[nodiscard]] TextPosition positionOf(std::string_view text, std::size_t offset);

/// Lists and objects inside each other that a JSON text may have: far more than anything of this program has,
/// and too few to fill the memory.
inline constexpr std::size_t deepestJson = 64;

/// Where the text goes deeper than that; none when it does not. The text need not be valid.
[[nodiscard]] std::optional<std::size_t> tooDeepAt(std::string_view json);

/// The valid JSON text without white space between its tokens, otherwise byte for byte.
[[nodiscard]] std::string compactJson(std::string_view json);

/// The valid JSON text with one member or element a line, otherwise byte for byte; `depth` steps of `width`
/// spaces stand before its second and later lines.
[[nodiscard]] std::string indentedJson(std::string_view json, std::size_t width, std::size_t depth);

/// The part of a valid JSON text that is the value at `offset`, where white space may come first.
[[nodiscard]] std::string_view jsonValueAt(std::string_view json, std::size_t offset);

/// A member of a JSON object.
struct JsonMember {
    /// As written, with its quotation marks.
    std::string_view key;
    /// Where its value starts.
    std::size_t offset = 0;
};

/// The members of the valid JSON text of an object, in their order.
[[nodiscard]] std::vector<JsonMember> jsonMembers(std::string_view json);

/// The value that the steps of a path such as "trackball_profiles[0].mappings[2].action" lead to, as an
/// offset into the valid JSON text; the last value on the way that is there where they lead on. Keys are
/// compared as written, without escapes.
[[nodiscard]] std::size_t offsetOfJson(std::string_view json, std::string_view path);

}  // namespace trelvan
