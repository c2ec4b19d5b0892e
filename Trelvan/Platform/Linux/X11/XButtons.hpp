#pragma once

#include <cstdint>
#include <optional>

namespace trelvan {

/// Highest button number that the X protocol knows.
inline constexpr int highestXButton = 255;

/// Whether an X button is one of the four that stand for a turn of the wheel.
constexpr bool isWheelButton(int xButton) {
    return xButton >= 4 && xButton <= 7;
}

/// The Quartz number of an X button (1 left, 2 middle, 3 right, 8 and up the extra ones); none for the wheel.
constexpr std::optional<std::int64_t> quartzButton(int xButton) {
    if (xButton < 1 || xButton > highestXButton || isWheelButton(xButton)) return std::nullopt;
    switch (xButton) {
        case 1:
            return 0;
        case 2:
            return 2;
        case 3:
            return 1;
        default:
            return xButton - 5;
    }
}

/// The X button of a Quartz number; none where X has no such button.
constexpr std::optional<int> xButton(std::int64_t quartzNumber) {
    switch (quartzNumber) {
        case 0:
            return 1;
        case 1:
            return 3;
        case 2:
            return 2;
        default:
            break;
    }
    if (quartzNumber < 3 || quartzNumber + 5 > highestXButton) return std::nullopt;
    return static_cast<int>(quartzNumber + 5);
}

/// Lines of the wheel with the Quartz sign, up and left positive.
struct WheelLines {
    int vertical = 0;
    int horizontal = 0;
    friend bool operator==(const WheelLines&, const WheelLines&) = default;
};

/// The line that a press of a wheel button stands for; none for any other button.
constexpr std::optional<WheelLines> wheelLines(int xButton) {
    switch (xButton) {
        case 4:
            return WheelLines{.vertical = 1};
        case 5:
            return WheelLines{.vertical = -1};
        case 6:
            return WheelLines{.horizontal = 1};
        case 7:
            return WheelLines{.horizontal = -1};
        default:
            return std::nullopt;
    }
}

/// The X wheel button for a turn along an axis (1 vertical, 2 horizontal) with the Quartz sign, up and left
/// positive.
constexpr int wheelButton(int axis, bool positive) {
    if (axis == 1) return positive ? 4 : 5;
    return positive ? 6 : 7;
}

}  // namespace trelvan
