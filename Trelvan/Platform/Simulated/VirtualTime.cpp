#include "Platform/Simulated/VirtualTime.hpp"

#include <algorithm>
#include <tuple>
#include <utility>

namespace trelvan {

class VirtualTime::Background final : public BackgroundQueue {
  public:
    explicit Background(VirtualTime& time) : time_(time) {}
    void async(std::function<void()> job) override { after(Seconds{0}, std::move(job)); }
    void after(Seconds delay, std::function<void()> job) override {
        time_.put(delay, true, std::move(job), nullptr);
    }

  private:
    VirtualTime& time_;
};

class VirtualTime::VirtualTask final : public MainQueue::CoalescedTask {
  public:
    VirtualTask(VirtualTime& time, std::function<void()> job)
        : time_(time), shared_(std::make_shared<Shared>()) {
        shared_->job = std::move(job);
    }
    ~VirtualTask() override { shared_->job = nullptr; }
    void request() override {
        if (std::exchange(shared_->waiting, true)) return;
        time_.put(Seconds{0}, false, nullptr, shared_);
    }

  private:
    VirtualTime& time_;
    std::shared_ptr<Shared> shared_;
};

class VirtualTime::VirtualTimer final : public Timers::Timer {
  public:
    VirtualTimer(VirtualTime& time, Seconds first, Seconds interval, std::function<void()> job)
        : shared_(std::make_shared<Shared>()) {
        shared_->job = std::move(job);
        shared_->interval = interval;
        time.put(first, false, nullptr, shared_);
    }
    ~VirtualTimer() override {
        shared_->job = nullptr;
        shared_->interval = Seconds{0};
    }

  private:
    std::shared_ptr<Shared> shared_;
};

VirtualTime::VirtualTime() : background_(std::make_unique<Background>(*this)) {
    entries_.reserve(64);
}

VirtualTime::~VirtualTime() = default;

BackgroundQueue& VirtualTime::background() {
    return *background_;
}

std::chrono::system_clock::time_point VirtualTime::now() const {
    return std::chrono::system_clock::time_point(
        std::chrono::round<std::chrono::system_clock::duration>(now_ + dayShift_));
}

void VirtualTime::after(Seconds delay, std::function<void()> job) {
    put(delay, false, std::move(job), nullptr);
}

std::unique_ptr<MainQueue::CoalescedTask> VirtualTime::makeCoalescedTask(std::function<void()> job) {
    return std::make_unique<VirtualTask>(*this, std::move(job));
}

std::unique_ptr<Timers::Timer> VirtualTime::every(Seconds interval, std::function<void()> job) {
    return std::make_unique<VirtualTimer>(*this, interval, interval, std::move(job));
}

std::unique_ptr<Timers::Timer> VirtualTime::once(Seconds delay, std::function<void()> job) {
    return std::make_unique<VirtualTimer>(*this, delay, Seconds{0}, std::move(job));
}

bool VirtualTime::isLater(const Entry& left, const Entry& right) {
    return std::tie(left.moment, left.order) > std::tie(right.moment, right.order);
}

void VirtualTime::put(Seconds delay, bool background, std::function<void()> job,
                      std::shared_ptr<Shared> shared) {
    if (background) ++waitingInBackground_;
    entries_.push_back(Entry{now_ + std::max(delay, Seconds{0}), nextOrder_++, background, std::move(job),
                             std::move(shared)});
    std::ranges::push_heap(entries_, isLater);
}

void VirtualTime::runNext() {
    std::ranges::pop_heap(entries_, isLater);
    const Entry entry = std::move(entries_.back());
    entries_.pop_back();
    now_ = std::max(now_, entry.moment);
    if (entry.background) --waitingInBackground_;
    if (!entry.shared) return entry.job();
    entry.shared->waiting = false;
    if (entry.shared->interval > Seconds{0}) put(entry.shared->interval, false, nullptr, entry.shared);
    // Held apart: the job may let go of its own handle.
    if (const auto job = entry.shared->job) job();
}

void VirtualTime::runUntil(Seconds moment) {
    while (!entries_.empty() && entries_.front().moment <= std::max(moment, now_)) runNext();
    now_ = std::max(now_, moment);
}

void VirtualTime::runUntilBackgroundIsEmpty() {
    runDue();
    while (waitingInBackground_ > 0) {
        runNext();
        runDue();
    }
}

}  // namespace trelvan
