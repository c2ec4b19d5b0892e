#pragma once

#include "Platform/Linux/Tap/PointerControl.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>

namespace trelvan {

/// Stops a function that fires more often than any hand can make it: as a rule another program turns what
/// the function does into the very button that it is mapped to.
///
/// A count for each button and each direction of the wheel rises by one each time and sinks steadily; at two
/// seconds' worth it trips. The fastest finger makes some 15 presses a second, twice that with a worn switch
/// that bounces. A wheel that spins freely brings some 125 turns a second for a moment, so it has more. Times
/// are the devices', in milliseconds, and may wrap around. Allocates nothing; not thread-safe.
class RateBreaker {
  public:
    static constexpr double pressesPerSecond = 30;
    static constexpr double turnsPerSecond = 200;
    /// How long the function then stays stopped.
    static constexpr std::uint32_t pause = 1000;

    /// A function of the control fired; whether that was once too often.
    [[nodiscard]] bool trips(const PointerControl& control, std::uint32_t now) {
        Count& count = countOf(control);
        const bool isWheel = std::holds_alternative<WheelDirection>(control);
        const double rate = isWheel ? turnsPerSecond : pressesPerSecond;
        const double sunk = rate * elapsed(count.last, now) / 1000;
        count.level = std::max(0.0, count.level - sunk) + 1;
        count.last = now;
        if (count.level <= 2 * rate) return false;
        count.level = 0;
        count.isStopped = true;
        return true;
    }

    /// Whether the function still pauses; once it does not, nothing is left of its having tripped.
    [[nodiscard]] bool isStopped(const PointerControl& control, std::uint32_t now) {
        Count& count = countOf(control);
        if (count.isStopped && elapsed(count.last, now) >= pause) count.isStopped = false;
        return count.isStopped;
    }

  private:
    struct Count {
        double level = 0;
        /// When the function fired last; while it is stopped, when it tripped.
        std::uint32_t last = 0;
        bool isStopped = false;
    };
    /// Never negative: times of two devices may come a little out of order.
    [[nodiscard]] static double elapsed(std::uint32_t from, std::uint32_t to) {
        constexpr std::uint32_t outOfOrder = 60'000;
        return from - to <= outOfOrder ? 0.0 : static_cast<double>(to - from);
    }
    [[nodiscard]] Count& countOf(const PointerControl& control) {
        if (const auto* number = std::get_if<std::int64_t>(&control))
            return buttons_[static_cast<std::size_t>(*number)];
        return wheel_[static_cast<std::size_t>(*std::get_if<WheelDirection>(&control))];
    }

    std::array<Count, highestPointerButton + 1> buttons_{};
    std::array<Count, wheelDirectionCount> wheel_{};
};

}  // namespace trelvan
