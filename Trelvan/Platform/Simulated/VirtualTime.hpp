#pragma once

#include "Platform/RunLoop.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace trelvan {

/// Time and every queue of the simulated desktop in one: nothing happens until it is told to run, and then
/// everything happens in order of its moment and, at the same moment, in the order it was put in.
class VirtualTime final : public Clock, public MainQueue, public Timers {
  public:
    VirtualTime();
    ~VirtualTime() override;
    VirtualTime(const VirtualTime&) = delete;
    VirtualTime& operator=(const VirtualTime&) = delete;

    // Clock. The virtual day starts at the epoch, unless it is shifted.
    [[nodiscard]] Seconds uptime() const override { return now_; }
    [[nodiscard]] std::chrono::system_clock::time_point now() const override;

    // MainQueue
    void async(std::function<void()> job) override { after(Seconds{0}, std::move(job)); }
    void after(Seconds delay, std::function<void()> job) override;
    [[nodiscard]] std::unique_ptr<CoalescedTask> makeCoalescedTask(std::function<void()> job) override;

    // Timers
    [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, std::function<void()> job) override;
    [[nodiscard]] std::unique_ptr<Timer> once(Seconds delay, std::function<void()> job) override;

    /// The time of day jumps, as after the computer slept or when somebody sets it; nothing else moves on.
    void shiftTimeOfDay(Seconds by) { dayShift_ += by; }

    /// The queue beside the main thread; it shares this time.
    [[nodiscard]] BackgroundQueue& background();

    /// Runs everything due now, also what that puts in for now.
    void runDue() { runUntil(now_); }
    /// Moves to the moment, running what is due on the way. A moment that has passed runs what is due now.
    void runUntil(Seconds moment);
    void runFor(Seconds length) { runUntil(now_ + length); }
    /// Runs on until the background queue is empty and nothing is due now.
    void runUntilBackgroundIsEmpty();

  private:
    class Background;
    class VirtualTask;
    class VirtualTimer;
    /// A job that can be asked for again and outlives its handle only as an empty shell.
    struct Shared {
        std::function<void()> job;
        Seconds interval{0};
        bool waiting = false;
    };
    struct Entry {
        Seconds moment;
        std::uint64_t order;
        bool background;
        std::function<void()> job;
        std::shared_ptr<Shared> shared;
    };

    void put(Seconds delay, bool background, std::function<void()> job, std::shared_ptr<Shared> shared);
    void runNext();
    static bool isLater(const Entry& left, const Entry& right);

    Seconds now_{0};
    Seconds dayShift_{0};
    std::uint64_t nextOrder_ = 0;
    /// Heap with the next entry at the front.
    std::vector<Entry> entries_;
    std::size_t waitingInBackground_ = 0;
    std::unique_ptr<Background> background_;
};

}  // namespace trelvan
