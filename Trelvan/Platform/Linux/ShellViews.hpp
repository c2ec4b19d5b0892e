#pragma once

#include "Platform/SystemViews.hpp"

namespace trelvan {

/// The overviews of the desktop shells that can be asked over the session bus: GNOME Shell and KDE Plasma.
class ShellViews {
  public:
    /// Asks the shell that is running for the view; false when none of them runs. Does not wait for what it
    /// asks.
    [[nodiscard]] static bool show(SystemView view);
};

}  // namespace trelvan
