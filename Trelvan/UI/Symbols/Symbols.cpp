#include "UI/Symbols/Symbols.hpp"

#include <QTransform>

namespace trelvan::symbols {

namespace {

/// A bar of the given size with round ends, its middle at the origin.
QPainterPath bar(double length, double width) {
    QPainterPath path;
    path.addRoundedRect(-length / 2, -width / 2, length, width, width / 2, width / 2);
    return path;
}

QPainterPath turned(const QPainterPath& path, double degrees) {
    QTransform transform;
    transform.translate(0.5, 0.5);
    transform.rotate(degrees);
    return transform.map(path);
}

}  // namespace

QPainterPath grid() {
    constexpr double size = 0.24;
    constexpr double step = 0.38;
    QPainterPath path;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            path.addRoundedRect(column * step, row * step, size, size, size * 0.28, size * 0.28);
    }
    return path;
}

QPainterPath cross() {
    return turned(bar(1.1, 0.17), 45).united(turned(bar(1.1, 0.17), -45));
}

QPainterPath pencil() {
    // Upright first: the rubber on top, the point below.
    QPainterPath body;
    body.addRoundedRect(-0.14, -0.6, 0.28, 0.2, 0.06, 0.06);
    body.addRect(-0.14, -0.34, 0.28, 0.62);
    QPainterPath point;
    point.moveTo(-0.14, 0.34);
    point.lineTo(0.14, 0.34);
    point.lineTo(0, 0.66);
    point.closeSubpath();
    body.addPath(point);
    return turned(body, 45);
}

QPainterPath keyboard() {
    QPainterPath path;
    path.addRoundedRect(0, 0.18, 1, 0.64, 0.1, 0.1);
    QPainterPath keys;
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 5; ++column)
            keys.addRoundedRect(0.1 + column * 0.165, 0.28 + row * 0.16, 0.11, 0.1, 0.025, 0.025);
    }
    keys.addRoundedRect(0.265, 0.62, 0.47, 0.09, 0.025, 0.025);
    return path.subtracted(keys);
}

QPainterPath window() {
    QPainterPath path;
    path.addRoundedRect(0.04, 0.1, 0.92, 0.8, 0.12, 0.12);
    QPainterPath inside;
    inside.addRoundedRect(0.12, 0.32, 0.76, 0.5, 0.05, 0.05);
    inside.addEllipse(QPointF(0.19, 0.21), 0.045, 0.045);
    inside.addEllipse(QPointF(0.32, 0.21), 0.045, 0.045);
    return path.subtracted(inside);
}

}  // namespace trelvan::symbols
