#pragma once

#include "Platform/Linux/XTest/SharedBits.hpp"

#include <optional>

struct _XDisplay;

namespace trelvan {

/// The server's own devices through which XTEST sends.
enum class XTestDevice { pointer, keyboard };

/// Its identifier; none when the server has no such device.
[[nodiscard]] std::optional<int> xtestDevice(_XDisplay* display, XTestDevice which);

/// What is down on one device, whichever it is; nothing when it cannot be asked. The caller scopes the error
/// of a device that is gone.
struct DeviceState {
    CodeSet buttons;
    CodeSet keys;
};
[[nodiscard]] DeviceState queryDeviceState(_XDisplay* display, int deviceId);

}  // namespace trelvan
