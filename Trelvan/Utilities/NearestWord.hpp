#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace trelvan {

/// The text for comparing what people type: no capitals, no accents. A text that is not UTF-8 stays as it is.
[[nodiscard]] std::string folded(std::string_view text);

/// How many characters must be inserted, removed, replaced or exchanged with their neighbour to make one text
/// of the other; capitals and accents do not count.
[[nodiscard]] std::size_t editDistance(std::string_view left, std::string_view right);

/// The position of the candidate that was probably meant by a word that is none of them; the first of equals.
/// None when more than a third of its characters would have to be changed.
[[nodiscard]] std::optional<std::size_t> nearestWord(std::string_view word,
                                                     std::span<const std::string_view> candidates);

}  // namespace trelvan
