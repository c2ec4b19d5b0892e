#pragma once

#include <cmath>
#include <cstdint>

namespace trelvan {

/// Turns a stream of fractional amounts into whole ones without losing any: what is left of one goes to the
/// next.
class FractionCarry {
  public:
    /// The whole part of the amount and what was left before; truncated toward zero.
    std::int64_t take(double amount) {
        // The server counts in 1/2^32; a sum that is whole but for rounding must come out whole.
        constexpr double rounding = 1e-6;
        const double sum = rest_ + amount;
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
