#include "Platform/Linux/QtRunLoop.hpp"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

namespace trelvan {

namespace {

/// Never early: a delay is rounded up to the loop's milliseconds.
std::chrono::milliseconds wholeMilliseconds(Seconds delay) {
    return std::chrono::ceil<std::chrono::milliseconds>(std::max(delay, Seconds{0}));
}

/// A hop through an event descriptor, since posting an event to Qt's queue allocates.
class DescriptorHop : public MainQueue::Hop {
  public:
    explicit DescriptorHop(std::function<void()> job)
        : descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
          job_(std::move(job)),
          notifier_(descriptor_, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { run(); });
    }
    ~DescriptorHop() override {
        notifier_.setEnabled(false);
        close(descriptor_);
    }

    void request() override {
        if (std::exchange(requested_, true)) return;
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = write(descriptor_, &one, sizeof one);
    }

  private:
    void run() {
        std::uint64_t count = 0;
        [[maybe_unused]] const auto read = ::read(descriptor_, &count, sizeof count);
        if (!std::exchange(requested_, false)) return;
        // The job may let go of the hop.
        const auto job = job_;
        job();
    }

    int descriptor_;
    std::function<void()> job_;
    QSocketNotifier notifier_;
    bool requested_ = false;
};

class QtTimer : public Timers::Timer {
  public:
    QtTimer(Seconds interval, bool once, std::function<void()> action) : job_(std::move(action)) {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setSingleShot(once);
        timer_.setInterval(wholeMilliseconds(interval));
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            // The job may let go of the timer.
            const auto job = job_;
            job();
        });
        timer_.start();
    }

  private:
    std::function<void()> job_;
    QTimer timer_;
};

}  // namespace

void QtMainQueue::async(std::function<void()> job) {
    QMetaObject::invokeMethod(&context_, std::move(job), Qt::QueuedConnection);
}

void QtMainQueue::after(Seconds delay, std::function<void()> job) {
    // A timer starts on the thread that runs it; what the way there takes is taken off.
    const auto due = std::chrono::steady_clock::now() + delay;
    async([this, due, job = std::move(job)]() mutable {
        const Seconds left = due - std::chrono::steady_clock::now();
        QTimer::singleShot(wholeMilliseconds(left), Qt::PreciseTimer, &context_, std::move(job));
    });
}

std::unique_ptr<MainQueue::Hop> QtMainQueue::makeHop(std::function<void()> job) {
    return std::make_unique<DescriptorHop>(std::move(job));
}

std::unique_ptr<Timers::Timer> QtTimers::every(Seconds interval, std::function<void()> job) {
    return std::make_unique<QtTimer>(interval, false, std::move(job));
}

std::unique_ptr<Timers::Timer> QtTimers::once(Seconds delay, std::function<void()> job) {
    return std::make_unique<QtTimer>(delay, true, std::move(job));
}

}  // namespace trelvan
