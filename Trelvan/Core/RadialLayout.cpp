#include "Core/RadialLayout.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace trelvan {

namespace {

/// Raised to the margin first, lowered to the far margin then: on a screen smaller than the ring the far edge
/// wins.
double keptInside(double coordinate, double margin, double extent) {
    return std::min(std::max(coordinate, margin), extent - margin);
}

}  // namespace

RadialLayout RadialLayout::make(BottomLeftPoint pointer, const BottomLeftRect& screen, std::size_t entryCount,
                                double radius, double outerRingRadius) {
    const double margin = outerRingRadius + ringMargin;
    RadialLayout layout;
    const Point onOverlay = countedFromTop({pointer.x - screen.x, pointer.y}, screen.maxY());
    layout.centre = {keptInside(onOverlay.x, margin, screen.width),
                     keptInside(onOverlay.y, margin, screen.height)};
    const std::size_t shown = std::min(entryCount, maxEntries);
    for (std::size_t index = 0; index < shown; ++index) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(index) / static_cast<double>(shown) -
                             std::numbers::pi / 2;
        layout.entries.push_back(
            {layout.centre.x + radius * std::cos(angle), layout.centre.y + radius * std::sin(angle)});
    }
    return layout;
}

}  // namespace trelvan
