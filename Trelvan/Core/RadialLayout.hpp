#pragma once

#include "Utilities/Geometry.hpp"

#include <cstddef>
#include <vector>

namespace trelvan {

/// Where everything of the radial menu stands, in points of the overlay with its origin at the top left.
/// Pure arithmetic; knows nothing of windows.
struct RadialLayout {
    /// More entries than this are not shown.
    static constexpr std::size_t maxEntries = 8;
    /// Distance of the entries' centres from the menu's centre.
    static constexpr double defaultRadius = 138;
    /// Radius of the ring behind the entries.
    static constexpr double defaultOuterRingRadius = 230;
    /// What is left free between the ring and the edge of the overlay.
    static constexpr double ringMargin = 18;
    static constexpr double entrySize = 64;
    static constexpr double captionWidth = 120;
    static constexpr double centreSize = 96;

    /// The overlay covers the screen.
    [[nodiscard]] static RadialLayout make(BottomLeftPoint pointer, const BottomLeftRect& screen,
                                           std::size_t entryCount, double radius = defaultRadius,
                                           double outerRingRadius = defaultOuterRingRadius);

    Point centre;
    /// The centres of the entries shown: the first straight above the centre, the others clockwise.
    std::vector<Point> entries;
};

}  // namespace trelvan
