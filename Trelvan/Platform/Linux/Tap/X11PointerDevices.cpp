#include "Platform/Linux/Tap/X11PointerDevices.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace trelvan {

namespace {

using DeviceList = std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)>;

/// Properties that only touchpads, tablets or the server's own devices have.
constexpr std::array foreignProperties{"XTEST Device",    "libinput Tapping Enabled",
                                       "Synaptics Off",   "Synaptics Capabilities",
                                       "Wacom Tool Type", "Wacom Serial IDs"};

bool hasForeignProperty(Display* display, int id) {
    int count = 0;
    Atom* properties = XIListProperties(display, id, &count);
    if (properties == nullptr) return false;
    const std::unique_ptr<Atom, decltype(&XFree)> owner(properties, &XFree);
    return std::ranges::any_of(foreignProperties, [&](const char* name) {
        const Atom atom = XInternAtom(display, name, x11::yes);
        return atom != x11::none && std::find(properties, properties + count, atom) != properties + count;
    });
}

/// Fills what the classes say; false where the device is of another kind than a mouse.
bool readClasses(const XIDeviceInfo& info, X11PointerDevice& device) {
    bool hasX = false;
    bool hasY = false;
    bool hasButtons = false;
    for (int index = 0; index < info.num_classes; ++index) {
        const XIAnyClassInfo* any = info.classes[index];
        if (any->type == XITouchClass) return false;
        if (any->type == XIButtonClass) {
            const auto& buttons = reinterpret_cast<const XIButtonClassInfo&>(*any);
            hasButtons = buttons.num_buttons > 0;
            for (int bit = 0; bit < buttons.state.mask_len * 8; ++bit) {
                device.anyButtonDown |= x11::isSet(buttons.state.mask, buttons.state.mask_len, bit);
            }
        } else if (any->type == XIValuatorClass) {
            const auto& valuator = reinterpret_cast<const XIValuatorClassInfo&>(*any);
            if (valuator.number > 1) continue;
            if (valuator.mode != XIModeRelative) return false;
            (valuator.number == 0 ? hasX : hasY) = true;
            device.axes.push_back(
                {.number = valuator.number,
                 .kind = valuator.number == 0 ? PointerAxis::Kind::horizontal : PointerAxis::Kind::vertical});
        } else if (any->type == XIScrollClass) {
            const auto& scroll = reinterpret_cast<const XIScrollClassInfo&>(*any);
            if (scroll.increment == 0) continue;
            device.axes.push_back({.number = scroll.number,
                                   .kind = scroll.scroll_type == XIScrollTypeVertical
                                               ? PointerAxis::Kind::scrollVertical
                                               : PointerAxis::Kind::scrollHorizontal,
                                   .increment = scroll.increment});
        }
    }
    std::ranges::sort(device.axes, {}, &PointerAxis::number);
    return hasX && hasY && hasButtons;
}

std::optional<X11PointerDevice> examine(Display* display, const XIDeviceInfo& info) {
    if (info.use != XISlavePointer && info.use != XIFloatingSlave) return std::nullopt;
    if (!info.enabled) return std::nullopt;
    X11PointerDevice device;
    device.id = info.deviceid;
    device.name = info.name;
    device.attached = info.use == XISlavePointer;
    if (!readClasses(info, device) || hasForeignProperty(display, info.deviceid)) return std::nullopt;
    return device;
}

}  // namespace

bool X11PointerDevice::scrollsSmoothly() const {
    return std::ranges::any_of(axes, [](const PointerAxis& axis) {
        return axis.kind == PointerAxis::Kind::scrollVertical ||
               axis.kind == PointerAxis::Kind::scrollHorizontal;
    });
}

AxisMovement movementOf(const X11PointerDevice& device, const void* rawEvent) {
    const auto& raw = *static_cast<const XIRawEvent*>(rawEvent);
    AxisMovement moved;
    const double* value = raw.valuators.values;
    auto axis = device.axes.begin();
    for (int number = 0; number < raw.valuators.mask_len * 8; ++number) {
        if (!x11::isSet(raw.valuators.mask, raw.valuators.mask_len, number)) continue;
        const double amount = *value++;
        while (axis != device.axes.end() && axis->number < number) ++axis;
        if (axis == device.axes.end()) break;
        if (axis->number != number) continue;
        switch (axis->kind) {
            case PointerAxis::Kind::horizontal:
                moved.deltaX = amount;
                break;
            case PointerAxis::Kind::vertical:
                moved.deltaY = amount;
                break;
            case PointerAxis::Kind::scrollVertical:
                moved.vertical = -amount / axis->increment;
                break;
            case PointerAxis::Kind::scrollHorizontal:
                moved.horizontal = -amount / axis->increment;
                break;
        }
    }
    return moved;
}

std::vector<X11PointerDevice> queryPointerDevices(_XDisplay* display) {
    // A device can go away between two of the questions.
    const XErrorScope scope(display);
    std::vector<X11PointerDevice> devices;
    int count = 0;
    const DeviceList list(XIQueryDevice(display, XIAllDevices, &count), &XIFreeDeviceInfo);
    for (int index = 0; list && index < count; ++index) {
        if (auto device = examine(display, list.get()[index])) devices.push_back(std::move(*device));
    }
    return devices;
}

X11PointerDevice queryPointerDevice(_XDisplay* display, int id) {
    const XErrorScope scope(display);
    int count = 0;
    const DeviceList list(XIQueryDevice(display, id, &count), &XIFreeDeviceInfo);
    if (!list || count < 1) return {};
    return examine(display, *list).value_or(X11PointerDevice{});
}

}  // namespace trelvan
