#pragma once

#include "Core/Model/RecordJson.hpp"
#include "Platform/Screens.hpp"
#include "Platform/UserDefaults.hpp"
#include "Tools/Simulate/ScriptLines.hpp"
#include "Utilities/Geometry.hpp"

#include <optional>
#include <vector>

/// What a device, a screen or a window can be: a line that says more is refused by the key.
namespace trelvan::script {

/// Points from the origin to which anything on screen reaches, in either direction.
inline constexpr double farthest = 1e6;

[[nodiscard]] json::Problem outOfReach(const Event& event);
[[nodiscard]] json::Problem outOfReach(const Pointer& pointer);
[[nodiscard]] json::Problem outOfReach(const PowerSource& source);

/// What keeps the numbers from being a rectangle; none when they are one.
[[nodiscard]] json::Problem notARectangle(const std::vector<double>& numbers);
/// Four numbers as a rectangle, at most `farthest` away and large.
template <typename Rectangle>
[[nodiscard]] json::Problem readRect(const std::vector<double>& numbers, Rectangle& rect) {
    if (auto problem = notARectangle(numbers)) return problem;
    rect = {numbers[0], numbers[1], numbers[2], numbers[3]};
    return std::nullopt;
}
[[nodiscard]] json::Problem readWindow(const Window& window, OwnWindow& result);

/// A stored value as a script writes it, read as a settings file is; bytes have no form of their own. None
/// for a list, an object and null.
[[nodiscard]] std::optional<DefaultsValue> storedValue(const json::Value& value);

}  // namespace trelvan::script
