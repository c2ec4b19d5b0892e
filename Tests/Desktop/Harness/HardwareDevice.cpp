#include "Desktop/Harness/HardwareDevice.hpp"

#include "Desktop/Harness/Wait.hpp"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xorg/xf86-input-inputtest-protocol.h>

#include <cstring>
#include <stdexcept>
#include <utility>

namespace trelvan::desktop {
namespace {

constexpr int horizontalWheel = 2;
constexpr int verticalWheel = 3;
constexpr double notch = HardwareDevice::partsOfANotch;

void set(xf86ITValuatorData& data, int axis, double value) {
    const auto index = static_cast<std::size_t>(axis);
    data.mask[index / 8] = static_cast<std::uint8_t>(data.mask[index / 8] | 1U << index % 8);
    data.valuators[index] = value;
}

}  // namespace

HardwareDevice::HardwareDevice(const std::filesystem::path& socket) : path(socket) {
    reconnect();
}

void HardwareDevice::reconnect() {
    if (descriptor >= 0) ::close(descriptor);
    heldButtons.clear();
    heldKeys.clear();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof address.sun_path) throw std::runtime_error("socket path too long");
    std::strcpy(address.sun_path, path.c_str());
    descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto* target = reinterpret_cast<const sockaddr*>(&address);
    if (!waitUntil([&] { return ::connect(descriptor, target, sizeof address) == 0; })) {
        ::close(std::exchange(descriptor, -1));
        throw std::runtime_error("no input device at " + path.string());
    }
    const timeval bound{.tv_sec = 10, .tv_usec = 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);

    xf86ITEventClientVersion own{};
    own.major = XF86IT_PROTOCOL_VERSION_MAJOR;
    own.minor = XF86IT_PROTOCOL_VERSION_MINOR;
    send(own, XF86IT_EVENT_CLIENT_VERSION);
    xf86ITResponseServerVersion theirs{};
    receive(&theirs, sizeof theirs);
    if (theirs.header.type != XF86IT_RESPONSE_SERVER_VERSION || theirs.major != own.major) {
        throw std::runtime_error("the input device speaks another protocol");
    }
}

HardwareDevice::~HardwareDevice() {
    if (descriptor >= 0) ::close(descriptor);
}

template <typename Event>
void HardwareDevice::send(Event& event, int type) {
    event.header.length = sizeof event;
    event.header.type = static_cast<xf86ITEventType>(type);
    const auto* bytes = reinterpret_cast<const char*>(&event);
    for (std::size_t sent = 0; sent < sizeof event;) {
        const auto count = ::send(descriptor, bytes + sent, sizeof event - sent, MSG_NOSIGNAL);
        if (count <= 0) throw std::runtime_error("the input device was taken away");
        sent += static_cast<std::size_t>(count);
    }
}

void HardwareDevice::receive(void* answer, std::size_t size) {
    auto* bytes = static_cast<char*>(answer);
    for (std::size_t received = 0; received < size;) {
        const auto count = ::recv(descriptor, bytes + received, size - received, 0);
        if (count <= 0) throw std::runtime_error("the input device does not answer");
        received += static_cast<std::size_t>(count);
    }
}

void HardwareDevice::settle() {
    xf86ITEventWaitForSync wait{};
    send(wait, XF86IT_EVENT_WAIT_FOR_SYNC);
    xf86ITResponseSyncFinished finished{};
    receive(&finished, sizeof finished);
}

void HardwareDevice::move(int dx, int dy) {
    xf86ITEventMotion event{};
    set(event.valuators, 0, dx);
    set(event.valuators, 1, dy);
    send(event, XF86IT_EVENT_MOTION);
    sync();
}

void HardwareDevice::motion(int axis, double value) {
    xf86ITEventMotion event{};
    set(event.valuators, axis, value);
    send(event, XF86IT_EVENT_MOTION);
    sync();
}

void HardwareDevice::scrollVertical(int notches) {
    // The server counts down as positive.
    for (int turn = 0; turn < std::abs(notches); ++turn) motion(verticalWheel, notches > 0 ? -notch : notch);
}

void HardwareDevice::scrollHorizontal(int notches) {
    for (int turn = 0; turn < std::abs(notches); ++turn)
        motion(horizontalWheel, notches > 0 ? -notch : notch);
}

void HardwareDevice::scrollVerticalAtOnce(int notches) {
    motion(verticalWheel, -notch * notches);
}

void HardwareDevice::scrollParts(int up, int left) {
    xf86ITEventMotion event{};
    if (up != 0) set(event.valuators, verticalWheel, -up);
    if (left != 0) set(event.valuators, horizontalWheel, -left);
    send(event, XF86IT_EVENT_MOTION);
    sync();
}

void HardwareDevice::button(int number, bool down) {
    xf86ITEventButton event{};
    event.button = number;
    event.is_press = down ? 1 : 0;
    send(event, XF86IT_EVENT_BUTTON);
    sync();
}

void HardwareDevice::press(int number) {
    heldButtons.insert(number);
    button(number, true);
}

void HardwareDevice::release(int number) {
    heldButtons.erase(number);
    button(number, false);
}

void HardwareDevice::click(int number) {
    press(number);
    release(number);
}

void HardwareDevice::key(int keyCode, bool down) {
    xf86ITEventKey event{};
    event.key_code = keyCode;
    event.is_press = down ? 1 : 0;
    send(event, XF86IT_EVENT_KEY);
    sync();
}

void HardwareDevice::keyDown(int keyCode) {
    heldKeys.insert(keyCode);
    key(keyCode, true);
}

void HardwareDevice::keyUp(int keyCode) {
    heldKeys.erase(keyCode);
    key(keyCode, false);
}

void HardwareDevice::keyStroke(int keyCode) {
    keyDown(keyCode);
    keyUp(keyCode);
}

void HardwareDevice::releaseAll() {
    while (!heldButtons.empty()) release(*heldButtons.begin());
    while (!heldKeys.empty()) keyUp(*heldKeys.begin());
}

}  // namespace trelvan::desktop
