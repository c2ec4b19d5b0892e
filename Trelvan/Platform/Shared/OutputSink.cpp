#include "Platform/Shared/OutputSink.hpp"

#include "Platform/Shared/LineRing.hpp"
#include "Platform/Shared/LogOutlet.hpp"
#include "Platform/Shared/ThreadName.hpp"
#include "Platform/Shared/WakePipe.hpp"

#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t ringCapacity = 2048;
constexpr std::chrono::milliseconds exitTimeout{500};

/// Lines are gathered for so long before they are written: on a computer with few cores the writer would
/// otherwise run against the very press whose line it writes. Warnings and the end do not wait.
constexpr std::chrono::milliseconds gatherTime{20};

/// A file descriptor that may be full for a while. It may be shared with other programs, so it is not made
/// non-blocking, and may have been made so by one of them.
class StreamOutlet final : public LogOutlet {
  public:
    explicit StreamOutlet(int descriptor) : descriptor_(descriptor) {}
    [[nodiscard]] int descriptor() const override { return descriptor_; }

  protected:
    Sent send(const QueuedLine& line) override {
        if (rest_.empty()) rest_ = line.text + '\n';
        std::string_view left = rest_;
        while (!left.empty()) {
            // As much as a pipe that has room at all takes without waiting.
            const auto written =
                hasRoom() ? ::write(descriptor_, left.data(), std::min<std::size_t>(left.size(), PIPE_BUF))
                          : -1;
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) {
                const bool full = errno == EAGAIN;
                rest_.erase(0, full ? rest_.size() - left.size() : std::string::npos);
                return full ? Sent::full : Sent::lost;
            }
            left.remove_prefix(static_cast<std::size_t>(written));
        }
        rest_.clear();
        return Sent::done;
    }

  private:
    [[nodiscard]] bool hasRoom() const {
        pollfd asked{.fd = descriptor_, .events = POLLOUT, .revents = 0};
        if (poll(&asked, 1, 0) != 0) return true;
        errno = EAGAIN;
        return false;
    }

    int descriptor_;
    /// What is still to be written of a line, with its end.
    std::string rest_;
};

}  // namespace

struct OutputSink::Shared {
    Shared(int target, std::unique_ptr<LogOutlet> system) : stream(target), systemLog(std::move(system)) {
        if (systemLog) outlets.push_back(systemLog.get());
    }

    void run() {
        nameThread("trelvan-log");
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (;;) {
            // Asked first: what was written before the end began is in the ring then.
            const bool last = ending.load();
            writeRing();
            const auto now = Clock::now();
            if (last && (std::ranges::none_of(outlets, &LogOutlet::isWaiting) || now >= exitDeadline)) break;
            waitForWork(last ? exitDeadline - now : Clock::duration::max());
        }
        const std::lock_guard lock(mutex);
        done = true;
        finished.notify_all();
    }

    void writeRing() {
        while (ring.pop(line)) {
            for (LogOutlet* outlet : outlets) outlet->take(line);
        }
        const auto lost = ring.takeLost();
        for (LogOutlet* outlet : outlets) {
            outlet->countLost(lost);
            outlet->flush();
        }
    }

    /// Returns when there is a line to write, or room for one that waits.
    void waitForWork(Clock::duration longest) {
        asked.assign(1, {.fd = wake.descriptor(), .events = POLLIN, .revents = 0});
        for (const LogOutlet* outlet : outlets)
            asked.push_back(
                {.fd = outlet->isWaiting() ? outlet->descriptor() : -1, .events = POLLOUT, .revents = 0});
        int timeout = -1;
        if (longest != Clock::duration::max())
            timeout = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(longest).count());
        poll(asked.data(), static_cast<nfds_t>(asked.size()), timeout);
        if (asked.front().revents == 0) return;
        wake.drain();
        if (!urgent.load() && !ending.load()) {
            pollfd more{.fd = wake.descriptor(), .events = POLLIN, .revents = 0};
            poll(&more, 1, static_cast<int>(gatherTime.count()));
            wake.drain();
        }
        urgent.store(false);
        awake.exchange(false);
    }

    const WakePipe wake;
    LineRing ring{ringCapacity};
    QueuedLine line;
    StreamOutlet stream;
    const std::unique_ptr<LogOutlet> systemLog;
    std::vector<LogOutlet*> outlets{&stream};
    /// What the writer polls, kept for its memory.
    std::vector<pollfd> asked;
    /// Whether the writer knows that there is something to do.
    std::atomic<bool> awake{false};
    std::atomic<bool> urgent{false};
    std::atomic<bool> ending{false};
    /// Set before the end begins.
    Clock::time_point exitDeadline;
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
};

OutputSink::OutputSink(int descriptor, std::unique_ptr<LogOutlet> systemLog)
    : shared_(std::make_shared<Shared>(descriptor, std::move(systemLog))) {
    std::thread([shared = shared_] { shared->run(); }).detach();
}

OutputSink::~OutputSink() {
    shared_->exitDeadline = Clock::now() + exitTimeout;
    shared_->ending = true;
    shared_->wake.wake();
    std::unique_lock lock(shared_->mutex);
    // The writer ends by itself; the rest is for a write that does not return.
    shared_->finished.wait_for(lock, exitTimeout * 2, [this] { return shared_->done; });
}

void OutputSink::write(const LogRecord& record) {
    if (!shared_->ring.push(record)) return;
    const bool urgent = record.level >= LogLevel::warning;
    if (urgent) shared_->urgent.store(true);
    if (!shared_->awake.exchange(true) || urgent) shared_->wake.wake();
}

}  // namespace trelvan
