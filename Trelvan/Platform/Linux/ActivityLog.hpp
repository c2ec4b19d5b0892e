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

    /// The epoch when there was none.
    [[nodiscard]] Time last(EventType type) const {
        const auto number = static_cast<std::uint32_t>(type);
        return number < last_.size() ? last_[number] : Time{};
    }

  private:
    std::array<Time, 32> last_{};
};

}  // namespace trelvan
