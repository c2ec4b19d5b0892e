#pragma once

#include "Core/NotificationPoster.hpp"
#include "Platform/InputState.hpp"
#include "Platform/KeyMonitors.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/UserDefaults.hpp"

#include <memory>
#include <optional>

namespace trelvan {

/// Posts a notification each time Caps Lock is switched on or off. Started once, never stopped. Main thread.
class CapsLockNotifier {
  public:
    struct Ports {
        InputState& input;
        KeyMonitors& monitors;
        Timers& timers;
        const UserDefaults& defaults;
    };

    static constexpr Seconds pollInterval{0.4};

    CapsLockNotifier(const Ports& ports, NotificationPoster& poster) : ports_(ports), poster_(poster) {}
    CapsLockNotifier(const CapsLockNotifier&) = delete;
    CapsLockNotifier& operator=(const CapsLockNotifier&) = delete;

    /// Takes the state as it is for known and begins to watch. Further calls do nothing.
    void start();

  private:
    void handle(const KeyMonitorEvent& event);
    void pollCapsLockState();
    void noteState(EventFlags flags);

    Ports ports_;
    NotificationPoster& poster_;
    std::unique_ptr<KeyMonitors::Monitor> localMonitor_;
    std::unique_ptr<KeyMonitors::Monitor> globalMonitor_;
    /// None: not known yet.
    std::optional<bool> lastCapsState_;
    /// Sees what neither monitor is told, for want of permission as a rule.
    std::unique_ptr<Timers::Timer> pollingTimer_;
};

}  // namespace trelvan
