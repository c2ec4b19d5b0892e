#include "Platform/Linux/XTest/XTestButtonMap.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"
#include "Platform/Linux/XTest/XTestDevices.hpp"

#include <algorithm>

namespace trelvan {

/// The device opened for the older requests, which are the only ones that know button maps.
struct XTestButtonMap::Device {
    Device(Display* server, int id) : display(server), opened(XOpenDevice(server, static_cast<XID>(id))) {}
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() {
        if (opened != nullptr) XCloseDevice(display, opened);
    }
    Display* display;
    XDevice* opened;
};

XTestButtonMap::XTestButtonMap(_XDisplay* display) : display_(display) {
    if (const auto id = xtestDevice(display, XTestDevice::pointer)) {
        device_ = std::make_unique<Device>(display, *id);
        if (device_->opened == nullptr) device_.reset();
    }
    if (device_) buttonCount_ = readMap();
}

XTestButtonMap::~XTestButtonMap() = default;

int XTestButtonMap::readMap() {
    return std::max(0, XGetDeviceButtonMapping(display_, device_->opened, map_.data(), 256));
}

void XTestButtonMap::setNumber(int place, int number) {
    if (!device_) return;
    const XErrorScope errors(display_);
    const int count = readMap();
    if (place > count) return;
    map_[static_cast<std::size_t>(place) - 1] = static_cast<unsigned char>(number);
    XSetDeviceButtonMapping(display_, device_->opened, map_.data(), count);
}

void XTestButtonMap::restoreBeyond() {
    for (int place = 1; device_ && place <= buttonCount_; ++place) {
        if (map_[static_cast<std::size_t>(place) - 1] > buttonCount_) setNumber(place, place);
    }
}

}  // namespace trelvan
