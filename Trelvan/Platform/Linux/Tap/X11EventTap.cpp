#include "Platform/Linux/Tap/X11EventTap.hpp"

#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"
#include "Utilities/Logger.hpp"

#include <malloc.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

/// How long until a device that could not be taken is tried again: one that another client holds, and one
/// whose button was down.
constexpr Seconds retryHeld{1.0};
constexpr Seconds retryBusy{0.1};

/// The tracked location is compared with the server's this often while the pointer moves: barriers, warps and
/// other devices move it behind the tap's back.
constexpr std::chrono::milliseconds syncInterval{100};

/// With so many events waiting the location is asked for less often: each question takes as long as the
/// server has other things to do.
constexpr int someWaiting = 64;
constexpr std::chrono::milliseconds busySyncInterval{5};

/// No hand makes the program fall so far behind, and two mice with 8,000 movements a second do not until the
/// guard takes them away. From then on new presses and turns are left out until the rest is done.
constexpr int tooManyWaiting = 8'192;
constexpr int fewWaiting = tooManyWaiting / 4;
/// The memory of so many goes back to the system once they are done; no ordinary day needs it.
constexpr int worthGivingBack = 1'024;

static_assert(*quartzButton(highestXButton) <= highestPointerButton);

std::string_view logName(WheelDirection direction) {
    switch (direction) {
        case WheelDirection::up:
            return "arriba";
        case WheelDirection::down:
            return "abajo";
        case WheelDirection::left:
            return "la izquierda";
        case WheelDirection::right:
            return "la derecha";
    }
    return {};
}

}  // namespace

X11EventTap::X11EventTap(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity,
                         Timers& timers, PressedState& page, const EventOrigin& origin)
    : pump_(pump),
      modifiers_(modifiers),
      activity_(activity),
      timers_(timers),
      page_(page),
      window_(pump.connection(), page),
      output_(pump.connection().display(), page),
      pipeline_(output_, page.freed, origin) {
    pipeline_.onRunaway = [this](const PointerControl& control) { runaway(control); };
    pump_.add(*this);
}

X11EventTap::~X11EventTap() {
    remove();
    pump_.remove(*this);
}

void X11EventTap::runaway(const PointerControl& control) const {
    constexpr std::string_view tooFast = " se dispara más rápido que ninguna mano; se detiene un segundo";
    if (const auto* number = std::get_if<std::int64_t>(&control)) {
        AppLogger.warning(InlineText("La función del botón ", *number, tooFast));
    } else if (const auto* direction = std::get_if<WheelDirection>(&control)) {
        AppLogger.warning(InlineText("La función de la rueda hacia ", logName(*direction), tooFast));
    }
    if (onRunaway) onRunaway();
}

bool X11EventTap::create(std::uint64_t mask, Callback callback, void* userInfo) {
    if (created_) return false;
    XErrorScope scope(pump_.connection().display());
    x11::EventMask events(XIAllDevices, {XI_HierarchyChanged, XI_DeviceChanged});
    XISelectEvents(pump_.connection().display(), pump_.connection().root(), events.get(), 1);
    if (scope.failed()) return false;
    pipeline_.connect(mask, callback, userInfo);
    created_ = true;
    return true;
}

void X11EventTap::enable(bool on) {
    if (!created_ || enabled_ == on) return;
    enabled_ = on;
    if (on) {
        page_.freed = 0;
        window_.show();
        readBounds();
        syncLocation();
        scan();
    } else {
        ungrabAll();
    }
}

void X11EventTap::remove() {
    if (!created_) return;
    enable(false);
    x11::EventMask nothing(XIAllDevices, {});
    XISelectEvents(pump_.connection().display(), pump_.connection().root(), nothing.get(), 1);
    pipeline_.connect(0, nullptr, nullptr);
    window_.close();
    created_ = false;
}

void X11EventTap::yield(bool on) {
    if (yielding_ == on) return;
    yielding_ = on;
    if (!enabled_) return;
    if (on) {
        ungrabAll();
    } else {
        scan();
    }
}

void X11EventTap::recover() {
    page_.freed = 0;
    if (!enabled_) return;
    // What was pressed through the tap has been released; the devices' own account starts anew.
    enable(false);
    pipeline_.report(EventType::tapDisabledByTimeout);
}

X11EventTap::Devices::iterator X11EventTap::position(int deviceId) {
    return std::ranges::find(devices_, deviceId, [](const auto& each) { return each->id; });
}

X11PointerDevice* X11EventTap::find(int deviceId) {
    const auto device = position(deviceId);
    return device == devices_.end() ? nullptr : device->get();
}

