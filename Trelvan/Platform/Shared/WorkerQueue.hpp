#pragma once

#include "Platform/RunLoop.hpp"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

namespace trelvan {

/// The background queue: one worker that starts each job when it is due, well below a millisecond late.
///
/// Any thread puts in. At the end every job left is run at once, without its pause, so that no key of a
/// sequence stays down. When more jobs wait than any hand can bring about, nothing new begins: what `async`
/// puts in is left out until some are done, and what goes on with `after` is not, so that each sequence that
/// began comes to its end.
class WorkerQueue : public BackgroundQueue {
  public:
    WorkerQueue();
    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;
    ~WorkerQueue() override;

    static constexpr std::size_t maxWaiting = 1024;

    void async(std::function<void()> job) override;
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

    /// The lock is held.
    void put(Time due, std::function<void()> job);
    void work();
    /// Waits for the next job that is due; none when all is done and the queue ends.
    [[nodiscard]] std::function<void()> next();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Entry> heap_;
    std::uint64_t lastOrder_ = 0;
    bool ending_ = false;
    bool isFull_ = false;
    bool reportedFull_ = false;
    std::thread worker_;
};

}  // namespace trelvan
