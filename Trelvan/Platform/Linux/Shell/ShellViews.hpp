#pragma once

#include "Platform/SystemViews.hpp"

#include <functional>
#include <string_view>
#include <vector>

namespace trelvan {

/// The views and tools of the desktop shells that can be asked over the session bus: GNOME Shell, KDE Plasma
/// and Cinnamon. Main thread; nothing waits.
class ShellViews {
  public:
    using Otherwise = std::function<void()>;

    /// Asks the shell that is running for the view; calls `otherwise` when none is, or it has no such view.
    static void show(SystemView view, const Otherwise& otherwise);
    /// The names on the bus of the shells that may have the view, in the order in which they are asked.
    [[nodiscard]] static std::vector<std::string_view> services(SystemView view);
    /// The views of the shell that is running. Waits for the bus, not for the shell.
    [[nodiscard]] static std::vector<SystemView> offered();
    /// GNOME's overview, one step from the grid of its applications.
    static void showGnomeOverview(const Otherwise& otherwise);
};

}  // namespace trelvan