void X11EventTap::scan() {
    if (!enabled_ || yielding_) return;
    retry_.reset();
    denied_ = false;
    auto present = queryPointerDevices(pump_.connection().display());
    for (std::size_t index = devices_.size(); index > 0; --index) {
        const int id = devices_[index - 1]->id;
        if (std::ranges::find(present, id, &X11PointerDevice::id) == present.end()) forget(id);
    }
    bool anyHeld = false;
    bool anyBusy = false;
    for (auto& device : present) {
        if (find(device.id) != nullptr) continue;
        // A press begun before the grab would be left without its release.
        if (device.anyButtonDown) {
            anyBusy = true;
        } else if (!take(device)) {
            anyHeld = true;
        }
    }
    if (anyHeld || anyBusy) retry_ = timers_.once(anyBusy ? retryBusy : retryHeld, [this] { scan(); });
}

void X11EventTap::forget(int deviceId) {
    const auto device = position(deviceId);
    if (device == devices_.end()) return;
    AppLogger.info(InlineText("Dispositivo retirado: ", (*device)->name));
    pipeline_.letGo((*device)->state);
    leaving_.push_back(std::move(*device));
    devices_.erase(device);
}

bool X11EventTap::take(X11PointerDevice& device) {
    if (!grab(device)) return false;
    std::erase(reported_, device.name);
    const auto now = queryPointerDevice(pump_.connection().display(), device.id);
    // A floating device that nobody holds was taken off the pointer on purpose; it stays off.
    const bool wanted = device.attached && now.id != 0;
    if (!wanted || now.anyButtonDown) {
        XIUngrabDevice(pump_.connection().display(), device.id, CurrentTime);
        return !wanted;
    }
    AppLogger.info(InlineText("Dispositivo capturado: ", device.name));
    devices_.push_back(std::make_unique<X11PointerDevice>(std::move(device)));
    syncLocation();
    activity_.noteOwnMove();
    const Pixel place = pipeline_.location();
    output_.anchor(place.x, place.y);
    return true;
}

bool X11EventTap::grab(X11PointerDevice& device) {
    Display* display = pump_.connection().display();
    XErrorScope scope(display);
    // Movement comes raw: accelerated by the server, in fractions, and not cut off at the edge of the screen.
    // Buttons do not: only the ordinary event has been through the device's button map.
    x11::EventMask events(device.id, {XI_RawMotion, XI_ButtonPress, XI_ButtonRelease});
    device.grabSerial = NextRequest(display);
    const int status = XIGrabDevice(display, device.id, window_.id(), CurrentTime, x11::none, XIGrabModeAsync,
                                    XIGrabModeAsync, x11::no, events.get());
    const int error = scope.error();
    denied_ = denied_ || error == BadAccess;
    if (status == AlreadyGrabbed) reportHeld(device);
    return status == x11::success && error == 0;
}

void X11EventTap::reportHeld(const X11PointerDevice& device) {
    if (std::ranges::find(reported_, device.name) != reported_.end()) return;
    reported_.push_back(device.name);
    AppLogger.warning(InlineText("Otro programa retiene el dispositivo ", device.name, "; se reintentará"));
}

void X11EventTap::ungrab(X11PointerDevice& device) {
    const XErrorScope scope(pump_.connection().display());
    // First the releases: back on the pointer, the device's own release of a button that is up changes
    // nothing.
    pipeline_.letGo(device.state);
    XIUngrabDevice(pump_.connection().display(), device.id, CurrentTime);
}

void X11EventTap::giveBack(int deviceId) {
    const auto device = position(deviceId);
    if (device == devices_.end()) return;
    ungrab(**device);
    leaving_.push_back(std::move(*device));
    devices_.erase(device);
}

void X11EventTap::ungrabAll() {
    retry_.reset();
    reported_.clear();
    for (auto& device : devices_) {
        ungrab(*device);
        leaving_.push_back(std::move(device));
    }
    devices_.clear();
    XSync(pump_.connection().display(), x11::no);
}

void X11EventTap::refreshAxes(int deviceId) {
    auto* device = find(deviceId);
    if (device == nullptr) return;
    auto now = queryPointerDevice(pump_.connection().display(), deviceId);
    if (now.id != 0) device->axes = std::move(now.axes);
}

