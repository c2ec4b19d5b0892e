#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// The text as a JSON string. Bytes that are not UTF-8 become the replacement character.
[[nodiscard]] std::string jsonText(std::string_view text);

/// The texts as a JSON list of strings.
[[nodiscard]] std::string jsonTexts(const std::vector<std::string>& texts);

/// Puts one JSON object together on one line, keys in the order given. Reused from line to line so that a
/// long trace costs no allocation.
class JsonLine {
  public:
    /// Starts a new object, forgetting the last one.
    void begin() {
        text_.assign(1, '{');
        first_ = true;
    }
    JsonLine& add(std::string_view key, std::string_view text) {
        startMember(key);
        quote(text);
        return *this;
    }
    JsonLine& add(std::string_view key, const char* text) { return add(key, std::string_view(text)); }
    JsonLine& add(std::string_view key, bool truth) {
        startMember(key);
        text_ += truth ? "true" : "false";
        return *this;
    }
    template <std::integral Number>
    requires(!std::same_as<Number, bool>) JsonLine& add(std::string_view key, Number number) {
        startMember(key);
        number_(number);
        return *this;
    }
    /// A whole number is written without a fraction, another one in as few digits as bring it back.
    JsonLine& add(std::string_view key, double number) {
        startMember(key);
        number_(number == 0 ? 0.0 : number);
        return *this;
    }
    /// Text that is JSON already.
    JsonLine& addRaw(std::string_view key, std::string_view json) {
        startMember(key);
        text_ += json;
        return *this;
    }
    /// The whole line with its line break.
    [[nodiscard]] std::string_view end() {
        text_ += "}\n";
        return text_;
    }

  private:
    void startMember(std::string_view key) {
        if (!first_) text_ += ',';
        first_ = false;
        quote(key);
        text_ += ':';
    }
    template <typename Number>
    void number_(Number number) {
        char digits[400];
        std::to_chars_result result{};
        if constexpr (std::floating_point<Number>) {
            result = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed);
        } else {
            result = std::to_chars(digits, digits + sizeof digits, number);
        }
        text_.append(digits, result.ptr);
    }
    void quote(std::string_view text);

    std::string text_;
    bool first_ = true;
};

}  // namespace trelvan
