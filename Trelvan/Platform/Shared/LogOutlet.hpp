#pragma once

#include "Platform/Shared/LineRing.hpp"

#include <cstdint>
#include <deque>

namespace trelvan {

/// One place where log lines go. The thread that writes the log only; nothing here waits.
///
/// Lines that the place has no room for are kept, up to a bound. Those beyond it are lost, and how many is
/// said in their place.
class LogOutlet {
  public:
    LogOutlet() = default;
    LogOutlet(const LogOutlet&) = delete;
    LogOutlet& operator=(const LogOutlet&) = delete;
    virtual ~LogOutlet() = default;

    /// Takes a line, and writes as much of what is kept as finds room.
    void take(const QueuedLine& line);
    /// Writes as much of what is kept as finds room.
    void flush();
    /// Counts lines that were lost before they came here.
    void countLost(std::uint64_t lines) { lost_ += lines; }

    /// Whether something is kept that `flush` may write once there is room.
    [[nodiscard]] bool isWaiting() const { return !kept_.empty(); }
    /// What can be polled for room; below 0 for nothing.
    [[nodiscard]] virtual int descriptor() const = 0;

  protected:
    enum class Sent {
        done,
        /// No room now.
        full,
        /// The place is not there now, and the line is lost.
        lost,
    };
    /// Writes a line, or what is left of it when it was sent in part before.
    virtual Sent send(const QueuedLine& line) = 0;

  private:
    void sayLost();

    std::deque<QueuedLine> kept_;
    std::uint64_t lost_ = 0;
};

}  // namespace trelvan
