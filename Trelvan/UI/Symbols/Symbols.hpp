#pragma once

#include <QPainterPath>

/// The interface's own symbols as shapes in a square of side 1, to be filled. Crisp at any size.
namespace trelvan::symbols {

/// Nine rounded squares, three by three.
[[nodiscard]] QPainterPath grid();
/// A cross.
[[nodiscard]] QPainterPath cross();
/// A pencil, its point at the lower left.
[[nodiscard]] QPainterPath pencil();
/// A keyboard with its keys left out.
[[nodiscard]] QPainterPath keyboard();
/// A window with its title bar, for an application without an icon.
[[nodiscard]] QPainterPath window();

}  // namespace trelvan::symbols
