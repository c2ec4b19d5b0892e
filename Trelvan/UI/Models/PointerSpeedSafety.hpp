#pragma once

#include "Core/EventMonitor.hpp"
#include "Platform/RunLoop.hpp"
#include "Utilities/Published.hpp"

#include <memory>
#include <optional>

namespace trelvan {

/// Takes a new pointer speed back unless it is confirmed, so that nobody is locked in with a pointer that
/// cannot be used. Main thread.
///
/// The settings are saved when the user leaves a control. While a speed waits to be confirmed nothing is
/// saved, since the engine saves all or none: it is made up for once the speed is settled.
class PointerSpeedSafety {
  public:
    static constexpr Seconds patience{5.0};
    /// Speeds this close to the confirmed one are the same.
    static constexpr double sameSpeed = 0.0001;

    /// The present speed counts as confirmed.
    PointerSpeedSafety(EventMonitor& monitor, Timers& timers, MainQueue& mainQueue);
    PointerSpeedSafety(const PointerSpeedSafety&) = delete;
    PointerSpeedSafety& operator=(const PointerSpeedSafety&) = delete;
    /// Takes an unconfirmed speed back.
    ~PointerSpeedSafety();

    /// Seconds left before the speed is taken back; none when nothing waits.
    Published<std::optional<int>> secondsLeft;
    [[nodiscard]] bool isPending() const { return secondsLeft.get().has_value(); }
    /// The speed that is confirmed.
    [[nodiscard]] double savedMouseSpeedValue() const { return saved_; }

    /// Tries a speed, moved into its range; what is not a number changes nothing.
    void write(double speed);
    /// Keeps the present speed and saves it.
    void confirm();
    /// Takes the unconfirmed speed back at once.
    void revert();
    /// Saves the shaping settings now or, while a speed waits, when it is settled.
    void save();

  private:
    void scheduleMouseSpeedRevertIfNeeded();
    void countDown();
    void settle();
    void followOutsideChange();

    EventMonitor& monitor_;
    Timers& timers_;
    double saved_;
    bool isWriting_ = false;
    bool savesLater_ = false;
    /// Every second, for the display; the fifth takes the speed back.
    std::unique_ptr<Timers::Timer> mouseSpeedRevertTimer_;
    std::unique_ptr<MainQueue::CoalescedTask> revertTask_;
    Subscription speedObserver_;
    std::unique_ptr<MainQueue::CoalescedTask> outsideTask_;
};

}  // namespace trelvan
