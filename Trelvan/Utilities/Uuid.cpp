#include "Utilities/Uuid.hpp"

#include <random>

namespace trelvan {

namespace {

constexpr std::string_view upperDigits = "0123456789ABCDEF";

int digitValue(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

constexpr bool hyphenBefore(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

}  // namespace

Uuid Uuid::version4(Bytes bytes) {
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
    return Uuid(bytes);
}

Uuid Uuid::random() {
    std::random_device device;
    std::uniform_int_distribution<unsigned> distribution(0, 255);
    Bytes bytes{};
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(distribution(device));
    return version4(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36) return std::nullopt;
    Bytes bytes{};
    std::size_t position = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (hyphenBefore(index) && text[position++] != '-') return std::nullopt;
        const int high = digitValue(text[position]);
        const int low = digitValue(text[position + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes[index] = static_cast<std::uint8_t>(high * 16 + low);
        position += 2;
    }
    return Uuid(bytes);
}

std::string Uuid::text() const {
    std::string result;
    result.reserve(36);
    for (std::size_t index = 0; index < bytes_.size(); ++index) {
        if (hyphenBefore(index)) result += '-';
        result += upperDigits[bytes_[index] >> 4U];
        result += upperDigits[bytes_[index] & 0x0FU];
    }
    return result;
}

}  // namespace trelvan
