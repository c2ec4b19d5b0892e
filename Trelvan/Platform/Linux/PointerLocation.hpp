#pragma once

#include "Platform/Linux/EventOrigin.hpp"

struct _XDisplay;

namespace trelvan {

/// Where the pointer is; asks the server.
[[nodiscard]] Pixel pointerLocation(_XDisplay* display, unsigned long root);

}  // namespace trelvan
