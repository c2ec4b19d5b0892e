#pragma once

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// What the daemon was asked to show.
struct ShownNotification {
    std::string program;
    std::string title;
    std::string body;
    std::string urgency;
    /// The daemon's own number: a notification that replaces another has that one's.
    std::string number;
    friend bool operator==(const ShownNotification&, const ShownNotification&) = default;
};

/// A real notification daemon on a virtual desktop's own bus. Main thread.
class NotificationDaemon {
  public:
    /// Starts it and waits until it serves. Throws std::runtime_error when it does not.
    explicit NotificationDaemon(const VirtualDesktop& desktop);

    /// All that was shown so far, oldest first.
    [[nodiscard]] std::vector<ShownNotification> shown() const;
    /// Waits until this many were shown.
    [[nodiscard]] bool waitForCount(std::size_t count) const;

  private:
    std::filesystem::path record;
    std::unique_ptr<ChildProcess> process;
};

}  // namespace trelvan::desktop
