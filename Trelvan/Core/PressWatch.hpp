#pragma once

#include "Platform/Quartz.hpp"
#include "Platform/RunLoop.hpp"
#include "Utilities/Published.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace trelvan {

/// What a hand did with a button or the wheel.
struct ObservedPress {
    enum class Kind : std::uint8_t {
        down,
        /// Told for buttons of 2 and up only: the tap does not see the others' releases.
        up,
        /// The wheel, by the number of its direction.
        turn,
    } kind = Kind::down;
    std::int64_t buttonNumber = 0;
    /// The event's modifier flags.
    EventFlags flags = 0;
    friend bool operator==(const ObservedPress&, const ObservedPress&) = default;
};

/// Presses and turns as they reach the tap, for whoever shows them or waits for the next one.
///
/// Main thread. Observers are told one turn of the main loop later, so that no view holds up the tap; while
/// there is none, a press costs one comparison. Nothing is allocated for an event.
class PressWatch {
  public:
    using Observer = std::function<void(const ObservedPress&)>;
    /// Handed the number of the button or of the wheel's direction.
    using Taker = std::function<void(std::int64_t buttonNumber)>;

    explicit PressWatch(MainQueue& mainQueue);
    PressWatch(const PressWatch&) = delete;
    PressWatch& operator=(const PressWatch&) = delete;
    ~PressWatch();

    /// Over the program's own windows too, and whatever becomes of the event. When events outrun the main
    /// loop the oldest are given up.
    [[nodiscard]] Subscription observe(Observer observer);

    /// The next press of an extra button or turn of the wheel goes to `taker`, once, and does nothing else;
    /// its release neither. A taker that is still waiting is given up.
    void takeNext(Taker taker);
    /// The present taker waits no more.
    void cancelTaking();
    [[nodiscard]] bool isTaking() const { return isTaking_; }

    // The tap's side.
    void note(const ObservedPress& press) {
        if (*observers_ > 0) remember(press);
    }
    /// Whether the press or turn of this button is taken.
    [[nodiscard]] bool take(std::int64_t buttonNumber) { return isTaking_ && takeWaiting(buttonNumber); }
    /// Whether this is the release of the press that was taken.
    [[nodiscard]] bool takeRelease(std::int64_t buttonNumber);
    /// The tap goes: what was held is forgotten.
    void forgetHeld() { heldTaken_.reset(); }

  private:
    void remember(const ObservedPress& press);
    bool takeWaiting(std::int64_t buttonNumber);
    void deliver();

    Published<ObservedPress> told_;
    std::shared_ptr<int> observers_ = std::make_shared<int>(0);
    std::array<ObservedPress, 64> pending_{};
    std::size_t pendingStart_ = 0;
    std::size_t pendingCount_ = 0;
    bool isTaking_ = false;
    Taker taker_;
    std::optional<std::int64_t> taken_;
    std::optional<std::int64_t> heldTaken_;
    std::unique_ptr<MainQueue::CoalescedTask> task_;
};

}  // namespace trelvan
