#include "Core/Check/SettingsPlaces.hpp"

#include "Core/Settings/SettingsCatalogue.hpp"
#include "Utilities/JsonText.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace trelvan {

namespace {

constexpr std::string_view innerKey = "utf8";
constexpr std::string_view profilesKey = setting::row("profiles").key;

std::uint32_t hexadecimal(std::string_view digits) {
    std::uint32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return number;
}

void appendUtf8(std::string& text, std::uint32_t character) {
    const auto byte = [&](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0U | (character >> 6U));
        byte(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        byte(0xE0U | (character >> 12U));
        byte(0x80U | ((character >> 6U) & 0x3FU));
        byte(0x80U | (character & 0x3FU));
    } else {
        byte(0xF0U | (character >> 18U));
        byte(0x80U | ((character >> 12U) & 0x3FU));
        byte(0x80U | ((character >> 6U) & 0x3FU));
        byte(0x80U | (character & 0x3FU));
    }
}

char unescaped(char letter) {
    switch (letter) {
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return letter;
    }
}

constexpr bool isHighSurrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

}  // namespace

SettingsPlaces::SettingsPlaces(std::string_view file) : file_(file) {
    readInner();
}

void SettingsPlaces::readInner() {
    const auto path = std::string(profilesKey) + "." + std::string(innerKey);
    const auto object = jsonValueAt(file_, offsetOfJson(file_, profilesKey));
    if (!object.starts_with('{')) return;
    const std::size_t start = offsetOfJson(file_, path);
    const auto token = jsonValueAt(file_, start);
    if (token.size() < 2 || token.front() != '"') return;
    for (std::size_t at = 1; at + 1 < token.size();) {
        const std::size_t from = at;
        if (token[at] != '\\') {
            inner_ += token[at++];
        } else if (token[at + 1] != 'u') {
            inner_ += unescaped(token[at + 1]);
            at += 2;
        } else {
            auto character = hexadecimal(token.substr(at + 2, 4));
            at += 6;
            if (isHighSurrogate(character) && at + 6 <= token.size()) {
                const auto low = hexadecimal(token.substr(at + 2, 4));
                character = 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00);
                at += 6;
            }
            appendUtf8(inner_, character);
        }
        origins_.resize(inner_.size(), start + from);
    }
    origins_.push_back(start + token.size() - 1);
}

TextPosition SettingsPlaces::ofInner(std::size_t offset) const {
    return positionOf(file_, origins_.empty() ? 0 : origins_[std::min(offset, origins_.size() - 1)]);
}

TextPosition SettingsPlaces::of(std::string_view path) const {
    const bool isInner =
        !origins_.empty() && path.starts_with(profilesKey) && path.size() > profilesKey.size();
    if (!isInner) return positionOf(file_, offsetOfJson(file_, path));
    return ofInner(offsetOfJson(inner_, path.substr(profilesKey.size())));
}

}  // namespace trelvan
