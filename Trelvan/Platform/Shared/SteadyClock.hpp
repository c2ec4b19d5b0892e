#pragma once

#include "Platform/RunLoop.hpp"

namespace trelvan {

/// The system's clocks. Any thread.
class SteadyClock : public Clock {
  public:
    [[nodiscard]] Seconds uptime() const override {
        return std::chrono::steady_clock::now().time_since_epoch();
    }
    [[nodiscard]] std::chrono::system_clock::time_point now() const override {
        return std::chrono::system_clock::now();
    }
};

}  // namespace trelvan
