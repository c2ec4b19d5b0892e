#include "Platform/ButtonWatch.hpp"
#include "Platform/Linux/Tap/X11PointerDevices.hpp"
#include "Platform/Linux/X11/ModifierMap.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Platform/Linux/X11/XConnection.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

/// The signals that end the program, as something to wait for beside the server; -1 when it cannot be had.
/// They stay blocked: whoever waits ends the program by himself.
int openEndSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, number);
    const int descriptor = signalfd(-1, &set, SFD_CLOEXEC);
    // Without it they end the program in their own way.
    if (descriptor >= 0) sigprocmask(SIG_BLOCK, &set, nullptr);
    return descriptor;
}

class ButtonWatch {
  public:
    ButtonWatch(const XConnection& connection, const std::function<void(const SeenInput&)>& onInput)
        : connection_(connection), onInput_(onInput), modifiers_(ModifierMap::read(connection.display())) {
        x11::EventMask events(XIAllDevices, {XI_RawButtonPress, XI_HierarchyChanged});
        XISelectEvents(connection.display(), connection.root(), events.get(), 1);
        readDevices();
        XFlush(connection.display());
    }

    void drain() {
        Display* display = connection_.display();
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
            if (event.type != GenericEvent || event.xcookie.extension != connection_.inputOpcode()) continue;
            if (!XGetEventData(display, &event.xcookie)) continue;
            if (event.xcookie.evtype == XI_HierarchyChanged) {
                readDevices();
            } else {
                see(*static_cast<const XIRawEvent*>(event.xcookie.data));
            }
            XFreeEventData(display, &event.xcookie);
        }
    }

  private:
    struct Device {
        std::string name;
        bool isServed = false;
    };

    void readDevices() {
        const XErrorScope scope(connection_.display());
        const auto served = queryPointerDevices(connection_.display());
        devices_.clear();
        int count = 0;
        const std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)> list(
            XIQueryDevice(connection_.display(), XIAllDevices, &count), &XIFreeDeviceInfo);
        for (int index = 0; list && index < count; ++index) {
            const XIDeviceInfo& info = list.get()[index];
            const bool isPointer = info.use == XISlavePointer || info.use == XIFloatingSlave;
            const bool isServers = std::string_view(info.name).find("XTEST") != std::string_view::npos;
            if (!isPointer || isServers) continue;
            const bool isServed =
                std::ranges::find(served, info.deviceid, &X11PointerDevice::id) != served.end();
            devices_[info.deviceid] = {info.name, isServed};
        }
    }

    void see(const XIRawEvent& raw) {
        // The pointer that a device moves repeats what the device itself has said.
        const auto device = devices_.find(raw.deviceid);
        if (raw.deviceid != raw.sourceid || device == devices_.end()) return;
        XkbStateRec state{};
        XkbGetState(connection_.display(), XkbUseCoreKbd, &state);
        SeenInput input{.device = device->second.name,
                        .isServed = device->second.isServed,
                        .flags = modifiers_.flags(state.mods)};
        if (const auto number = quartzButton(raw.detail)) {
            input.buttonNumber = *number;
        } else {
            constexpr std::array turns{SeenInput::Kind::wheelUp, SeenInput::Kind::wheelDown,
                                       SeenInput::Kind::wheelLeft, SeenInput::Kind::wheelRight};
            if (!isWheelButton(raw.detail)) return;
            input.kind = turns[static_cast<std::size_t>(raw.detail - wheelButton(1, true))];
        }
        onInput_(input);
    }

    const XConnection& connection_;
    const std::function<void(const SeenInput&)>& onInput_;
    ModifierMap modifiers_;
    std::map<int, Device> devices_;
};

}  // namespace

std::optional<PlatformFailure> watchButtons(const std::function<void(const SeenInput&)>& onInput) {
    XErrorScope::install();
    auto opened = XConnection::open();
    if (auto* failure = std::get_if<PlatformFailure>(&opened)) return std::move(*failure);
    const auto& connection = *std::get<std::unique_ptr<XConnection>>(opened);
    const int endSignals = openEndSignals();
    ButtonWatch watch(connection, onInput);
    for (;;) {
        watch.drain();
        std::array<pollfd, 2> waiting{pollfd{connection.descriptor(), POLLIN, 0},
                                      pollfd{endSignals, POLLIN, 0}};
        if (poll(waiting.data(), waiting.size(), -1) > 0 && (waiting[1].revents & POLLIN) != 0) break;
    }
    close(endSignals);
    return std::nullopt;
}

}  // namespace trelvan
