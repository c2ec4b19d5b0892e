#pragma once

#include "Desktop/Harness/XConnection.hpp"

#include <string_view>

namespace trelvan::desktop {

/// What an administrator does to the server's input devices with a tool; each call waits for the server and
/// throws std::runtime_error when there is no device of the name.

/// Puts a device onto the pointer, wherever it is now.
void attachToPointer(XConnection& connection, std::string_view name);
/// Takes a device off the pointer.
void detach(XConnection& connection, std::string_view name);
/// Switches a device off, as if it were pulled out, or on again.
void setEnabled(XConnection& connection, std::string_view name, bool on);
/// Holds a device by a grab of this connection, as a remapper does; false when it is not to be had.
bool grab(XConnection& connection, std::string_view name);

}  // namespace trelvan::desktop
