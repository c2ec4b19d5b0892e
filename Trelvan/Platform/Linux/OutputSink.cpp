#include "Platform/Linux/OutputSink.hpp"

#include "Platform/Linux/LineRing.hpp"
#include "Utilities/Text.hpp"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <semaphore>
#include <string>
#include <thread>

namespace trelvan {

namespace {

constexpr std::size_t ringCapacity = 2048;
constexpr std::chrono::milliseconds patienceAtTheEnd{500};

/// Lines are gathered for so long before they are written: on a computer with few cores the writer would
/// otherwise run against the very press whose line it writes. Looked at in steps, because warnings and the
/// end do not wait.
constexpr std::chrono::milliseconds gatherTime{20};
constexpr std::chrono::milliseconds gatherStep{5};

}  // namespace

struct OutputSink::Shared {
    explicit Shared(int target) : descriptor(target) {}

    void run() {
        pthread_setname_np(pthread_self(), "trelvan-log");
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (bool last = false; !last;) {
            wake.acquire();
            gather();
            // One round is enough for all of them.
            while (wake.try_acquire()) continue;
            last = ending.load();
            writeRest();
        }
        const std::lock_guard lock(mutex);
        done = true;
        finished.notify_all();
    }

    void gather() {
        for (auto waited = gatherStep * 0; waited < gatherTime; waited += gatherStep) {
            if (urgent.exchange(false)) return;
            std::this_thread::sleep_for(gatherStep);
        }
    }

    void writeRest() {
        std::string text;
        while (ring.pop(text)) {
            text += '\n';
            if (const auto lost = dropped.exchange(0); lost > 0) {
                text += ShortText("… ", lost, " líneas de registro perdidas\n").view();
            }
            put(text);
            text.clear();
        }
    }

    void put(std::string_view text) const {
        while (!text.empty()) {
            const auto written = ::write(descriptor, text.data(), text.size());
            if (written < 0 && errno == EINTR) continue;
            // Nobody reads any more; there is nobody to tell.
            if (written < 0) return;
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    const int descriptor;
    LineRing ring{ringCapacity};
    std::counting_semaphore<> wake{0};
    std::atomic<std::uint64_t> dropped{0};
    std::atomic<bool> urgent{false};
    std::atomic<bool> ending{false};
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
};

OutputSink::OutputSink(int descriptor) : shared_(std::make_shared<Shared>(descriptor)) {
    std::thread([shared = shared_] { shared->run(); }).detach();
}

OutputSink::~OutputSink() {
    shared_->ending = true;
    shared_->urgent = true;
    shared_->wake.release();
    std::unique_lock lock(shared_->mutex);
    shared_->finished.wait_for(lock, patienceAtTheEnd, [this] { return shared_->done; });
}

void OutputSink::write(const LogRecord& record) {
    if (!shared_->ring.push(record.line)) {
        shared_->dropped.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    if (record.level >= LogLevel::warning) shared_->urgent.store(true, std::memory_order_relaxed);
    shared_->wake.release();
}

}  // namespace trelvan
