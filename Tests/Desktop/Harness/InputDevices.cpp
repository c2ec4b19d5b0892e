#include "Desktop/Harness/InputDevices.hpp"

#include "Desktop/Harness/Xlib.hpp"

#include <X11/Xatom.h>
#include <X11/extensions/XInput2.h>

#include <span>
#include <stdexcept>
#include <string>

namespace trelvan::desktop {
namespace {

struct Ids {
    int device = 0;
    int pointer = 0;
};

Ids find(XConnection& connection, std::string_view name) {
    Ids ids;
    int count = 0;
    XIDeviceInfo* devices = XIQueryDevice(connection.get(), XIAllDevices, &count);
    for (const XIDeviceInfo& device : std::span(devices, static_cast<std::size_t>(count))) {
        if (device.name == name) ids.device = device.deviceid;
        if (device.use == XIMasterPointer) ids.pointer = device.deviceid;
    }
    XIFreeDeviceInfo(devices);
    if (ids.device == 0) throw std::runtime_error("no input device " + std::string(name));
    return ids;
}

}  // namespace

void attachToPointer(XConnection& connection, std::string_view name) {
    const Ids ids = find(connection, name);
    XIAnyHierarchyChangeInfo change{};
    change.attach = {.type = XIAttachSlave, .deviceid = ids.device, .new_master = ids.pointer};
    XIChangeHierarchy(connection.get(), &change, 1);
    XSync(connection.get(), False);
}

void detach(XConnection& connection, std::string_view name) {
    XIAnyHierarchyChangeInfo change{};
    change.detach = {.type = XIDetachSlave, .deviceid = find(connection, name).device};
    XIChangeHierarchy(connection.get(), &change, 1);
    XSync(connection.get(), False);
}

void setEnabled(XConnection& connection, std::string_view name, bool on) {
    unsigned char value = on ? 1 : 0;
    XIChangeProperty(connection.get(), find(connection, name).device, connection.atom("Device Enabled"),
                     XA_INTEGER, 8, XIPropModeReplace, &value, 1);
    XSync(connection.get(), False);
}

bool grab(XConnection& connection, std::string_view name) {
    const int device = find(connection, name).device;
    unsigned char bits[XIMaskLen(XI_LASTEVENT)]{};
    XISetMask(bits, XI_ButtonPress);
    XIEventMask mask{.deviceid = device, .mask_len = sizeof bits, .mask = bits};
    return XIGrabDevice(connection.get(), device, connection.root(), CurrentTime, None, XIGrabModeAsync,
                        XIGrabModeAsync, False, &mask) == GrabSuccess;
}

}  // namespace trelvan::desktop
