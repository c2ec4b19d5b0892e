#include "Tools/Simulate/DesktopRules.hpp"

#include "Platform/SystemViewNames.hpp"
#include "Utilities/Text.hpp"

namespace trelvan {

DesktopRules::DesktopRules(SimulatedDesktop& desktop, const ActionShortcuts& shortcuts, bool fixed)
    : desktop_(desktop), fixed_(fixed) {
    apply(shortcuts);
}

void DesktopRules::choose(const ActionShortcuts& shortcuts) {
    if (!fixed_) apply(shortcuts);
}

void DesktopRules::apply(const ActionShortcuts& shortcuts) {
    desktop_.setActionShortcuts(shortcuts);
    // A desktop that is asked for its views is one of X's.
    desktop_.releasesFollowPresses = shortcuts.desktopGoesFirst;
    desktop_.onView = nullptr;
    if (!shortcuts.desktopGoesFirst) return;
    desktop_.onView = [this](SystemView view, const SystemViews::ByKeys& byKeys) {
        desktop_.mainQueue().async([this, view, byKeys] { show(view, byKeys); });
        return true;
    };
}

void DesktopRules::show(SystemView view, const SystemViews::ByKeys& byKeys) {
    if (desktop_.offeredViews.contains(view)) return desktop_.tell(trace::View{view});
    if (byKeys() || !reported_.insert(view).second) return;
    desktop_.logger.warning(InlineText("Este escritorio no ofrece ", logName(view)));
    if (desktop_.onMissingView) desktop_.onMissingView({.view = view, .program = {}});
}

}  // namespace trelvan
