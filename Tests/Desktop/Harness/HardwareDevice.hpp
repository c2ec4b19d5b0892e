#pragma once

#include <filesystem>
#include <set>

namespace trelvan::desktop {

/// One device of the virtual desktop, driven as its hardware would drive it, through the server's inputtest
/// driver. Every call returns when the server has processed what was sent. Main thread.
class HardwareDevice {
  public:
    /// Connects to the driver's socket. Throws std::runtime_error when it is not there or speaks otherwise.
    explicit HardwareDevice(const std::filesystem::path& place);
    ~HardwareDevice();
    HardwareDevice(const HardwareDevice&) = delete;
    HardwareDevice& operator=(const HardwareDevice&) = delete;

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

    /// X key codes.
    void keyDown(int keyCode);
    void keyUp(int keyCode);
    void keyStroke(int keyCode);

    /// Lets everything go that is held.
    void releaseAll();

    /// Connects anew after the server switched the device off and on, which lets everything go.
    void reconnect();

  private:
    void connect();

    template <typename Event>
    void send(Event& event, int type);
    void button(int number, bool down);
    void key(int keyCode, bool down);
    void motion(int axis, double value);
    void sync();
    void receive(void* answer, std::size_t size);

    std::filesystem::path socket;
    int descriptor = -1;
    std::set<int> heldButtons;
    std::set<int> heldKeys;
};

}  // namespace trelvan::desktop
