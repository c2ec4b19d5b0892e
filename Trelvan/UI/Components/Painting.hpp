#pragma once

#include "UI/Components/Theme.hpp"

#include <QPainter>
#include <QRectF>

namespace trelvan {

/// A rounded box with a ground and an outline of one point that lies inside it. A radius larger than half its
/// smaller side gives round ends.
inline void drawBox(QPainter& painter, const QRectF& frame, double corner, const QColor& ground,
                    const QColor& edge) {
    const double limited = qMin(corner, qMin(frame.width(), frame.height()) / 2);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge.alpha() == 0 ? QPen(Qt::NoPen) : QPen(edge, 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), limited, limited);
}

/// The ring around what has the keyboard, just inside the frame.
inline void drawFocusRing(QPainter& painter, const QRectF& frame, double corner, const Theme& theme) {
    const double limited = qMin(corner, qMin(frame.width(), frame.height()) / 2);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), limited, limited);
}

}  // namespace trelvan
