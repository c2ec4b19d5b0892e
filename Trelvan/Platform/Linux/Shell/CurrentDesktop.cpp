#include "Platform/Linux/Shell/CurrentDesktop.hpp"

#include "Platform/Shared/XdgFolders.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

/// Budgie and Unity keep their shortcuts where GNOME does.
constexpr std::array<std::pair<std::string_view, DesktopKind>, 8> names{{
    {"GNOME", DesktopKind::gnome},
    {"Budgie", DesktopKind::gnome},
    {"Unity", DesktopKind::gnome},
    {"X-Cinnamon", DesktopKind::cinnamon},
    {"Cinnamon", DesktopKind::cinnamon},
    {"MATE", DesktopKind::mate},
    {"KDE", DesktopKind::kde},
    {"XFCE", DesktopKind::xfce},
}};

}  // namespace

DesktopKind desktopKind(std::string_view list) {
    while (!list.empty()) {
        const auto end = list.find(':');
        const auto* const found =
            std::ranges::find(names, list.substr(0, end), &std::pair<std::string_view, DesktopKind>::first);
        if (found != names.end()) return found->second;
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return DesktopKind::other;
}

DesktopKind currentDesktop() {
    return desktopKind(currentDesktopNames());
}

}  // namespace trelvan
