#include "Platform/Shared/WorkerQueue.hpp"

#include "Platform/Shared/ThreadName.hpp"
#include "Utilities/Logger.hpp"

#include <signal.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

/// How many jobs may still follow from others once the queue ends: a job that puts itself in again has no
/// end.
constexpr int maxAtTheEnd = 10'000;

}  // namespace

WorkerQueue::WorkerQueue() : worker_([this] { work(); }) {}

WorkerQueue::~WorkerQueue() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    worker_.join();
}

bool WorkerQueue::isLater(const Entry& left, const Entry& right) {
    return std::tie(left.due, left.order) > std::tie(right.due, right.order);
}

void WorkerQueue::async(std::function<void()> job) {
    {
        const std::lock_guard lock(mutex_);
        isFull_ = isFull_ || heap_.size() >= maxWaiting;
        if (!isFull_) put(std::chrono::steady_clock::now(), std::move(job));
        if (!isFull_ || std::exchange(reportedFull_, true)) return changed_.notify_one();
    }
    AppLogger.warning("Hay demasiadas funciones en marcha; no empiezan más hasta que acaben algunas");
}

void WorkerQueue::after(Seconds delay, std::function<void()> job) {
    const auto pause = std::chrono::duration_cast<Time::duration>(std::max(delay, Seconds{0}));
    {
        const std::lock_guard lock(mutex_);
        put(std::chrono::steady_clock::now() + pause, std::move(job));
    }
    changed_.notify_one();
}

void WorkerQueue::put(Time due, std::function<void()> job) {
    heap_.push_back({due, ++lastOrder_, std::move(job)});
    std::ranges::push_heap(heap_, isLater);
}

void WorkerQueue::work() {
    nameThread("trelvan-keys");
#ifdef __linux__
    // The kernel lets ordinary threads sleep 50 microseconds longer than they asked.
    prctl(PR_SET_TIMERSLACK, 1000UL);
#endif
    // Signals are for the main thread.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    while (const auto job = next()) job();
}

std::function<void()> WorkerQueue::next() {
    std::unique_lock lock(mutex_);
    static thread_local int atTheEnd = 0;
    for (;;) {
        if (ending_ && (heap_.empty() || ++atTheEnd > maxAtTheEnd)) return nullptr;
        if (heap_.empty()) {
            changed_.wait(lock);
            continue;
        }
        const Time due = heap_.front().due;
        if (!ending_ && due > std::chrono::steady_clock::now()) {
            changed_.wait_until(lock, due);
            continue;
        }
        std::ranges::pop_heap(heap_, isLater);
        auto job = std::move(heap_.back().job);
        heap_.pop_back();
        if (heap_.size() <= maxWaiting / 2) isFull_ = false;
        if (heap_.empty() && heap_.capacity() > maxWaiting / 2) heap_.shrink_to_fit();
        return job;
    }
}

}  // namespace trelvan
