#include "Platform/UserDefaults.hpp"

#include <charconv>

namespace trelvan {

namespace {

bool isTrueText(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    if (text.empty()) return false;
    const char first = text.front();
    if (first == 'y' || first == 'Y' || first == 't' || first == 'T') return true;
    if (first == '+') text.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc::result_out_of_range || (error == std::errc{} && number != 0);
}

}  // namespace

std::optional<double> asDouble(const std::optional<DefaultsValue>& value) {
    if (!value) return std::nullopt;
    if (const auto* number = std::get_if<double>(&*value)) return *number;
    if (const auto* whole = std::get_if<std::int64_t>(&*value)) return static_cast<double>(*whole);
    if (const auto* truth = std::get_if<bool>(&*value)) return *truth ? 1.0 : 0.0;
    return std::nullopt;
}

std::optional<bool> looseBool(const std::optional<DefaultsValue>& value) {
    if (!value) return std::nullopt;
    if (const auto* text = std::get_if<std::string>(&*value)) return isTrueText(*text);
    return asDouble(value).value_or(0.0) != 0.0;
}

std::optional<std::string> asText(const std::optional<DefaultsValue>& value) {
    if (!value) return std::nullopt;
    const auto* text = std::get_if<std::string>(&*value);
    return text != nullptr ? std::optional{*text} : std::nullopt;
}

std::optional<bool> strictBool(const std::optional<DefaultsValue>& value) {
    const auto* truth = value ? std::get_if<bool>(&*value) : nullptr;
    return truth != nullptr ? std::optional{*truth} : std::nullopt;
}

std::optional<double> strictNumber(const std::optional<DefaultsValue>& value) {
    return strictBool(value) ? std::nullopt : asDouble(value);
}

}  // namespace trelvan
