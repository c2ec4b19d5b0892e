#include "Platform/Linux/XTest/PendingReleases.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"
#include "Platform/Linux/XTest/XTestButtonMap.hpp"
#include "Platform/Linux/XTest/XTestDevices.hpp"

namespace trelvan {

void release(_XDisplay* display, const PendingReleases& owed) {
    const XErrorScope scope(display);
    const auto downOn = [display](XTestDevice which) {
        const auto device = xtestDevice(display, which);
        return device ? queryDeviceState(display, *device) : DeviceState{};
    };
    const CodeSet buttons = owed.buttons & downOn(XTestDevice::pointer).buttons;
    const CodeSet keys = owed.keys & downOn(XTestDevice::keyboard).keys;
    for (unsigned code = 0; code < owed.keys.size(); ++code) {
        if (buttons.test(code)) XTestFakeButtonEvent(display, code, x11::no, CurrentTime);
        if (keys.test(code)) XTestFakeKeyEvent(display, code, x11::no, CurrentTime);
    }
    if (owed.lent.any()) {
        XTestButtonMap map(display);
        for (int place = 1; place < 256; ++place) {
            if (owed.lent.test(static_cast<std::size_t>(place))) map.setNumber(place, place);
        }
    }
    XSync(display, x11::no);
}

}  // namespace trelvan
