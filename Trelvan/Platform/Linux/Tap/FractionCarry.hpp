#pragma once

#include "Platform/TapEvent.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace trelvan {

/// Turns a stream of fractional amounts into whole ones without losing any: what is left of one goes to the
/// next.
class FractionCarry {
  public:
    /// The whole part of the amount and what was left before; truncated toward zero. A device that reports
    /// more than a tap event may carry is cut to that, and what is not a number is nothing.
    std::int64_t take(double amount) {
        // The server counts in 1/2^32; a sum that is whole but for rounding must come out whole.
        constexpr double rounding = 1e-6;
        constexpr auto largest = static_cast<double>(TapEvent::largestDelta);
        if (std::isnan(amount)) return 0;
        const double sum = std::clamp(rest_ + amount, -largest, largest);
        const double nearest = std::round(sum);
        const double whole = std::abs(sum - nearest) < rounding ? nearest : std::trunc(sum);
        rest_ = sum - whole;
        return static_cast<std::int64_t>(whole);
    }

    void reset() { rest_ = 0; }

  private:
    double rest_ = 0;
};

}  // namespace trelvan
