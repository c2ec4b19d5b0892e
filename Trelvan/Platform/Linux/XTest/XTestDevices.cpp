#include "Platform/Linux/XTest/XTestDevices.hpp"

#include "Platform/Linux/X11/X11.hpp"

#include <memory>
#include <string_view>

namespace trelvan {

namespace {

CodeSet readBits(const char* bits) {
    CodeSet result;
    for (int code = 0; code < 256; ++code) {
        if (x11::isSet(reinterpret_cast<const unsigned char*>(bits), 32, code))
            result.set(static_cast<std::size_t>(code));
    }
    return result;
}

}  // namespace

std::optional<int> xtestDevice(_XDisplay* display, XTestDevice which) {
    const bool isPointer = which == XTestDevice::pointer;
    const int use = isPointer ? XISlavePointer : XISlaveKeyboard;
    const std::string_view suffix = isPointer ? "XTEST pointer" : "XTEST keyboard";
    int count = 0;
    const std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)> devices(
        XIQueryDevice(display, XIAllDevices, &count), &XIFreeDeviceInfo);
    for (int index = 0; devices && index < count; ++index) {
        const XIDeviceInfo& info = devices.get()[index];
        if (info.use == use && std::string_view(info.name).ends_with(suffix)) return info.deviceid;
    }
    return std::nullopt;
}

DeviceState queryDeviceState(_XDisplay* display, int deviceId) {
    DeviceState result;
    XDevice* device = XOpenDevice(display, static_cast<XID>(deviceId));
    if (device == nullptr) return result;
    const std::unique_ptr<XDeviceState, decltype(&XFreeDeviceState)> state(XQueryDeviceState(display, device),
                                                                           &XFreeDeviceState);
    const XInputClass* each = state ? state->data : nullptr;
    for (int left = state ? state->num_classes : 0; left > 0; --left) {
        if (each->c_class == KeyClass) result.keys = readBits(reinterpret_cast<const XKeyState&>(*each).keys);
        if (each->c_class == ButtonClass) {
            result.buttons = readBits(reinterpret_cast<const XButtonState&>(*each).buttons);
        }
        each = reinterpret_cast<const XInputClass*>(reinterpret_cast<const char*>(each) + each->length);
    }
    XCloseDevice(display, device);
    return result;
}

}  // namespace trelvan
