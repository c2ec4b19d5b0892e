#include "Tools/Simulate/ScriptLimits.hpp"

#include "Platform/TapEvent.hpp"

#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

namespace trelvan::script {

using json::Problem;

namespace {

/// Buttons that any of the platforms tells apart.
constexpr std::int64_t lastButton = 255;
/// More than any power source holds, in whatever unit it counts.
constexpr double maxCharge = 1e9;

CodingError outOfRange(std::string_view key, std::string_view range) {
    return {std::string(key), "is out of range " + std::string(range)};
}

Problem checkPlace(std::string_view key, double coordinate) {
    if (std::abs(coordinate) <= farthest) return std::nullopt;
    return outOfRange(key, "-1000000..1000000");
}

Problem checkCharge(std::string_view key, double charge) {
    if (charge >= 0 && charge <= maxCharge) return std::nullopt;
    return outOfRange(key, "0..1000000000");
}

}  // namespace

Problem outOfReach(const Event& event) {
    const std::array<std::pair<std::string_view, std::int32_t>, 6> deltas{{{"dx", event.dx},
                                                                           {"dy", event.dy},
                                                                           {"scrollX", event.scrollX},
                                                                           {"scrollY", event.scrollY},
                                                                           {"pointX", event.pointX},
                                                                           {"pointY", event.pointY}}};
    for (const auto& [key, delta] : deltas) {
        // The other end is no problem for 32 bits.
        if (delta < -TapEvent::largestDelta) return outOfRange(key, "-2147483647..2147483647");
    }
    if (event.button < 0 || event.button > lastButton) return outOfRange("button", "0..255");
    if (auto problem = checkPlace("x", event.x.value_or(0))) return problem;
    return checkPlace("y", event.y.value_or(0));
}

Problem outOfReach(const Pointer& pointer) {
    if (auto problem = checkPlace("x", pointer.x)) return problem;
    return checkPlace("y", pointer.y);
}

Problem outOfReach(const PowerSource& source) {
    if (auto problem = checkCharge("current", source.current)) return problem;
    return checkCharge("max", source.max);
}

Problem notARectangle(const std::vector<double>& numbers) {
    if (numbers.size() != 4) return CodingError{"", "must be four numbers: x, y, width, height"};
    for (const double number : numbers) {
        if (auto problem = checkPlace("", number)) return problem;
    }
    if (numbers[2] < 0 || numbers[3] < 0) return CodingError{"", "has a negative width or height"};
    return std::nullopt;
}

Problem readWindow(const Window& window, OwnWindow& result) {
    if (auto problem = readRect(window.frame, result.frame)) return std::move(*problem).inside("frame");
    if (window.alpha < 0 || window.alpha > 1) return outOfRange("alpha", "0..1");
    result.visible = window.visible;
    result.alpha = window.alpha;
    return std::nullopt;
}

std::optional<DefaultsValue> storedValue(const json::Value& value) {
    if (value.is_boolean()) return value.get<bool>();
    if (value.is_string()) return value.get<std::string>();
    // A whole number beyond 64 bits with a sign is a double.
    if (value.is_number_integer() && (!value.is_number_unsigned() || value.get<std::uint64_t>() <= INT64_MAX))
        return value.get<std::int64_t>();
    if (value.is_number()) return value.get<double>();
    return std::nullopt;
}

}  // namespace trelvan::script
