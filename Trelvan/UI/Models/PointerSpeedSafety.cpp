#include "UI/Models/PointerSpeedSafety.hpp"

#include <cmath>
#include <utility>

namespace trelvan {

PointerSpeedSafety::PointerSpeedSafety(EventMonitor& monitor, Timers& timers, MainQueue& mainQueue)
    : monitor_(monitor), timers_(timers), saved_(monitor.mouseSpeed) {
    revertTask_ = mainQueue.makeCoalescedTask([this] { revert(); });
    outsideTask_ = mainQueue.makeCoalescedTask([this] { followOutsideChange(); });
    speedObserver_ = monitor_.mouseSpeed.observe([this](double) {
        if (!isWriting_) outsideTask_->request();
    });
}

PointerSpeedSafety::~PointerSpeedSafety() {
    speedObserver_.reset();
    revert();
}

void PointerSpeedSafety::write(double speed) {
    const auto accepted = setting::row("mouseSpeed").accepted(speed);
    if (!accepted) return;
    isWriting_ = true;
    monitor_.mouseSpeed = *accepted;
    isWriting_ = false;
    scheduleMouseSpeedRevertIfNeeded();
}

void PointerSpeedSafety::scheduleMouseSpeedRevertIfNeeded() {
    mouseSpeedRevertTimer_.reset();
    if (std::abs(monitor_.mouseSpeed - saved_) <= sameSpeed) return settle();
    secondsLeft = static_cast<int>(patience.count());
    mouseSpeedRevertTimer_ = timers_.every(Seconds{1}, [this] { countDown(); });
}

void PointerSpeedSafety::countDown() {
    const int left = secondsLeft.get().value_or(0) - 1;
    if (left > 0) {
        secondsLeft = left;
        return;
    }
    // The timer is not let go of while it runs.
    revertTask_->request();
}

void PointerSpeedSafety::confirm() {
    if (!isPending()) return;
    saved_ = monitor_.mouseSpeed;
    savesLater_ = true;
    settle();
}

void PointerSpeedSafety::revert() {
    if (!isPending()) return;
    isWriting_ = true;
    monitor_.mouseSpeed =
        setting::row("mouseSpeed").accepted(saved_).value_or(EventMonitor::defaultMouseSpeed);
    isWriting_ = false;
    settle();
}

void PointerSpeedSafety::settle() {
    mouseSpeedRevertTimer_.reset();
    if (isPending()) secondsLeft = std::nullopt;
    if (std::exchange(savesLater_, false)) monitor_.persistSpeedSettings();
}

void PointerSpeedSafety::save() {
    if (isPending()) {
        savesLater_ = true;
    } else {
        monitor_.persistSpeedSettings();
    }
}

void PointerSpeedSafety::followOutsideChange() {
    // A speed from the settings file was chosen by its editor, who need not confirm it here.
    saved_ = monitor_.mouseSpeed;
    settle();
}

}  // namespace trelvan
