#pragma once

#include "Platform/Linux/Tap/FractionCarry.hpp"
#include "Platform/Linux/X11/XButtons.hpp"

#include <array>
#include <bitset>
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

/// A mouse or trackball as the tap sees it, with what is held and left over on it.
struct PointerDevice {
    int id = 0;
    std::string name;
    /// False for a device that another client holds or the user took off the pointer.
    bool attached = true;
    bool anyButtonDown = false;
    std::vector<PointerAxis> axes;

    FractionCarry restX, restY, restVertical, restHorizontal;
    /// Buttons that went down through the tap, and those of them that were passed on.
    std::bitset<highestXButton + 1> held, passed;
    /// Buttons that went down while their function was stopped; their release is nobody's business either.
    std::bitset<highestXButton + 1> muted;
    /// The serial number of the request that took the device: events of an earlier one are of an earlier
    /// grab.
    unsigned long grabSerial = 0;

    [[nodiscard]] bool scrollsSmoothly() const;
};

/// The server's pointer devices that a tap has to take: relative ones with buttons. Touchpads, tablets, touch
/// screens and the server's own XTEST devices are not among them.
[[nodiscard]] std::vector<PointerDevice> queryPointerDevices(_XDisplay* display);

/// The same for one device; its `id` is 0 when it is gone or is none of those.
[[nodiscard]] PointerDevice queryPointerDevice(_XDisplay* display, int id);

}  // namespace trelvan
