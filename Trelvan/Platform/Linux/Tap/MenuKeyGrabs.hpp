#pragma once

#include "Platform/Linux/XTest/PressedState.hpp"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

struct xcb_connection_t;

namespace trelvan {

/// The menu's keys: passive grabs on a connection of their own, which has nothing else on it.
///
/// No client can take a passive grab from another, but any client can end another's connection; so the guard
/// gives the keys back when this process hangs. The connection is made for the first menu, and again after
/// that. XCB rather than Xlib has it, whose answer to a connection that ends is to end the process.
class MenuKeyGrabs {
  public:
    /// A key with exactly these modifiers, in the core protocol's bits.
    struct Combination {
        int keycode = 0;
        unsigned modifiers = 0;
        friend bool operator==(const Combination&, const Combination&) = default;
    };
    struct KeyEvent {
        int keycode = 0;
        unsigned modifiers = 0;
        bool down = false;
    };

    /// The page must outlive this.
    explicit MenuKeyGrabs(PressedState& page) : page_(page) {}
    MenuKeyGrabs(const MenuKeyGrabs&) = delete;
    MenuKeyGrabs& operator=(const MenuKeyGrabs&) = delete;
    ~MenuKeyGrabs();

    /// Holds these and no others, in the place of what is held; a combination that another client has stays
    /// that client's. False when there is no connection to be had. Main thread.
    bool hold(std::vector<Combination> combinations);
    /// Gives all back, and waits until the server has done so. Main thread.
    void letGo();
    /// What has come since the last call. Main thread.
    [[nodiscard]] std::vector<KeyEvent> read();
    /// Whether the connection was ended while it held something; it is put away then. Main thread.
    [[nodiscard]] bool dropIfLost();
    /// The connection's; -1 without one. Main thread.
    [[nodiscard]] int descriptor() const;

    /// Told when events may have been read that the descriptor no longer tells of. Any thread; set before any
    /// other call.
    std::function<void()> onRead;

    /// As long as it lives a key that is posted goes past the grabs. Nothing where the menu is closed.
    class Gap {
      public:
        Gap() = default;
        Gap(MenuKeyGrabs& grabs, int keycode);
        Gap(const Gap&) = delete;
        Gap& operator=(const Gap&) = delete;
        /// The server must have handled the press by now.
        ~Gap();
        [[nodiscard]] bool isOpen() const { return grabs_ != nullptr; }

      private:
        MenuKeyGrabs* grabs_ = nullptr;
        int keycode_ = 0;
        std::unique_lock<std::mutex> lock_;
    };
    /// Before a key is posted: lets it through to the application in front, also while the user holds one of
    /// the menu's keys. Any thread; costs nothing where the menu is closed, and a round trip where it is
    /// open.
    [[nodiscard]] Gap letThrough(int keycode) { return isHolding_.load() ? Gap(*this, keycode) : Gap(); }

  private:
    [[nodiscard]] bool connect();
    void grab(const Combination& combination);
    void waitForServer();

    PressedState& page_;
    /// Over everything below.
    std::mutex mutex_;
    xcb_connection_t* connection_ = nullptr;
    std::uint32_t root_ = 0;
    /// Unmapped; stands for the connection.
    std::uint32_t resource_ = 0;
    std::vector<Combination> held_;
    std::atomic<bool> isHolding_{false};
};

}  // namespace trelvan
