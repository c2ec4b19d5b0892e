#pragma once

#include "Utilities/Published.hpp"

#include <functional>
#include <utility>

namespace trelvan {

/// The place where the desktop shows items of programs that run in the background (the menu bar, the system
/// tray). Main thread.
class StatusArea {
  public:
    StatusArea() = default;
    StatusArea(const StatusArea&) = delete;
    StatusArea& operator=(const StatusArea&) = delete;
    virtual ~StatusArea() = default;

    /// Whether the desktop has one. It may come long after the session has begun.
    [[nodiscard]] bool isThere() const { return isThere_; }
    /// Calls the function once it is there; not again for one that goes and comes back.
    [[nodiscard]] Subscription whenThere(std::function<void()> come) {
        return told_.observe([come = std::move(come)](bool /*isThere*/) { come(); });
    }

  protected:
    /// For the platform: it has been found.
    void found() {
        if (std::exchange(isThere_, true)) return;
        told_ = true;
    }

  private:
    bool isThere_ = false;
    Published<bool> told_{false};
};

}  // namespace trelvan
