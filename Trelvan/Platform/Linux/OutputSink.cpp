#include "Platform/Linux/OutputSink.hpp"

#include "Platform/Linux/LineRing.hpp"
#include "Platform/Linux/LogOutlet.hpp"

#include <limits.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace trelvan {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t ringCapacity = 2048;
constexpr std::chrono::milliseconds patienceAtTheEnd{500};

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
    Shared(int target, std::string journalSocket)
        : wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), stream(target), journal(std::move(journalSocket)) {}
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;
    ~Shared() { close(wake); }

    void run() {
        pthread_setname_np(pthread_self(), "trelvan-log");
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (;;) {
            // Asked first: what was written before the end began is in the ring then.
            const bool last = ending.load();
            writeRing();
            const auto now = Clock::now();
            if (last && ((!stream.isWaiting() && !journal.isWaiting()) || now >= patienceEnds)) break;
            waitForWork(last ? patienceEnds - now : Clock::duration::max());
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
        std::array<pollfd, 3> asked{pollfd{.fd = wake, .events = POLLIN, .revents = 0}};
        for (std::size_t index = 0; index < outlets.size(); ++index) {
            const auto& outlet = *outlets[index];
            asked[index + 1] = {
                .fd = outlet.isWaiting() ? outlet.descriptor() : -1, .events = POLLOUT, .revents = 0};
        }
        int timeout = -1;
        if (longest != Clock::duration::max())
            timeout = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(longest).count());
        poll(asked.data(), asked.size(), timeout);
        if (asked.front().revents == 0) return;
        readWake();
        if (!urgent.load() && !ending.load()) {
            pollfd more{.fd = wake, .events = POLLIN, .revents = 0};
            poll(&more, 1, static_cast<int>(gatherTime.count()));
            readWake();
        }
        urgent.store(false);
        awake.exchange(false);
    }

    void readWake() const {
        eventfd_t ignored = 0;
        (void)eventfd_read(wake, &ignored);
    }
    void wakeUp() const { (void)eventfd_write(wake, 1); }

    const int wake;
    LineRing ring{ringCapacity};
    QueuedLine line;
    StreamOutlet stream;
    JournalSink journal;
    const std::array<LogOutlet*, 2> outlets{&stream, &journal};
    /// Whether the writer knows that there is something to do.
    std::atomic<bool> awake{false};
    std::atomic<bool> urgent{false};
    std::atomic<bool> ending{false};
    /// Set before the end begins.
    Clock::time_point patienceEnds;
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
};

OutputSink::OutputSink(int descriptor, std::string journalSocket)
    : shared_(std::make_shared<Shared>(descriptor, std::move(journalSocket))) {
    std::thread([shared = shared_] { shared->run(); }).detach();
}

OutputSink::~OutputSink() {
    shared_->patienceEnds = Clock::now() + patienceAtTheEnd;
    shared_->ending = true;
    shared_->wakeUp();
    std::unique_lock lock(shared_->mutex);
    // The writer ends by itself; the rest is for a write that does not return.
    shared_->finished.wait_for(lock, patienceAtTheEnd * 2, [this] { return shared_->done; });
}

void OutputSink::write(const LogRecord& record) {
    if (!shared_->ring.push(record)) return;
    const bool urgent = record.level >= LogLevel::warning;
    if (urgent) shared_->urgent.store(true);
    if (!shared_->awake.exchange(true) || urgent) shared_->wakeUp();
}

}  // namespace trelvan
