#include "Platform/Linux/Shell/LinuxSystemViews.hpp"

#include "Platform/Linux/Shell/DesktopGrid.hpp"
#include "Platform/Linux/Shell/ScreenLock.hpp"
#include "Platform/Linux/Shell/ScreenshotProgram.hpp"
#include "Platform/Linux/Shell/ShellViews.hpp"
#include "Platform/Linux/Shell/ViewProgram.hpp"
#include "Platform/SystemViewNames.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

bool LinuxSystemViews::show(SystemView view, ByKeys byKeys) {
    mainQueue_.async([this, view, byKeys = std::move(byKeys)] { showNow(view, byKeys); });
    return true;
}

std::vector<SystemView> LinuxSystemViews::offered() const {
    auto views = ShellViews::offered();
    const auto add = [&views](SystemView view) {
        if (std::ranges::find(views, view) == views.end()) views.push_back(view);
    };
    if (properties_.isSupported("_NET_SHOWING_DESKTOP")) add(SystemView::showDesktop);
    if (properties_.isSupported("_NET_CURRENT_DESKTOP")) {
        add(SystemView::desktopLeft);
        add(SystemView::desktopRight);
    }
    for (const auto& [view, hotKey] : {std::pair{SystemView::screenshotFull, hotkey::screenshotFull},
                                       std::pair{SystemView::screenshotArea, hotkey::screenshotArea},
                                       std::pair{SystemView::screenshotTool, hotkey::screenshotTool}}) {
        if (!screenshotCommand(desktop_, view).empty() && !hotKeys_.entry(hotKey)) add(view);
    }
    for (const auto view : {SystemView::missionControl, SystemView::appExpose, SystemView::launchpad}) {
        if (installedViewProgram(desktop_, view)) add(view);
    }
    if (ScreenLock::isOffered()) add(SystemView::lockScreen);
    return views;
}

void LinuxSystemViews::showNow(SystemView view, const ByKeys& byKeys) {
    if (view == SystemView::showDesktop && toggleShowDesktop()) return;
    if (view == SystemView::lockScreen)
        return ScreenLock::lock(desktop_, [this, view, byKeys] { showByKeys(view, byKeys); });
    showByShell(view, byKeys);
}

void LinuxSystemViews::showByShell(SystemView view, const ByKeys& byKeys) {
    ShellViews::show(view, [this, view, byKeys] { showByKeys(view, byKeys); });
}

bool LinuxSystemViews::moveDesktop(DesktopDirection direction, ByKeys byKeys) {
    mainQueue_.async([this, direction, byKeys = std::move(byKeys)] {
        if (!goToNeighbour(direction)) showByShell(viewOf(direction), byKeys);
    });
    return true;
}

void LinuxSystemViews::showByKeys(SystemView view, const ByKeys& byKeys) {
    if (takeScreenshot(view) || byKeys()) return;
    const auto byProgram = [this, view] {
        showByProgram(desktop_, view, [this, view] { reportMissing(view); });
    };
    if (view != SystemView::launchpad) return byProgram();
    // Newer versions of GNOME show the grid of applications only to their own programs.
    ShellViews::showGnomeOverview(byProgram);
}

/// The user's own shortcut goes first, and where there is none its usual key may stand for another kind.
bool LinuxSystemViews::takeScreenshot(SystemView view) const {
    switch (view) {
        case SystemView::screenshotFull:
            return !hotKeys_.entry(hotkey::screenshotFull) && startScreenshot(desktop_, view);
        case SystemView::screenshotArea:
            return !hotKeys_.entry(hotkey::screenshotArea) && startScreenshot(desktop_, view);
        case SystemView::screenshotTool:
            return !hotKeys_.entry(hotkey::screenshotTool) && startScreenshot(desktop_, view);
        default:
            return false;
    }
}

bool LinuxSystemViews::toggleShowDesktop() {
    if (!properties_.isSupported("_NET_SHOWING_DESKTOP")) return false;
    const bool isShowing = properties_.number("_NET_SHOWING_DESKTOP").value_or(0) != 0;
    properties_.request("_NET_SHOWING_DESKTOP", isShowing ? 0 : 1);
    return true;
}

bool LinuxSystemViews::goToNeighbour(DesktopDirection direction) {
    const auto count = properties_.number("_NET_NUMBER_OF_DESKTOPS");
    const auto current = properties_.number("_NET_CURRENT_DESKTOP");
    if (!count || !current || !properties_.isSupported("_NET_CURRENT_DESKTOP")) return false;
    const DesktopGrid grid{.count = *count,
                           .current = *current,
                           .columns = properties_.number("_NET_DESKTOP_LAYOUT", 1).value_or(0),
                           .byColumns = properties_.number("_NET_DESKTOP_LAYOUT", 0).value_or(0) == 1,
                           .rows = properties_.number("_NET_DESKTOP_LAYOUT", 2).value_or(0)};
    // At the end of the row there is nowhere to go, and no key would change that.
    if (const auto neighbour = grid.neighbour(direction == DesktopDirection::right))
        properties_.request("_NET_CURRENT_DESKTOP", *neighbour);
    return true;
}

void LinuxSystemViews::reportMissing(SystemView view) {
    if (!reported_.insert(view).second) return;
    AppLogger.warning(InlineText("Este escritorio no ofrece ", logName(view)));
    if (missingObserver_) missingObserver_({.view = view, .program = programToInstall(view)});
}

}  // namespace trelvan
