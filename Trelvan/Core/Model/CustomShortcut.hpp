#pragma once

#include "Core/Model/RecordField.hpp"

#include <cstdint>
#include <string>
#include <tuple>

namespace trelvan {

/// A recorded keyboard shortcut.
struct CustomShortcut {
    /// Virtual key code of the key that is pressed.
    std::uint16_t keyCode = 0;
    /// Modifier flags recorded with the key; none for a bare key.
    std::uint64_t modifiersRawValue = 0;
    /// What the user reads, made once when the shortcut is recorded.
    std::string displayString;

    /// Whether nothing has been recorded: no key code, no modifiers, no text.
    [[nodiscard]] bool isEmpty() const {
        return keyCode == 0 && modifiersRawValue == 0 && displayString.empty();
    }

    static constexpr auto fields() {
        using Self = CustomShortcut;
        return std::tuple{
            required("keyCode", &Self::keyCode),
            required("modifiersRawValue", &Self::modifiersRawValue),
            required("displayString", &Self::displayString),
        };
    }
    friend bool operator==(const CustomShortcut& left, const CustomShortcut& right) {
        return equalFields(left, right);
    }
};

}  // namespace trelvan
