#include "Core/Shaping.hpp"

#include "Utilities/Fatal.hpp"

#include <algorithm>
#include <cmath>

namespace trelvan {

namespace {

/// 2^63, the first magnitude past the 64-bit range.
constexpr double wholeLimit = 9223372036854775808.0;

std::int64_t rounded(double value) {
    const double nearest = std::round(value);
    if (!(nearest >= -wholeLimit && nearest < wholeLimit)) fatal("a scaled delta left the 64-bit range");
    return static_cast<std::int64_t>(nearest);
}

std::int64_t unitOf(std::int64_t value) {
    return value >= 1 ? 1 : -1;
}

std::int64_t squareSum(std::int64_t x, std::int64_t y) {
    std::int64_t squareX = 0;
    std::int64_t squareY = 0;
    std::int64_t sum = 0;
    if (__builtin_mul_overflow(x, x, &squareX) || __builtin_mul_overflow(y, y, &squareY) ||
        __builtin_add_overflow(squareX, squareY, &sum)) {
        fatal("the length of a movement left the 64-bit range");
    }
    return sum;
}

/// The scaled whole delta; `residual` takes the fraction. A movement that is not zero moves at least one
/// unit, and the residual is not corrected for that.
std::int64_t carried(std::int64_t delta, double gain, double& residual) {
    const double exact = residual + gain * static_cast<double>(delta);
    const std::int64_t whole = rounded(exact);
    residual = exact - static_cast<double>(whole);
    return delta != 0 && whole == 0 ? unitOf(delta) : whole;
}

}  // namespace

std::int64_t scaledDelta(std::int64_t value, double factor) {
    const std::int64_t result = rounded(static_cast<double>(value) * factor);
    return value != 0 && result == 0 ? unitOf(value) : result;
}

double pointerGain(double handSpeed, double speed, double acceleration) {
    if (speed <= 1.0) return speed;
    // Full gain from 28 units an event without acceleration down to 8 with all of it.
    const double reach = std::clamp(handSpeed / ((1.0 - acceleration) * 20.0 + 8.0), 0.0, 1.0);
    const double curve = std::pow(reach, (1.0 - acceleration) * 2.5 + 1.0);
    return curve * (speed - 1.0) + 1.0;
}

std::pair<std::int64_t, std::int64_t> PointerShaper::scale(std::int64_t deltaX, std::int64_t deltaY,
                                                           double speed, double acceleration) {
    if (speed <= 1.0) return {scaledDelta(deltaX, speed), scaledDelta(deltaY, speed)};
    const double magnitude = std::sqrt(static_cast<double>(squareSum(deltaX, deltaY)));
    const double gain = pointerGain(magnitude, speed, acceleration);
    return {carried(deltaX, gain, residualX), carried(deltaY, gain, residualY)};
}

}  // namespace trelvan
