#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Whether two UTF-8 texts are the same under canonical equivalence (a letter with a composed accent equals
/// the letter followed by the combining one). Texts that are not UTF-8 are compared by their bytes.
[[nodiscard]] bool canonicallyEquivalent(std::string_view left, std::string_view right);

/// The composed form (NFC) of a UTF-8 text; none when it is not UTF-8.
[[nodiscard]] std::optional<std::string> composed(std::string_view text);

/// Without the white space and line breaks (Unicode's) at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The last component of a path; the whole when there is no slash. Trailing slashes do not count.
[[nodiscard]] std::string_view lastPathComponent(std::string_view path);

/// A short text put together on the stack; grows onto the heap only past `inlineCapacity` bytes, so that log
/// lines of the usual length cost no allocation.
class InlineText {
  public:
    static constexpr std::size_t inlineCapacity = 512;

    template <typename... Parts>
    explicit InlineText(const Parts&... parts) {
        (append(parts), ...);
    }

    void append(std::string_view part) {
        if (heap_.empty() && size_ + part.size() <= inlineCapacity) {
            if (!part.empty()) std::memcpy(inline_.data() + size_, part.data(), part.size());
            size_ += part.size();
            return;
        }
        if (heap_.empty()) heap_.assign(inline_.data(), size_);
        heap_.append(part);
    }

    template <std::integral Number>
    requires(!std::same_as<Number, bool> && !std::same_as<Number, char>) void append(Number number) {
        std::array<char, 24> digits{};
        const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
        append(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
    }

    [[nodiscard]] std::string_view view() const {
        return heap_.empty() ? std::string_view(inline_.data(), size_) : std::string_view(heap_);
    }
    operator std::string_view() const { return view(); }  // NOLINT(google-explicit-constructor)

  private:
    std::array<char, inlineCapacity> inline_;
    std::size_t size_ = 0;
    std::string heap_;
};

/// Appends a text that somebody else chose so that it can neither break the line nor steer a terminal:
/// control characters, line and paragraph separators, marks of the writing direction and bytes that are not
/// UTF-8 are written as `\n`, `\t`, `\x1b`, `\u2028`. All else stays as it is, backslashes too.
void appendVisible(InlineText& text, std::string_view part);

/// The text as `appendVisible` writes it.
[[nodiscard]] std::string visible(std::string_view text);

}  // namespace trelvan
