#pragma once

#include "Platform/Quartz.hpp"

#include <array>
#include <chrono>

namespace trelvan {

/// When an event of each type was last seen. Main thread.
class ActivityLog {
  public:
    using Time = std::chrono::steady_clock::time_point;

    void note(EventType type, Time when = std::chrono::steady_clock::now()) {
        const auto number = static_cast<std::uint32_t>(type);
        if (number < last_.size()) last_[number] = when;
    }

    /// The program has moved the pointer itself, which nobody's hand did.
    void noteOwnMove(Time when = std::chrono::steady_clock::now()) { lastOwnMove_ = when; }
    [[nodiscard]] bool hasJustMoved() const {
        return std::chrono::steady_clock::now() - lastOwnMove_ < returnTime;
    }

    /// How long after it was sent an event of the program's own may come back as a raw one: longer than that
    /// takes to a busy main loop, and short beside the seconds in which idle time is counted.
    static constexpr std::chrono::milliseconds returnTime{200};

    /// The epoch when there was none.
    [[nodiscard]] Time last(EventType type) const {
        const auto number = static_cast<std::uint32_t>(type);
        return number < last_.size() ? last_[number] : Time{};
    }

  private:
    std::array<Time, 32> last_{};
    Time lastOwnMove_{};
};

}  // namespace trelvan
