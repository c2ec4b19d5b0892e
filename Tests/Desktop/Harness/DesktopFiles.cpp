#include "Desktop/Harness/DesktopFiles.hpp"

#include "Desktop/Harness/VirtualDesktop.hpp"

namespace trelvan::desktop {
namespace {

std::string deviceOptions(const std::string& name, const std::string& type,
                          const std::filesystem::path& folder) {
    // No acceleration: one unit from the hardware is one pixel, so that a test can add them up.
    return "    Identifier \"" + name + "\"\n    Driver \"inputtest\"\n    Option \"SocketPath\" \"" +
           (folder / name).string() + "\"\n    Option \"DeviceType\" \"" + type +
           "\"\n    Option \"PointerButtonCount\" \"12\"\n    Option \"AccelerationScheme\" "
           "\"none\"\nEndSection\n";
}

std::string inputDevice(const std::string& name, const std::string& type,
                        const std::filesystem::path& folder) {
    return "Section \"InputDevice\"\n" + deviceOptions(name, type, folder);
}

/// The mouse that is not there at first, for when the device manager announces it.
std::string pluggedDevice(const std::filesystem::path& folder) {
    return "Section \"InputClass\"\n    MatchDevicePath \"" + std::string(pluggedMouse.devicePath) + "\"\n" +
           deviceOptions(pluggedMouse.socket, "Pointer", folder);
}

// AutoAddDevices stays on, although the server's seat has no other device: without it the server takes the
// key codes of another age, which no desktop of today has.
constexpr auto serverBasics = R"(Section "ServerFlags"
    Option "AutoAddGPU" "false"
    Option "DontVTSwitch" "true"
    Option "BlankTime" "0"
    Option "StandbyTime" "0"
    Option "SuspendTime" "0"
    Option "OffTime" "0"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 16384
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
    Modeline "1440x900" 106.50 1440 1528 1672 1904 900 903 909 934 -hsync +vsync
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "1440x900"
        Virtual 1440 900
    EndSubSection
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
    InputDevice "trackball" "CorePointer"
    InputDevice "mouse" "SendCoreEvents"
    InputDevice "tablet" "SendCoreEvents"
    InputDevice "touch screen" "SendCoreEvents"
    InputDevice "keyboard" "CoreKeyboard"
EndSection
)";

}  // namespace

std::string serverConfiguration(const std::filesystem::path& folder) {
    return serverBasics + inputDevice("trackball", "Pointer", folder) +
           inputDevice("mouse", "Pointer", folder) + inputDevice("tablet", "PointerAbsolute", folder) +
           inputDevice("touch screen", "Touch", folder) + inputDevice("keyboard", "Keyboard", folder) +
           pluggedDevice(folder);
}

std::string windowManagerConfiguration() {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <desktops><number>)" +
           std::to_string(VirtualDesktop::desktops) +
           R"(</number><firstdesk>1</firstdesk><popupTime>0</popupTime></desktops>
  <keyboard></keyboard>
  <mouse></mouse>
  <menu></menu>
</openbox_config>
)";
}

std::string busConfiguration(const std::filesystem::path& socket) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig>\n  <type>session</type>\n  <listen>unix:path=" +
           socket.string() +
           "</listen>\n  <policy context=\"default\">\n"
           "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n    <allow eavesdrop=\"true\"/>\n"
           "    <allow own=\"*\"/>\n  </policy>\n</busconfig>\n";
}

std::string recordingOpener(const std::filesystem::path& record) {
    return "#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + record.string() + "'\n";
}

}  // namespace trelvan::desktop
