#include "Utilities/Text.hpp"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace trelvan {

namespace {

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Unicode's White_Space property, which is also what the system trims.
bool isWhiteSpace(utf8proc_int32_t codepoint) {
    return (codepoint >= 0x09 && codepoint <= 0x0D) || codepoint == 0x20 || codepoint == 0x85 ||
           codepoint == 0xA0 || codepoint == 0x1680 || (codepoint >= 0x2000 && codepoint <= 0x200A) ||
           codepoint == 0x2028 || codepoint == 0x2029 || codepoint == 0x202F || codepoint == 0x205F ||
           codepoint == 0x3000;
}

/// The code point at the front of `text` and its length in bytes; length 0 where it is not UTF-8.
std::pair<utf8proc_int32_t, std::size_t> firstCodepoint(std::string_view text) {
    utf8proc_int32_t codepoint = -1;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                         static_cast<utf8proc_ssize_t>(text.size()), &codepoint);
    return {codepoint, length > 0 ? static_cast<std::size_t>(length) : 0};
}

/// Whether a code point is shown by nothing of its own and may change how the rest of a line is shown.
bool isControl(utf8proc_int32_t codepoint) {
    const auto within = [codepoint](utf8proc_int32_t first, utf8proc_int32_t last) {
        return codepoint >= first && codepoint <= last;
    };
    return within(0, 0x1F) || within(0x7F, 0x9F) || codepoint == 0x61C || within(0x200E, 0x200F) ||
           within(0x2028, 0x202E) || within(0x2066, 0x2069);
}

/// A control character, or a byte that is none at all, as programmers write it.
void appendEscape(InlineText& text, std::uint32_t code) {
    switch (code) {
        case '\n':
            return text.append("\\n");
        case '\r':
            return text.append("\\r");
        case '\t':
            return text.append("\\t");
        default:
            break;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::uint32_t oneByte = 0xFF;
    text.append(code <= oneByte ? "\\x" : "\\u");
    for (int shift = code <= oneByte ? 4 : 12; shift >= 0; shift -= 4)
        text.append(digits.substr((code >> static_cast<unsigned>(shift)) & 0xFU, 1));
}

}  // namespace

void appendVisible(InlineText& text, std::string_view part) {
    std::size_t plain = 0;
    for (std::size_t at = 0; at < part.size();) {
        const auto byte = static_cast<unsigned char>(part[at]);
        auto code = static_cast<std::uint32_t>(byte);
        std::size_t length = 1;
        bool shown = byte >= 0x20 && byte < 0x7F;
        if (byte >= 0x80) {
            const auto [codepoint, size] = firstCodepoint(part.substr(at));
            shown = size > 0 && !isControl(codepoint);
            if (size > 0) {
                code = static_cast<std::uint32_t>(codepoint);
                length = size;
            }
        }
        if (!shown) {
            text.append(part.substr(plain, at - plain));
            appendEscape(text, code);
            plain = at + length;
        }
        at += length;
    }
    text.append(part.substr(plain));
}

std::string visible(std::string_view text) {
    InlineText result;
    appendVisible(result, text);
    return std::string(result.view());
}

std::optional<std::string> composed(std::string_view text) {
    if (isAscii(text)) return std::string(text);
    utf8proc_uint8_t* result = nullptr;
    const auto length = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                     static_cast<utf8proc_ssize_t>(text.size()), &result,
                                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (length < 0) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(result), static_cast<std::size_t>(length));
}

bool canonicallyEquivalent(std::string_view left, std::string_view right) {
    if (left == right) return true;
    if (isAscii(left) && isAscii(right)) return false;
    const auto composedLeft = composed(left);
    const auto composedRight = composed(right);
    return composedLeft && composedRight && *composedLeft == *composedRight;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty()) {
        const auto [codepoint, length] = firstCodepoint(text);
        if (length == 0 || !isWhiteSpace(codepoint)) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        std::size_t start = text.size() - 1;
        while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80U) --start;
        const auto [codepoint, length] = firstCodepoint(text.substr(start));
        if (length != text.size() - start || !isWhiteSpace(codepoint)) break;
        text.remove_suffix(length);
    }
    return text;
}

std::string_view lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos || path.size() == 1) return path;
    return path.substr(slash + 1);
}

}  // namespace trelvan
