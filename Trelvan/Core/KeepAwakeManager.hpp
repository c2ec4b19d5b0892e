#pragma once

#include "Core/Model/AutoStopPreset.hpp"
#include "Core/Settings/Setting.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/IdleInhibitor.hpp"
#include "Platform/InputState.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Geometry.hpp"
#include "Utilities/LifetimeToken.hpp"
#include "Utilities/PublishedBy.hpp"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace trelvan {

/// Keeps the session from looking idle: while it is enabled and the user is away, it nudges the pointer by a
/// point and back at a fixed interval, and holds the desktop's idle inhibitor. Main thread.
class KeepAwakeManager {
  public:
    using AutoStopPreset = trelvan::AutoStopPreset;

    struct Ports {
        InputState& input;
        EventPoster& poster;
        Screens& screens;
        UserDefaults& defaults;
        Clock& clock;
        MainQueue& mainQueue;
        Timers& timers;
        IdleInhibitor& inhibitor;
    };

    static constexpr Seconds pollInterval{1.0};
    /// How long the pointer stays at the place it was nudged to.
    static constexpr Seconds nudgeLength{0.12};

    /// Loads the settings, and starts watching if it was left enabled.
    explicit KeepAwakeManager(const Ports& ports);
    KeepAwakeManager(const KeepAwakeManager&) = delete;
    KeepAwakeManager& operator=(const KeepAwakeManager&) = delete;

    template <typename T>
    using Property = PublishedBy<T, KeepAwakeManager>;

    // Each of these is written at once when it is set, also to the value that it has. Minutes are not moved
    // into their range before the next launch.

    /// Setting it starts and stops the watch.
    Setting<bool> isEnabled;
    /// Minutes without input after which the user counts as away.
    Setting<double> idleThresholdMinutes;
    /// Minutes between nudges while the user is away.
    Setting<double> moveEveryMinutes;
    /// While enabled, setting it starts the countdown again from now.
    Setting<AutoStopPreset> autoStopPreset;
    /// The four of them, in the order of the catalogue.
    [[nodiscard]] std::array<AnySetting*, 4> settings();
    [[nodiscard]] std::array<const AnySetting*, 4> settings() const;

    Property<bool> isCurrentlyAway;
    /// Until the user counts as away or, while away, until the next nudge; none while off.
    Property<std::optional<std::int64_t>> nextMoveInSeconds;
    /// Until it switches itself off; none when it never does.
    Property<std::optional<std::int64_t>> remainingAutoStopSeconds;
    Property<std::optional<std::chrono::system_clock::time_point>> lastMoveDate;
    /// The last failure; the next start clears it.
    Property<std::optional<std::string>> lastErrorMessage;

  private:
    void followOutsideChange(const UserDefaults::Keys& keys);
    void startMonitoring();
    void stopMonitoring();
    void scheduleAutoStop();
    void tick();
    void performJiggle();
    void movePointer(TopLeftPoint to);
    void inhibitIdle(bool away);

    /// A moment by the time of day, and by the clock that stands still while the computer sleeps.
    struct Moment {
        std::chrono::system_clock::time_point date;
        Seconds uptime;
    };
    [[nodiscard]] Moment now() const { return {ports_.clock.now(), ports_.clock.uptime()}; }
    /// The longer of the two, so that sleep counts.
    [[nodiscard]] double secondsSince(const Moment& moment) const;
    /// Moves the moments along with a time of day that was set back, which gives no time back.
    void followTimeOfDay();

    Ports ports_;
    Subscription outsideChange_;
    std::unique_ptr<Timers::Timer> pollTimer_;
    std::unique_ptr<Timers::Timer> autoStopTimer_;
    /// When the countdown started.
    std::optional<Moment> enabledAt_;
    std::optional<Moment> lastSyntheticMoveDate_;
    std::chrono::system_clock::time_point lastTickDate_;
    double jiggleDirection_ = 1.0;
    std::unique_ptr<IdleInhibitor::Hold> inhibition_;
    /// Last, for what was put into the main queue.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
