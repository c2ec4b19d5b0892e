#include "Platform/Linux/XTestPointerOutput.hpp"

#include "Platform/Linux/X11.hpp"
#include "Platform/Linux/XErrorScope.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

/// The protocol carries a movement as 16 bits an axis; no screen is wider.
int clamped(std::int64_t delta) {
    return static_cast<int>(std::clamp<std::int64_t>(delta, -32767, 32767));
}

/// The identifier of the server's XTEST pointer; none when it has no such device.
std::optional<XID> xtestPointer(Display* display) {
    int count = 0;
    const std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)> devices(
        XIQueryDevice(display, XIAllDevices, &count), &XIFreeDeviceInfo);
    for (int index = 0; devices && index < count; ++index) {
        const XIDeviceInfo& info = devices.get()[index];
        if (info.use == XISlavePointer && std::string_view(info.name).ends_with("XTEST pointer"))
            return static_cast<XID>(info.deviceid);
    }
    return std::nullopt;
}

}  // namespace

/// The XTEST pointer's button map. The device has few buttons (ten, as a rule), and the server drops events
/// of others; but a button's number for applications is what the map says, which can be any.
class XTestPointerOutput::Device {
  public:
    explicit Device(Display* display) : display_(display) {
        if (const auto id = xtestPointer(display)) device_ = XOpenDevice(display, *id);
        if (device_ == nullptr) return;
        buttonCount_ = readMap();
        // What a process that was killed had borrowed goes back.
        for (int place = 1; place <= buttonCount_; ++place) {
            if (map_[static_cast<std::size_t>(place) - 1] > buttonCount_) setNumber(place, place);
        }
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() {
        if (device_ != nullptr) XCloseDevice(display_, device_);
    }

    /// The protocol's most where it cannot be told.
    [[nodiscard]] int buttonCount() const { return buttonCount_; }

    /// Makes the place, which must be up, arrive as the number. The rest of the map stays as it is now,
    /// whoever set it.
    void setNumber(int place, int number) {
        if (device_ == nullptr) return;
        const XErrorScope errors(display_);
        const int count = readMap();
        if (place > count) return;
        map_[static_cast<std::size_t>(place) - 1] = static_cast<unsigned char>(number);
        XSetDeviceButtonMapping(display_, device_, map_.data(), count);
    }

  private:
    int readMap() { return std::max(0, XGetDeviceButtonMapping(display_, device_, map_.data(), 256)); }

    Display* display_;
    XDevice* device_ = nullptr;
    int buttonCount_ = 255;
    /// By place, counted from 0: the number that applications see.
    std::array<unsigned char, 256> map_{};
};

XTestPointerOutput::XTestPointerOutput(_XDisplay* display)
    : display_(display),
      device_(std::make_unique<Device>(display)),
      slots_(device_->buttonCount()),
      ledger_(display) {}

XTestPointerOutput::~XTestPointerOutput() {
    ledger_.releaseAll();
    for (const int place : slots_.lent()) device_->setNumber(place, place);
}

void XTestPointerOutput::button(int xButton, bool down) {
    const auto place = down ? slots_.press(xButton) : slots_.release(xButton);
    if (!place) {
        if (down && !std::exchange(reportedMissing_, true)) {
            AppLogger.warning(ShortText(
                "El servidor X no puede reenviar más botones a la vez; se pierde el botón ", xButton));
        }
        return;
    }
    const bool lent = *place != xButton;
    if (lent && down) device_->setNumber(*place, xButton);
    ledger_.button(*place, down);
    if (lent && !down) device_->setNumber(*place, *place);
}

void XTestPointerOutput::move(std::int64_t deltaX, std::int64_t deltaY) {
    XTestFakeRelativeMotionEvent(display_, clamped(deltaX), clamped(deltaY), CurrentTime);
}

void XTestPointerOutput::anchor(int x, int y) {
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
}

}  // namespace trelvan
