#pragma once

#include "Core/Model/SmartButton.hpp"
#include "Platform/Workspace.hpp"

#include <QPixmap>

namespace trelvan {

/// The picture of an entry of the radial menu: its own icon file, else the application's icon. A null one
/// when there is neither, or it cannot be read. `side` in points, `ratio` real pixels a point; an image file
/// of whatever size is brought to that size, so that no menu holds more. Main thread; reads files.
[[nodiscard]] QPixmap entryIcon(const SmartButtonApp& app, const Workspace& workspace, int side, qreal ratio);

/// The image file at the path, as large as it fits into the square; a null pixmap when it is no image.
[[nodiscard]] QPixmap imageIcon(const QString& path, int side, qreal ratio);

}  // namespace trelvan
