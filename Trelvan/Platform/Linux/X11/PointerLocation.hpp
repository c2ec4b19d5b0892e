#pragma once

#include "Platform/Linux/X11/EventOrigin.hpp"

struct _XDisplay;

namespace trelvan {

/// Knows where the pointer is. Main thread.
class PointerSource {
  public:
    virtual ~PointerSource() = default;

    [[nodiscard]] virtual Pixel pointer() const = 0;
};

/// Where the pointer is; asks the server.
[[nodiscard]] Pixel pointerLocation(_XDisplay* display, unsigned long root);

}  // namespace trelvan
