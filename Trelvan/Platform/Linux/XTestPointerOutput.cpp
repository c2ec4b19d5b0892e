#include "Platform/Linux/XTestPointerOutput.hpp"

#include "Platform/Linux/X11.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

/// The protocol carries a movement as 16 bits an axis; no screen is wider.
int clamped(std::int64_t delta) {
    return static_cast<int>(std::clamp<std::int64_t>(delta, -32767, 32767));
}

/// How many buttons the server's XTEST pointer has; the protocol's most where it cannot be told.
int xtestButtonCount(Display* display) {
    constexpr int most = 255;
    int count = 0;
    const std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)> devices(
        XIQueryDevice(display, XIAllDevices, &count), &XIFreeDeviceInfo);
    for (int index = 0; devices && index < count; ++index) {
        const XIDeviceInfo& info = devices.get()[index];
        if (info.use != XISlavePointer || !std::string_view(info.name).ends_with("XTEST pointer")) continue;
        for (int each = 0; each < info.num_classes; ++each) {
            if (info.classes[each]->type != XIButtonClass) continue;
            return reinterpret_cast<const XIButtonClassInfo*>(info.classes[each])->num_buttons;
        }
    }
    return most;
}

}  // namespace

XTestPointerOutput::XTestPointerOutput(_XDisplay* display)
    : display_(display), ledger_(display), buttonCount_(xtestButtonCount(display)) {}

void XTestPointerOutput::button(int xButton, bool down) {
    if (xButton > buttonCount_) {
        if (!std::exchange(reportedMissing_, true)) {
            AppLogger.warning(ShortText("El servidor X no puede reenviar el botón ", xButton,
                                        " a las aplicaciones; puede tener una función asignada"));
        }
        return;
    }
    ledger_.button(xButton, down);
}

void XTestPointerOutput::move(std::int64_t deltaX, std::int64_t deltaY) {
    XTestFakeRelativeMotionEvent(display_, clamped(deltaX), clamped(deltaY), CurrentTime);
}

void XTestPointerOutput::anchor(int x, int y) {
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
}

}  // namespace trelvan
