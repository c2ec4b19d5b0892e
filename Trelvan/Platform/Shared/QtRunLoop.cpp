#include "Platform/Shared/QtRunLoop.hpp"

#include "Platform/Shared/WakePipe.hpp"

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

/// A task through a pipe, since posting an event to Qt's queue allocates.
class PipeTask : public MainQueue::CoalescedTask {
  public:
    explicit PipeTask(std::function<void()> job)
        : job_(std::move(job)), notifier_(pipe_.descriptor(), QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { run(); });
    }
    ~PipeTask() override { notifier_.setEnabled(false); }

    void request() override {
        if (!std::exchange(requested_, true)) pipe_.wake();
    }

  private:
    void run() {
        pipe_.drain();
        if (!std::exchange(requested_, false)) return;
        // The job may let go of the task.
        const auto job = job_;
        job();
    }

    WakePipe pipe_;
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

std::unique_ptr<MainQueue::CoalescedTask> QtMainQueue::makeCoalescedTask(std::function<void()> job) {
    return std::make_unique<PipeTask>(std::move(job));
}

std::unique_ptr<Timers::Timer> QtTimers::every(Seconds interval, std::function<void()> job) {
    return std::make_unique<QtTimer>(interval, false, std::move(job));
}

std::unique_ptr<Timers::Timer> QtTimers::once(Seconds delay, std::function<void()> job) {
    return std::make_unique<QtTimer>(delay, true, std::move(job));
}

}  // namespace trelvan
