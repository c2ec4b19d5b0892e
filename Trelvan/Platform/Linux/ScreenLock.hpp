#pragma once

#include <functional>

namespace trelvan {

/// Locks the session by what the desktop offers: its screen saver's interface, else the login manager's
/// signal to whoever locks, else the program xdg-screensaver. Main thread; nothing waits.
class ScreenLock {
  public:
    /// Calls `otherwise` when nothing of it is there.
    static void lock(const std::function<void()>& otherwise);
    /// Whether a screen saver or the login manager runs. Waits for the buses, not for them.
    [[nodiscard]] static bool isOffered();
};

}  // namespace trelvan
