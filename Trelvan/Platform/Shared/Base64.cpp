#include "Platform/Shared/Base64.hpp"

#include <cstdint>

namespace trelvan {

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char padding = '=';

}  // namespace

std::string base64Encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t start = 0; start < bytes.size(); start += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - start);
        std::uint32_t group = 0;
        for (std::size_t index = 0; index < 3; ++index) {
            group <<= 8U;
            if (index < count) group |= static_cast<unsigned char>(bytes[start + index]);
        }
        for (std::size_t index = 0; index < 4; ++index) {
            const auto digit = (group >> (18U - 6U * index)) & 0x3FU;
            text += index <= count ? digits[digit] : padding;
        }
    }
    return text;
}

std::optional<std::string> base64Decode(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::string bytes;
    for (std::size_t start = 0; start < text.size(); start += 4) {
        std::uint32_t group = 0;
        std::size_t count = 0;
        while (count < 4 && text[start + count] != padding) {
            const auto digit = digits.find(text[start + count]);
            if (digit == std::string_view::npos) return std::nullopt;
            group |= static_cast<std::uint32_t>(digit) << (18U - 6U * count);
            ++count;
        }
        const bool isLast = start + 4 == text.size();
        if (count < 2 || (count < 4 && !isLast)) return std::nullopt;
        if (count == 2 && text[start + 3] != padding) return std::nullopt;
        for (std::size_t index = 0; index + 1 < count; ++index) {
            bytes += static_cast<char>((group >> (16U - 8U * index)) & 0xFFU);
        }
    }
    return bytes;
}

}  // namespace trelvan
