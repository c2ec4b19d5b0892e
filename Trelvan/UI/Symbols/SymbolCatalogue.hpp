#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <string_view>

class QPainter;

namespace trelvan::symbols {

/// The symbol of that name as a shape in a square of side 1, to be filled; a ring for a name that is not
/// known. Shapes are made once.
[[nodiscard]] const QPainterPath& named(std::string_view name);
/// Whether there is a symbol of that name.
[[nodiscard]] bool isKnown(std::string_view name);

/// Fills the symbol in the largest square in the middle of the frame.
void draw(QPainter& painter, std::string_view name, const QRectF& frame, const QColor& color);

}  // namespace trelvan::symbols
