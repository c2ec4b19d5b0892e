#pragma once

#include "Utilities/JsonText.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace trelvan {

/// Why a value could not be encoded or decoded.
struct CodingError {
    /// The keys that lead to the culprit, such as "[0].mappings[2].action"; empty for the whole.
    std::string path;
    /// What is wrong there, in English.
    std::string problem;
    /// Where the text stops being JSON, when that is what is wrong.
    std::optional<TextPosition> position = std::nullopt;

    /// Path or position and problem in one line, in English.
    [[nodiscard]] std::string text() const;

    /// The same error seen from the object or list that holds what it was found in.
    [[nodiscard]] CodingError inside(std::string_view key) &&;
    [[nodiscard]] CodingError inside(std::size_t index) &&;
};

/// A value, or why there is none.
template <typename T>
class Coded {
  public:
    Coded(T value) : content_(std::in_place_index<0>, std::move(value)) {}            // NOLINT: reads like T
    Coded(CodingError error) : content_(std::in_place_index<1>, std::move(error)) {}  // NOLINT: likewise

    explicit operator bool() const { return content_.index() == 0; }
    /// Only when there is a value.
    [[nodiscard]] T& operator*() { return *std::get_if<0>(&content_); }
    [[nodiscard]] const T& operator*() const { return *std::get_if<0>(&content_); }
    T* operator->() { return std::get_if<0>(&content_); }
    const T* operator->() const { return std::get_if<0>(&content_); }
    /// Only when there is no value.
    [[nodiscard]] const CodingError& error() const { return *std::get_if<1>(&content_); }

  private:
    std::variant<T, CodingError> content_;
};

}  // namespace trelvan
