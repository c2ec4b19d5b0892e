#pragma once

#include <filesystem>
#include <set>

namespace trelvan::desktop {

/// One device of the virtual desktop, driven as its hardware would drive it, through the server's inputtest
/// driver. Every call returns when the server has processed what was sent, unless told otherwise. Main
/// thread.
class HardwareDevice {
  public:
    /// Connects to the driver's socket, which listens to one client only for as long as the device is there.
    /// Throws std::runtime_error when it is not there or speaks otherwise.
    explicit HardwareDevice(const std::filesystem::path& socket);
    ~HardwareDevice();
    HardwareDevice(const HardwareDevice&) = delete;
    HardwareDevice& operator=(const HardwareDevice&) = delete;

    /// Connects again after the server took the device away and back. It comes back with nothing held.
    void reconnect();

    /// Moves the pointer, in device units to the right and down.
    void move(int dx, int dy);

    /// X button numbers: 1 left, 2 middle, 3 right, 8 and up the extra ones.
    void press(int button);
    void release(int button);
    void click(int button);

    /// Turns the wheel by whole notches: positive is up, and to the left, one event each.
    void scrollVertical(int notches);
    void scrollHorizontal(int notches);
    /// As many notches up as a fast turn brings in one event.
    void scrollVerticalAtOnce(int notches);
    /// Turns the wheel by parts of a notch, all in one event; not both 0.
    void scrollParts(int up, int left);
    static constexpr int partsOfANotch = 120;

    /// Whether each call waits for the server. Without it a call returns when the event is sent, as fast
    /// hardware does not wait either; then `settle` now and then, for the server drops events when thousands
    /// wait.
    void setWaiting(bool on) { waits = on; }
    /// Returns when the server has processed everything that was sent.
    void settle();

    /// X key codes.
    void keyDown(int keyCode);
    void keyUp(int keyCode);
    void keyStroke(int keyCode);

    /// Lets everything go that is held.
    void releaseAll();

  private:
    template <typename Event>
    void send(Event& event, int type);
    void button(int number, bool down);
    void key(int keyCode, bool down);
    void motion(int axis, double value);
    void sync() {
        if (waits) settle();
    }
    void receive(void* answer, std::size_t size);

    std::filesystem::path path;
    int descriptor = -1;
    bool waits = true;
    std::set<int> heldButtons;
    std::set<int> heldKeys;
};

}  // namespace trelvan::desktop
