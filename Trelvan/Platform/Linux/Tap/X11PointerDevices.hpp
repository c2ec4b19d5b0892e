#pragma once

#include "Platform/Linux/Tap/PointerDevice.hpp"

#include <string>
#include <vector>

struct _XDisplay;

namespace trelvan {

/// One axis of a pointer device: what it moves, and how much of it is one line where it scrolls.
struct PointerAxis {
    enum class Kind { horizontal, vertical, scrollVertical, scrollHorizontal };
    int number = 0;
    Kind kind = Kind::horizontal;
    double increment = 1;
};

/// A mouse or trackball as the server knows it, with what the tap's pipeline keeps of it.
struct X11PointerDevice {
    int id = 0;
    std::string name;
    /// False for a device that another client holds or the user took off the pointer.
    bool attached = true;
    bool anyButtonDown = false;
    std::vector<PointerAxis> axes;
    /// The serial number of the request that took the device: events of an earlier one are of an earlier
    /// grab.
    unsigned long grabSerial = 0;

    PointerDevice state;

    [[nodiscard]] bool scrollsSmoothly() const;
};

/// What one raw event says of the device's axes: points, and lines with the Quartz sign.
struct AxisMovement {
    double deltaX = 0;
    double deltaY = 0;
    double vertical = 0;
    double horizontal = 0;
};

/// `rawEvent` is an XIRawEvent.
[[nodiscard]] AxisMovement movementOf(const X11PointerDevice& device, const void* rawEvent);

/// The server's pointer devices that a tap has to take: relative ones with buttons. Touchpads, tablets, touch
/// screens and the server's own XTEST devices are not among them.
[[nodiscard]] std::vector<X11PointerDevice> queryPointerDevices(_XDisplay* display);

/// The same for one device; its `id` is 0 when it is gone or is none of those.
[[nodiscard]] X11PointerDevice queryPointerDevice(_XDisplay* display, int id);

}  // namespace trelvan
