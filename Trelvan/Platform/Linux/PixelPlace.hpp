#pragma once

#include "Utilities/Geometry.hpp"

namespace trelvan {

/// The place of a pixel, counted from the top left, in the coordinates of the screens' frames, which count
/// from the bottom of the main screen. A frame owns its lower edge but not its upper one: the place lies a
/// little below the pixel's upper edge, so that the uppermost row of a screen is on that screen.
constexpr Point placeOfPixel(Point pixel, double bottomOfMainScreen) {
    constexpr double inside = 1.0 / 1024;
    return {.x = pixel.x, .y = bottomOfMainScreen - pixel.y - inside};
}

}  // namespace trelvan
