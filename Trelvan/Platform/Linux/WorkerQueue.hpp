#pragma once

#include "Platform/RunLoop.hpp"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace trelvan {

/// The background queue: one worker that starts each job when it is due, well below a millisecond late.
///
/// Any thread puts in. At the end every job left is run at once, without its pause, so that no key of a
/// sequence stays down.
class WorkerQueue : public BackgroundQueue {
  public:
    WorkerQueue();
    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;
    ~WorkerQueue() override;

    void async(std::function<void()> job) override { after(Seconds{0}, std::move(job)); }
    void after(Seconds delay, std::function<void()> job) override;

  private:
    using Time = std::chrono::steady_clock::time_point;
    struct Entry {
        Time due;
        std::uint64_t order = 0;
        std::function<void()> job;
    };
    /// Whether the left one is due after the right one; puts the earliest at the front of the heap.
    static bool isLater(const Entry& left, const Entry& right);

    void work();
    /// Waits for the next job that is due; none when all is done and the queue ends.
    [[nodiscard]] std::function<void()> next();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Entry> heap_;
    std::uint64_t lastOrder_ = 0;
    bool ending_ = false;
    std::thread worker_;
};

}  // namespace trelvan
