#include "Desktop/Harness/InputDevices.hpp"

#include <X11/Xatom.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <stdexcept>

namespace trelvan::desktop {
namespace {

using DeviceList = std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)>;

/// One number, as a property of a device holds it.
void setByte(Display* display, int id, const char* property, unsigned char value) {
    XIChangeProperty(display, id, XInternAtom(display, property, False), XA_INTEGER, 8, PropModeReplace,
                     &value, 1);
    XSync(display, False);
}

}  // namespace

int InputDevices::find(const std::string& name) {
    int count = 0;
    const DeviceList devices(XIQueryDevice(server.get(), XIAllDevices, &count), &XIFreeDeviceInfo);
    for (const XIDeviceInfo& device : std::span(devices.get(), static_cast<std::size_t>(count))) {
        if (name == device.name) return device.deviceid;
    }
    return 0;
}

bool InputDevices::exists(const std::string& name) {
    return find(name) != 0;
}

int InputDevices::id(const std::string& name) {
    const int found = find(name);
    if (found == 0) throw std::runtime_error("the server has no device " + name);
    return found;
}

bool InputDevices::isOffThePointer(const std::string& name) {
    int count = 0;
    const DeviceList device(XIQueryDevice(server.get(), id(name), &count), &XIFreeDeviceInfo);
    return device && count == 1 && device->use == XIFloatingSlave;
}

void InputDevices::detach(const std::string& name) {
    XIAnyHierarchyChangeInfo change{};
    change.detach = {.type = XIDetachSlave, .deviceid = id(name)};
    XIChangeHierarchy(server.get(), &change, 1);
    XSync(server.get(), False);
}

void InputDevices::attachToPointer(const std::string& name) {
    int count = 0;
    int pointer = 0;
    const DeviceList devices(XIQueryDevice(server.get(), XIAllMasterDevices, &count), &XIFreeDeviceInfo);
    for (const XIDeviceInfo& device : std::span(devices.get(), static_cast<std::size_t>(count))) {
        if (device.use == XIMasterPointer) pointer = device.deviceid;
    }
    XIAnyHierarchyChangeInfo change{};
    change.attach = {.type = XIAttachSlave, .deviceid = id(name), .new_master = pointer};
    XIChangeHierarchy(server.get(), &change, 1);
    XSync(server.get(), False);
}

bool InputDevices::isPresent(const std::string& name) {
    int count = 0;
    const DeviceList device(XIQueryDevice(server.get(), id(name), &count), &XIFreeDeviceInfo);
    return device && count == 1 && device->enabled != False;
}

void InputDevices::setPresent(const std::string& name, bool on) {
    setByte(server.get(), id(name), "Device Enabled", on ? 1 : 0);
}

void InputDevices::addProperty(const std::string& name, const char* property) {
    setByte(server.get(), id(name), property, 0);
}

void InputDevices::removeProperty(const std::string& name, const char* property) {
    XIDeleteProperty(server.get(), id(name), server.atom(property));
    XSync(server.get(), False);
}

bool InputDevices::hold(const std::string& name) {
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    XISetMask(bits.data(), XI_ButtonPress);
    XIEventMask mask{.deviceid = id(name), .mask_len = static_cast<int>(bits.size()), .mask = bits.data()};
    return XIGrabDevice(server.get(), mask.deviceid, server.root(), CurrentTime, None, XIGrabModeAsync,
                        XIGrabModeAsync, False, &mask) == XIGrabSuccess;
}

void InputDevices::letGo(const std::string& name) {
    XIUngrabDevice(server.get(), id(name), CurrentTime);
    XSync(server.get(), False);
}

void InputDevices::setButtonMap(const std::string& name, const std::vector<unsigned char>& numbers) {
    const std::unique_ptr<XDevice, int (*)(XDevice*)> device(
        XOpenDevice(server.get(), static_cast<XID>(id(name))), [](XDevice* opened) {
            XFree(opened);
            return 0;
        });
    if (!device) throw std::runtime_error("the device " + name + " cannot be opened");
    std::array<unsigned char, 256> map{};
    const int count = XGetDeviceButtonMapping(server.get(), device.get(), map.data(), map.size());
    if (static_cast<std::size_t>(count) < numbers.size())
        throw std::runtime_error(name + " has fewer buttons");
    std::ranges::copy(numbers, map.begin());
    XSetDeviceButtonMapping(server.get(), device.get(), map.data(), count);
    XSync(server.get(), False);
}

}  // namespace trelvan::desktop
