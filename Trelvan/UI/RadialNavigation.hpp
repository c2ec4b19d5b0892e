#pragma once

#include "Utilities/Geometry.hpp"

#include <cstddef>
#include <optional>
#include <span>

namespace trelvan {

/// The way an arrow key points, with the origin at the top left.
enum class Arrow { left, right, up, down };

/// Which of the places on the ring an arrow key leads to from one of them, or from the middle when there is
/// none: what the eye would take, straight ahead before aside. None where nothing lies that way. Pure
/// arithmetic.
[[nodiscard]] std::optional<std::size_t> nextPlace(std::span<const Point> places, Point centre,
                                                   std::optional<std::size_t> from, Arrow arrow);

}  // namespace trelvan