void X11EventTap::handle(_XEvent& event) {
    if (depth_ == 0) leaving_.clear();
    // One writer: a load and a store cost less than an atomic sum.
    page_.handled.store(page_.handled.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    window_.answer(event);
    if (depth_ == 0 && (window_.isLost(event) || page_.freed.load(std::memory_order_relaxed) != 0)) recover();
    if (event.type == ConfigureNotify && event.xconfigure.window == pump_.connection().root()) {
        setSize(event.xconfigure.width, event.xconfigure.height);
    }
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    if (event.xcookie.data == nullptr || !enabled_) return;
    ++depth_;
    if (event.xcookie.evtype == XI_HierarchyChanged) {
        hierarchyChanged(event.xcookie.data);
    } else if (event.xcookie.evtype == XI_DeviceChanged) {
        refreshAxes(static_cast<const XIDeviceChangedEvent*>(event.xcookie.data)->deviceid);
    } else {
        inputEvent(event.xcookie.evtype, event.xcookie.data);
    }
    --depth_;
}

void X11EventTap::inputEvent(int type, const void* data) {
    switch (type) {
        case XI_RawMotion:
            rawMotion(data);
            break;
        case XI_ButtonPress:
            buttonEvent(data, true);
            break;
        case XI_ButtonRelease:
            buttonEvent(data, false);
            break;
        default:
            break;
    }
}

void X11EventTap::hierarchyChanged(const void* data) {
    const auto& change = *static_cast<const XIHierarchyEvent*>(data);
    constexpr int gone = XISlaveRemoved | XIDeviceDisabled;
    constexpr int relevant = XISlaveAdded | XISlaveAttached | XIDeviceEnabled | gone;
    for (const auto& info : std::span(change.info, static_cast<std::size_t>(change.num_info))) {
        const X11PointerDevice* device = find(info.deviceid);
        // What happened before the grab was seen by it. The number may have been another device's then.
        if (device == nullptr || change.serial < device->grabSerial) continue;
        if (info.flags & XISlaveAttached) giveBack(info.deviceid);
        if (info.flags & gone) forget(info.deviceid);
    }
    if (change.flags & relevant) scan();
}

void X11EventTap::rawMotion(const void* data) {
    const auto& raw = *static_cast<const XIRawEvent*>(data);
    X11PointerDevice* device = find(raw.deviceid);
    if (device == nullptr || raw.serial < device->grabSerial) return;
    const auto [deltaX, deltaY, vertical, horizontal] = movementOf(*device, data);
    const EventStamp moment = stamp(raw.time);
    const auto now = std::chrono::steady_clock::now();
    if (deltaX != 0 || deltaY != 0) {
        activity_.note(EventType::mouseMoved, now);
        if (now - lastSync_ > syncInterval) syncLocation();
        pipeline_.motion(device->state, moment, deltaX, deltaY);
    }
    if ((vertical == 0 && horizontal == 0) || find(raw.deviceid) != device) return;
    activity_.note(EventType::scrollWheel, now);
    if (isOverrun()) return;
    syncLocationForPress();
    pipeline_.scroll(device->state, moment, vertical, horizontal);
}

void X11EventTap::buttonEvent(const void* data, bool down) {
    const auto& event = *static_cast<const XIDeviceEvent*>(data);
    X11PointerDevice* device = find(event.deviceid);
    if (device == nullptr || event.serial < device->grabSerial) return;
    if (isOverrun() && down) return;
    const EventStamp moment = stamp(event.time);
    syncLocationForPress();
    if (const auto number = quartzButton(event.detail)) {
        activity_.note(buttonType(*number, down));
        pipeline_.button(device->state, moment, *number, down);
        return;
    }
    // Where the wheel has axes of its own, these buttons only echo them.
    const auto lines = wheelLines(event.detail);
    if (!down || !lines) return;
    if ((event.flags & XIPointerEmulated) != 0 || device->scrollsSmoothly()) return;
    activity_.note(EventType::scrollWheel);
    pipeline_.scroll(device->state, moment, lines->vertical, lines->horizontal);
}

EventStamp X11EventTap::stamp(unsigned long time) const {
    return {.time = static_cast<std::uint32_t>(time), .flags = modifiers_.flags()};
}

bool X11EventTap::isOverrun() {
    const int waiting = pump_.waiting();
    if (waiting > tooManyWaiting && !overrun_) {
        overrun_ = true;
        if (!std::exchange(reportedOverrun_, true))
            AppLogger.warning("Llegan más pulsaciones de las que se pueden atender; algunas se pierden");
    } else if (waiting < fewWaiting) {
        overrun_ = false;
    }
    pileUp_ = std::max(pileUp_, waiting);
    if (waiting == 0 && pileUp_ > worthGivingBack) {
        pileUp_ = 0;
        malloc_trim(0);
    }
    return overrun_;
}

void X11EventTap::syncLocationForPress() {
    const bool isBusy = pump_.waiting() > someWaiting;
    if (!isBusy || std::chrono::steady_clock::now() - lastSync_ > busySyncInterval) syncLocation();
}

void X11EventTap::readBounds() {
    Window root = 0;
    int x = 0;
    int y = 0;
    unsigned width = 0;
    unsigned height = 0;
    unsigned border = 0;
    unsigned depth = 0;
    XGetGeometry(pump_.connection().display(), pump_.connection().root(), &root, &x, &y, &width, &height,
                 &border, &depth);
    setSize(static_cast<int>(width), static_cast<int>(height));
}

void X11EventTap::setSize(int width, int height) {
    pipeline_.setLastPixel({.x = width - 1, .y = height - 1});
}

Pixel X11EventTap::pointer() const {
    if (pipeline_.isAsking()) return pipeline_.location();
    return pointerLocation(pump_.connection().display(), pump_.connection().root());
}

void X11EventTap::syncLocation() {
    pipeline_.pointerIsAt(pointerLocation(pump_.connection().display(), pump_.connection().root()));
    lastSync_ = std::chrono::steady_clock::now();
}

}  // namespace trelvan
