#pragma once

#include "Platform/Linux/Guard/Guard.hpp"
#include "Platform/RunLoop.hpp"

#include <chrono>
#include <memory>

class QSocketNotifier;

namespace trelvan {

/// Starts the guard's process again when it ends before the program. Main thread.
class GuardKeeper {
  public:
    GuardKeeper(Guard& guard, Timers& timers);
    GuardKeeper(const GuardKeeper&) = delete;
    GuardKeeper& operator=(const GuardKeeper&) = delete;
    ~GuardKeeper();

    /// How long to wait before the next start, after a process that lived so long and a wait of `last` before
    /// it: not at all after a long life, else longer and longer up to a minute.
    [[nodiscard]] static Seconds delayAfter(Seconds life, Seconds last);

  private:
    void watch();
    void ended();
    void restart();

    Guard& guard_;
    Timers& timers_;
    std::unique_ptr<QSocketNotifier> end_;
    std::unique_ptr<Timers::Timer> later_;
    std::chrono::steady_clock::time_point started_;
    Seconds delay_{0};
    bool isFirst_ = true;
};

}  // namespace trelvan
