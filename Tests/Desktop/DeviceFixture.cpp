#include "Desktop/DeviceFixture.hpp"

namespace trelvan::desktop {

void DeviceFixture::SetUp() {
    DesktopTest::SetUp();
    devices = std::make_unique<InputDevices>(desktop().displayName());
}

void DeviceFixture::TearDown() {
    for (const char* name : {"trackball", "mouse"}) {
        if (!devices->isPresent(name)) plugIn(name);
        devices->letGo(name);
        devices->setButtonMap(name, {1, 2, 3});
        for (const char* property : foreignProperties) devices->removeProperty(name, property);
    }
    DesktopTest::TearDown();
    devices.reset();
}

void DeviceFixture::plugIn(const std::string& name) {
    devices->setPresent(name, true);
    (name == "mouse" ? mouse() : trackball()).reconnect();
}

bool DeviceFixture::isTaken(const std::string& name, int times) {
    return program().lines("Dispositivo capturado: " + name) >= times && devices->isOffThePointer(name);
}

}  // namespace trelvan::desktop
