#include "DryRun/DesktopRules.hpp"

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
    desktop_.releasesFollowPresses = shortcuts == linuxShortcuts;
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
    desktop_.logger.warning(ShortText("Este escritorio no ofrece ", logName(view)));
}

}  // namespace trelvan
