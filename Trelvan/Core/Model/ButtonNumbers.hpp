#pragma once

#include <cstdint>

/// What the numbers of buttons say about them.
namespace trelvan {

/// The left and right buttons, which always keep their own clicks.
inline constexpr std::int64_t nonRemappableLeftButtonNumber = 0;
inline constexpr std::int64_t nonRemappableRightButtonNumber = 1;

/// The first button that is neither left nor right.
inline constexpr std::int64_t firstExtraButtonNumber = 2;

/// Scrolling up; the lower even numbers are further mappings of it.
inline constexpr std::int64_t scrollUpButtonNumber = -100;
/// Scrolling down; the lower odd numbers are further mappings of it.
inline constexpr std::int64_t scrollDownButtonNumber = -101;

/// Whether the number stands for a scroll direction rather than a button.
constexpr bool isScrollButton(std::int64_t number) {
    return number <= scrollUpButtonNumber;
}

/// Whether the number is even; for a scroll button, whether it is scrolled up.
constexpr bool isEvenButton(std::int64_t number) {
    return number % 2 == 0;
}

}  // namespace trelvan
