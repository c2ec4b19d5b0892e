#pragma once

#include "Utilities/Geometry.hpp"

struct _XDisplay;

namespace trelvan {

/// Where the pointer is on the root window, in whole points from the top left; asks the server.
[[nodiscard]] Point pointerLocation(_XDisplay* display, unsigned long root);

}  // namespace trelvan
