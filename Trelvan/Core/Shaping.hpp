#pragma once

#include <cstdint>
#include <utility>

namespace trelvan {

/// `value` × `factor`, rounded to the nearest whole number with halves away from zero. A movement that is not
/// zero never vanishes: it is at least one unit in its own direction.
[[nodiscard]] std::int64_t scaledDelta(std::int64_t value, double factor);

/// What `speed` (1.0 is the identity) and `acceleration` (0.0 to 1.0) make of a hand speed in units an event:
/// the factor on the movement.
[[nodiscard]] double pointerGain(double handSpeed, double speed, double acceleration);

/// The gain curve of pointer motion, with the fractions that whole deltas cannot carry.
struct PointerShaper {
    /// What earlier movements left over, in points; used above speed 1.0 only.
    double residualX = 0;
    double residualY = 0;

    /// The movement scaled for `speed` (1.0 is the identity) and `acceleration` (0.0 to 1.0: how low the hand
    /// speed is at which the full gain is reached).
    [[nodiscard]] std::pair<std::int64_t, std::int64_t> scale(std::int64_t deltaX, std::int64_t deltaY,
                                                              double speed, double acceleration);
};

}  // namespace trelvan
