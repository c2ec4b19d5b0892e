#pragma once

#include "Platform/Quartz.hpp"

#include <cstddef>
#include <cstdint>
#include <variant>

namespace trelvan {

/// Highest Quartz button number that is followed; no device has as many.
inline constexpr std::int64_t highestPointerButton = 255;

/// Which way a wheel is turned, whatever that means to applications.
enum class WheelDirection : std::uint8_t { up, down, left, right };

inline constexpr std::size_t wheelDirectionCount = 4;

/// What fires functions on a pointer device: a button, by its Quartz number from 0 to `highestPointerButton`,
/// or a turn of the wheel.
using PointerControl = std::variant<std::int64_t, WheelDirection>;

/// The event type of a press or release of a Quartz button.
constexpr EventType buttonType(std::int64_t number, bool down) {
    if (number == 0) return down ? EventType::leftMouseDown : EventType::leftMouseUp;
    if (number == 1) return down ? EventType::rightMouseDown : EventType::rightMouseUp;
    return down ? EventType::otherMouseDown : EventType::otherMouseUp;
}

}  // namespace trelvan
