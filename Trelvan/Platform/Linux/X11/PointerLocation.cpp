#include "Platform/Linux/X11/PointerLocation.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

Pixel pointerLocation(_XDisplay* display, unsigned long root) {
    Window itsRoot = 0;
    Window child = 0;
    int x = 0;
    int y = 0;
    int windowX = 0;
    int windowY = 0;
    unsigned modifiers = 0;
    XQueryPointer(display, root, &itsRoot, &child, &x, &y, &windowX, &windowY, &modifiers);
    return {.x = x, .y = y};
}

}  // namespace trelvan
