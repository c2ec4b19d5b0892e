#pragma once

#include "Core/Model/RawRepresentable.hpp"
#include "Platform/RunLoop.hpp"

#include <array>
#include <optional>
#include <string_view>

namespace trelvan {

/// After how long Keep Awake switches itself off.
enum class AutoStopPreset { never, oneHour, twoHours, fourHours, eightHours, oneDay };

template <>
struct RawValueTable<AutoStopPreset> {
    static constexpr std::string_view noun = "an auto-stop preset";
    static constexpr std::array<std::string_view, 6> rawValues{"never",     "oneHour",    "twoHours",
                                                               "fourHours", "eightHours", "oneDay"};
};

/// None for `never`.
constexpr std::optional<Seconds> duration(AutoStopPreset preset) {
    switch (preset) {
        case AutoStopPreset::never:
            return std::nullopt;
        case AutoStopPreset::oneHour:
            return Seconds{3600};
        case AutoStopPreset::twoHours:
            return Seconds{7200};
        case AutoStopPreset::fourHours:
            return Seconds{14400};
        case AutoStopPreset::eightHours:
            return Seconds{28800};
        case AutoStopPreset::oneDay:
            return Seconds{86400};
    }
    return std::nullopt;
}

}  // namespace trelvan
