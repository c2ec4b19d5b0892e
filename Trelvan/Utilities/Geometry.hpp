#pragma once

namespace trelvan {

/// A point in points; which corner is the origin is the owner's matter and is said there.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle in points. It owns its minimum edges but not its maximum ones.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double maxX() const { return x + width; }
    [[nodiscard]] constexpr double maxY() const { return y + height; }
    [[nodiscard]] constexpr bool contains(Point point) const {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace trelvan
