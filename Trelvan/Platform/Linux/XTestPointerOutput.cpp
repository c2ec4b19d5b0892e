#include "Platform/Linux/XTestPointerOutput.hpp"

#include "Platform/Linux/X11.hpp"

#include <algorithm>

namespace trelvan {

namespace {

/// The protocol carries a movement as 16 bits an axis; no screen is wider.
int clamped(std::int64_t delta) {
    return static_cast<int>(std::clamp<std::int64_t>(delta, -32767, 32767));
}

}  // namespace

void XTestPointerOutput::move(std::int64_t deltaX, std::int64_t deltaY) {
    XTestFakeRelativeMotionEvent(display_, clamped(deltaX), clamped(deltaY), CurrentTime);
}

}  // namespace trelvan
