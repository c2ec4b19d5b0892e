#pragma once

#include "Core/EventMonitor.hpp"
#include "Platform/RunLoop.hpp"
#include "Utilities/Published.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace trelvan {

/// Which buttons are pressed at the moment, for the pills and rows. Main thread.
///
/// Releases of the left and right buttons and of the wheel are never told: those are lit for a moment.
class PressLights {
  public:
    static constexpr Seconds moment{0.3};

    PressLights(EventMonitor& monitor, Timers& timers, const Clock& clock);
    PressLights(const PressLights&) = delete;
    PressLights& operator=(const PressLights&) = delete;
    ~PressLights();

    /// Of a scroll mapping: whether the wheel is turned in its direction.
    [[nodiscard]] bool isLit(std::int64_t buttonNumber) const;
    /// Told after each change, with the press that made it; none when lights go out by themselves.
    Published<std::optional<ObservedPress>> changed;

  private:
    void see(const ObservedPress& press);
    void goOut();
    void clear();
    void armTimer();

    EventMonitor& monitor_;
    Timers& timers_;
    const Clock& clock_;
    /// By number; until when, none for as long as it is held.
    std::map<std::int64_t, std::optional<Seconds>> lit_;
    std::unique_ptr<Timers::Timer> timer_;
    Subscription presses_;
    Subscription running_;
};

}  // namespace trelvan
