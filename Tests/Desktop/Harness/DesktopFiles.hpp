#pragma once

#include <filesystem>
#include <string>

namespace trelvan::desktop {

/// The mouse that `HotPlug` plugs in.
struct PluggedMouse {
    const char* socket;      ///< in the desktop's folder
    const char* devicePath;  ///< what the device manager says; nothing is there
    const char* name;        ///< in the server, which cannot ask the hardware
};
inline constexpr PluggedMouse pluggedMouse{"plugged", "/dev/input/event901", "(unnamed)"};

/// The server's configuration: one screen in memory, two mice, a tablet, a touch screen and a keyboard whose
/// sockets are in `folder` under the names of the devices.
std::string serverConfiguration(const std::filesystem::path& folder);

/// The window manager's: four desktops, and no key or button of its own that a test would miss.
std::string windowManagerConfiguration();

/// The session bus's: a socket at `socket`, and no service that could be started on demand.
std::string busConfiguration(const std::filesystem::path& socket);

/// A stand-in for xdg-open that only writes down what it was asked to open.
std::string recordingOpener(const std::filesystem::path& record);

}  // namespace trelvan::desktop
