#pragma once

#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <optional>
#include <set>

namespace trelvan {

/// What tells one platform's desktop from another's in a dry run: whose key combinations the actions send,
/// whether the desktop is asked for its views (`offeredViews`) before keys are pressed, and whether a release
/// goes the way of its press.
class DesktopRules {
  public:
    /// Those of `shortcuts`; where they are `fixed`, a script changes nothing. The desktop outlives this.
    DesktopRules(SimulatedDesktop& desktop, const ActionShortcuts& shortcuts, bool fixed);
    DesktopRules(const DesktopRules&) = delete;
    DesktopRules& operator=(const DesktopRules&) = delete;

    /// The script names its platform.
    void choose(const ActionShortcuts& shortcuts);

  private:
    void apply(const ActionShortcuts& shortcuts);
    void show(SystemView view, const SystemViews::ByKeys& byKeys);

    SimulatedDesktop& desktop_;
    bool fixed_;
    std::set<SystemView> reported_;
};

}  // namespace trelvan
