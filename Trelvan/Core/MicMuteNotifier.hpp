#pragma once

#include "Core/NotificationPoster.hpp"
#include "Platform/AudioInput.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/UserDefaults.hpp"

#include <memory>
#include <optional>

namespace trelvan {

/// Posts a notification when the default audio input is muted or unmuted. Started once, never stopped. Main
/// thread.
class MicMuteNotifier {
  public:
    struct Ports {
        AudioInput& audio;
        Timers& timers;
        const UserDefaults& defaults;
    };

    static constexpr Seconds pollInterval{1.0};

    MicMuteNotifier(const Ports& ports, NotificationPoster& poster) : ports_(ports), poster_(poster) {}
    MicMuteNotifier(const MicMuteNotifier&) = delete;
    MicMuteNotifier& operator=(const MicMuteNotifier&) = delete;

    /// Takes the state as it is for known and begins to poll. Further calls do nothing.
    void start();

  private:
    void pollMicMuteState();
    [[nodiscard]] std::optional<bool> currentMicMuteState() const;

    Ports ports_;
    NotificationPoster& poster_;
    std::unique_ptr<Timers::Timer> pollingTimer_;
    /// None: not known yet.
    std::optional<bool> lastMutedState_;
};

}  // namespace trelvan
