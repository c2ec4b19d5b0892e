#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace trelvan {

/// Seconds as the system counts them; pauses go down to half a millisecond.
using Seconds = std::chrono::duration<double>;

/// Time as everything in the core sees it. Any thread.
class Clock {
  public:
    virtual ~Clock() = default;

    /// Seconds on a clock that never jumps; only differences mean something.
    [[nodiscard]] virtual Seconds uptime() const = 0;
    /// The time of day, for records and log lines.
    [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;
};

/// The main thread's queue: what is put in runs later on the main thread, in order. Any thread may put in.
class MainQueue {
  public:
    /// A job made once and asked for often. Asking again before it ran runs it once. Asking allocates
    /// nothing, so the tap may do it for each event. After the handle is gone the job does not run.
    class CoalescedTask {
      public:
        virtual ~CoalescedTask() = default;
        /// Main thread.
        virtual void request() = 0;
    };

    virtual ~MainQueue() = default;

    virtual void async(std::function<void()> job) = 0;
    virtual void after(Seconds delay, std::function<void()> job) = 0;
    [[nodiscard]] virtual std::unique_ptr<CoalescedTask> makeCoalescedTask(std::function<void()> job) = 0;
};

/// Timers on the main run loop; they go on during menus and drags. Main thread.
class Timers {
  public:
    /// A running timer; letting go of it ends it.
    class Timer {
      public:
        virtual ~Timer() = default;
    };

    virtual ~Timers() = default;

    [[nodiscard]] virtual std::unique_ptr<Timer> every(Seconds interval, std::function<void()> job) = 0;
    [[nodiscard]] virtual std::unique_ptr<Timer> once(Seconds delay, std::function<void()> job) = 0;
};

/// The concurrent queue of the highest quality beside the main thread. Any thread may put in.
///
/// Jobs that are due at the same moment start in the order they were put in. A pause is put in as a later
/// job, never slept, so that concurrent key sequences run side by side.
class BackgroundQueue {
  public:
    virtual ~BackgroundQueue() = default;

    virtual void async(std::function<void()> job) = 0;
    virtual void after(Seconds delay, std::function<void()> job) = 0;
};

}  // namespace trelvan
