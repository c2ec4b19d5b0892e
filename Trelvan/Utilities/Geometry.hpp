#pragma once

namespace trelvan {

/// Where y is 0, and so which way it grows: downwards from the top or upwards from the bottom. Places that
/// count differently have different types, so that none is taken for the other by mistake.
enum class Origin { topLeft, bottomLeft };

/// A place, in points.
template <Origin origin>
struct PointFrom {
    double x = 0;
    double y = 0;
    friend bool operator==(const PointFrom&, const PointFrom&) = default;
};

/// A rectangle in points. It owns its minimum edges but not its maximum ones.
template <Origin origin>
struct RectFrom {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double maxX() const { return x + width; }
    [[nodiscard]] constexpr double maxY() const { return y + height; }
    [[nodiscard]] constexpr bool contains(PointFrom<origin> point) const {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    friend bool operator==(const RectFrom&, const RectFrom&) = default;
};

/// Events, and the program's windows: from the upper left corner of the main screen.
using TopLeftPoint = PointFrom<Origin::topLeft>;
using TopLeftRect = RectFrom<Origin::topLeft>;
/// Screens: from the lower left corner of the main screen.
using BottomLeftPoint = PointFrom<Origin::bottomLeft>;
using BottomLeftRect = RectFrom<Origin::bottomLeft>;
/// What stands in a window, from its upper left corner.
using Point = TopLeftPoint;
using Rect = TopLeftRect;

/// The same place counted from the edge that lies at `top` instead: the height of the main screen makes an
/// event's location of a place on the screens.
constexpr TopLeftPoint countedFromTop(BottomLeftPoint place, double top) {
    return {.x = place.x, .y = top - place.y};
}
/// The way back.
constexpr BottomLeftPoint countedFromBottom(TopLeftPoint place, double top) {
    return {.x = place.x, .y = top - place.y};
}

}  // namespace trelvan
