#pragma once

#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/InputDevices.hpp"

#include <array>
#include <memory>
#include <string>

namespace trelvan::desktop {

/// A test that changes which devices there are and what they look like; everything is put back after it.
class DeviceFixture : public DesktopTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Pulls the plug of the trackball or the mouse, and puts it in again.
    void unplug(const std::string& name) { devices->setPresent(name, false); }
    void plugIn(const std::string& name);

    /// Whether the program has said that it took the device, and has it.
    [[nodiscard]] bool isTaken(const std::string& name, int times = 1);
    [[nodiscard]] bool waitUntilTaken(const std::string& name, int times = 1) {
        return waitUntil([&] { return isTaken(name, times); });
    }

    /// What the drivers of touchpads and tablets tell clients about their devices.
    static constexpr std::array foreignProperties{"libinput Tapping Enabled", "Synaptics Off",
                                                  "Synaptics Capabilities", "Wacom Tool Type",
                                                  "Wacom Serial IDs"};
    std::unique_ptr<InputDevices> devices;
};

}  // namespace trelvan::desktop
