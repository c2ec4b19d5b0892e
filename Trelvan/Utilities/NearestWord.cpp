#include "Utilities/NearestWord.hpp"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

/// Longer words are compared by their beginning; the cost grows with the square of the length.
constexpr std::size_t longestCompared = 80;

std::vector<utf8proc_int32_t> charactersOf(std::string_view text) {
    const std::string plain = folded(text);
    std::vector<utf8proc_int32_t> characters;
    auto* at = reinterpret_cast<const utf8proc_uint8_t*>(plain.data());
    auto left = static_cast<utf8proc_ssize_t>(plain.size());
    while (left > 0 && characters.size() < longestCompared) {
        utf8proc_int32_t character = 0;
        const auto length = utf8proc_iterate(at, left, &character);
        // A byte that is not UTF-8 counts as one character.
        characters.push_back(length > 0 ? character : -static_cast<utf8proc_int32_t>(*at));
        const auto step = length > 0 ? length : 1;
        at += step;
        left -= step;
    }
    return characters;
}

}  // namespace

std::string folded(std::string_view text) {
    utf8proc_uint8_t* result = nullptr;
    const auto length = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                     static_cast<utf8proc_ssize_t>(text.size()), &result,
                                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_DECOMPOSE |
                                                                    UTF8PROC_STRIPMARK | UTF8PROC_CASEFOLD));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (length < 0) return std::string(text);
    return {reinterpret_cast<const char*>(result), static_cast<std::size_t>(length)};
}

std::size_t editDistance(std::string_view left, std::string_view right) {
    const auto from = charactersOf(left);
    const auto to = charactersOf(right);
    // Row by row of the table whose cell (i, j) is the distance between the first i and the first j
    // characters; an exchange of neighbours looks two rows back.
    std::vector<std::size_t> beforeLast(to.size() + 1);
    std::vector<std::size_t> last(to.size() + 1);
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::swap(beforeLast, last);
        std::swap(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[to.size()];
}

std::optional<std::size_t> nearestWord(std::string_view word, std::span<const std::string_view> candidates) {
    std::optional<std::size_t> nearest;
    std::size_t smallest = 0;
    const std::size_t length = charactersOf(word).size();
    for (std::size_t index = 0; index < candidates.size(); ++index) {
        const std::size_t distance = editDistance(word, candidates[index]);
        const std::size_t longer = std::max(length, charactersOf(candidates[index]).size());
        if (distance > longer / 3 || (nearest && distance >= smallest)) continue;
        nearest = index;
        smallest = distance;
    }
    return nearest;
}

}  // namespace trelvan
