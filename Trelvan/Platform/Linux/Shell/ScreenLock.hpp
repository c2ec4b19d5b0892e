#pragma once

#include "Platform/Linux/Shell/CurrentDesktop.hpp"

#include <functional>
#include <string_view>
#include <vector>

namespace trelvan {

/// Locks the session by what the desktop offers: its screen saver's interface, else XFCE's own program, else
/// the login manager's signal to whoever locks, else the program xdg-screensaver. Main thread; nothing waits.
class ScreenLock {
  public:
    /// Calls `otherwise` when nothing of it is there.
    static void lock(DesktopKind desktop, const std::function<void()>& otherwise);
    /// The names on the session bus of the screen savers that are asked, in that order.
    [[nodiscard]] static std::vector<std::string_view> services();
    /// Whether a screen saver or the login manager runs. Waits for the buses, not for them.
    [[nodiscard]] static bool isOffered();
};

}  // namespace trelvan
