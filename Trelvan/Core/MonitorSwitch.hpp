#pragma once

#include "Core/EventMonitor.hpp"
#include "Platform/RunLoop.hpp"
#include "Utilities/PublishedBy.hpp"

#include <chrono>
#include <optional>

namespace trelvan {

/// The user's own switch of the event monitor. A monitor that the user has stopped stays stopped, although
/// the permission is there, until the user starts it again or the pause is over. Main thread.
class MonitorSwitch {
  public:
    using Date = std::chrono::system_clock::time_point;

    MonitorSwitch(EventMonitor& monitor, const Clock& clock) : monitor_(monitor), clock_(clock) {}
    MonitorSwitch(const MonitorSwitch&) = delete;
    MonitorSwitch& operator=(const MonitorSwitch&) = delete;

    /// Whether the user wants it stopped now; it must not be started for another reason.
    PublishedBy<bool, MonitorSwitch> isOff;
    /// When a pause ends, by the time of day; none while there is no pause.
    [[nodiscard]] std::optional<Date> pausedUntil() const;

    void start();
    void stop();
    /// Stops it and has `refresh` start it again when that much time is over, sleep of the computer included.
    void pauseFor(Seconds length);
    /// Ends a pause that is over.
    void refresh();

  private:
    struct Pause {
        Date end;
        /// On the clock that never jumps: a time of day that was set back prolongs nothing.
        Seconds endUptime;
    };

    EventMonitor& monitor_;
    const Clock& clock_;
    std::optional<Pause> pause_;
};

}  // namespace trelvan
