#include "Platform/Linux/LinuxSystemViews.hpp"

#include "Platform/Linux/DesktopGrid.hpp"
#include "Platform/Linux/ShellViews.hpp"
#include "Utilities/Logger.hpp"

namespace trelvan {

namespace {

std::string_view nameOf(SystemView view) {
    switch (view) {
        case SystemView::missionControl:
            return "la vista de ventanas";
        case SystemView::appExpose:
            return "la vista de la aplicación";
        case SystemView::launchpad:
            return "el lanzador de aplicaciones";
        case SystemView::showDesktop:
            return "mostrar el escritorio";
        case SystemView::desktopLeft:
        case SystemView::desktopRight:
            return "cambiar de escritorio";
    }
    return {};
}

}  // namespace

bool LinuxSystemViews::show(SystemView view) {
    mainQueue_.async([this, view] { showNow(view); });
    return true;
}

void LinuxSystemViews::showNow(SystemView view) {
    bool isShown = false;
    switch (view) {
        case SystemView::showDesktop:
            isShown = toggleShowDesktop();
            break;
        case SystemView::desktopLeft:
            isShown = moveDesktop(false);
            break;
        case SystemView::desktopRight:
            isShown = moveDesktop(true);
            break;
        default:
            isShown = ShellViews::show(view);
            break;
    }
    if (!isShown) reportMissing(view);
}

bool LinuxSystemViews::toggleShowDesktop() {
    if (!properties_.isSupported("_NET_SHOWING_DESKTOP")) return false;
    const bool isShowing = properties_.number("_NET_SHOWING_DESKTOP").value_or(0) != 0;
    properties_.request("_NET_SHOWING_DESKTOP", isShowing ? 0 : 1);
    return true;
}

bool LinuxSystemViews::moveDesktop(bool right) {
    const auto count = properties_.number("_NET_NUMBER_OF_DESKTOPS");
    const auto current = properties_.number("_NET_CURRENT_DESKTOP");
    if (!count || !current || !properties_.isSupported("_NET_CURRENT_DESKTOP")) return false;
    const DesktopGrid grid{.count = *count,
                           .current = *current,
                           .columns = properties_.number("_NET_DESKTOP_LAYOUT", 1).value_or(0),
                           .byColumns = properties_.number("_NET_DESKTOP_LAYOUT", 0).value_or(0) == 1,
                           .rows = properties_.number("_NET_DESKTOP_LAYOUT", 2).value_or(0)};
    if (const auto neighbour = grid.neighbour(right)) properties_.request("_NET_CURRENT_DESKTOP", *neighbour);
    return true;
}

void LinuxSystemViews::reportMissing(SystemView view) {
    if (!reported_.insert(view).second) return;
    AppLogger.warning(ShortText("Este escritorio no ofrece ", nameOf(view)));
}

}  // namespace trelvan
