#pragma once

#include "Utilities/Published.hpp"

#include <atomic>
#include <functional>
#include <utility>

namespace trelvan {

/// Whether the user works in this session now. While the screen is locked, or another session has it, whoever
/// is at the devices may be somebody else, and no button may act. Main thread, but for `isUsable`.
class SessionState {
  public:
    SessionState() = default;
    SessionState(const SessionState&) = delete;
    SessionState& operator=(const SessionState&) = delete;
    virtual ~SessionState() = default;

    /// True until something says that the session is locked or not the active one. Any thread.
    [[nodiscard]] bool isUsable() const { return usable_.load(std::memory_order_relaxed); }

    /// Calls `changed` each time the answer of `isUsable` has changed.
    [[nodiscard]] Subscription observe(std::function<void(bool usable)> changed) const {
        return told_.observe([changed = std::move(changed)](bool usable) { changed(usable); });
    }

  protected:
    /// For the platform: what is so now. Observers are told of changes only.
    void update(bool locked, bool active) {
        const bool usable = !locked && active;
        if (usable == isUsable()) return;
        // First the answer: an observer may start what asks for it.
        usable_.store(usable, std::memory_order_relaxed);
        told_ = usable;
    }

  private:
    std::atomic<bool> usable_{true};
    mutable Published<bool> told_{true};
};

}  // namespace trelvan
