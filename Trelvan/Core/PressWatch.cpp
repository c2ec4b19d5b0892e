#include "Core/PressWatch.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <utility>

namespace trelvan {

PressWatch::PressWatch(MainQueue& mainQueue) : task_(mainQueue.makeCoalescedTask([this] { deliver(); })) {}

PressWatch::~PressWatch() = default;

Subscription PressWatch::observe(Observer observer) {
    ++*observers_;
    auto inner = std::make_shared<Subscription>(told_.observe(std::move(observer)));
    return Subscription([inner, count = observers_] {
        inner->reset();
        --*count;
    });
}

void PressWatch::takeNext(Taker taker) {
    taken_.reset();
    taker_ = std::move(taker);
    isTaking_ = taker_ != nullptr;
}

void PressWatch::cancelTaking() {
    takeNext(nullptr);
}

void PressWatch::remember(const ObservedPress& press) {
    pending_[(pendingStart_ + pendingCount_) % pending_.size()] = press;
    if (pendingCount_ < pending_.size()) {
        ++pendingCount_;
    } else {
        pendingStart_ = (pendingStart_ + 1) % pending_.size();
    }
    task_->request();
}

bool PressWatch::takeWaiting(std::int64_t buttonNumber) {
    const bool isButton = buttonNumber >= firstExtraButtonNumber;
    if (!isButton && !isScrollButton(buttonNumber)) return false;
    isTaking_ = false;
    taken_ = buttonNumber;
    if (isButton) heldTaken_ = buttonNumber;
    task_->request();
    return true;
}

bool PressWatch::takeRelease(std::int64_t buttonNumber) {
    if (heldTaken_ != buttonNumber) return false;
    heldTaken_.reset();
    return true;
}

void PressWatch::deliver() {
    if (const auto taken = std::exchange(taken_, std::nullopt)) {
        if (const Taker taker = std::exchange(taker_, nullptr)) taker(*taken);
    }
    while (pendingCount_ > 0) {
        const ObservedPress press = pending_[pendingStart_];
        pendingStart_ = (pendingStart_ + 1) % pending_.size();
        --pendingCount_;
        told_ = press;
    }
}

}  // namespace trelvan
