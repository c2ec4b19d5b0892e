#include "Platform/Linux/Applications/NoteApplications.hpp"

#include <array>
#include <utility>

namespace trelvan {

namespace {

/// A desktop's name and the entry of an editor that belongs to it; the better one first.
constexpr std::array<std::pair<std::string_view, std::string_view>, 25> ownEditors{{
    {"GNOME", "org.gnome.TextEditor"},
    {"GNOME", "org.gnome.gedit"},
    {"GNOME", "gedit"},
    {"KDE", "org.kde.kate"},
    {"KDE", "org.kde.kwrite"},
    {"XFCE", "org.xfce.mousepad"},
    {"XFCE", "mousepad"},
    {"MATE", "pluma"},
    {"X-Cinnamon", "org.x.editor"},
    {"X-Cinnamon", "xed"},
    {"Cinnamon", "org.x.editor"},
    {"Cinnamon", "xed"},
    {"LXQt", "featherpad"},
    {"LXDE", "org.xfce.mousepad"},
    {"LXDE", "mousepad"},
    {"LXDE", "l3afpad"},
    {"LXDE", "leafpad"},
    {"Budgie", "org.gnome.TextEditor"},
    {"Budgie", "org.gnome.gedit"},
    {"Unity", "org.gnome.gedit"},
    {"Unity", "org.gnome.TextEditor"},
    {"Pantheon", "io.elementary.code"},
    {"Deepin", "deepin-editor"},
    {"DDE", "deepin-editor"},
    {"UKUI", "pluma"},
}};

constexpr std::array<std::string_view, 29> allOthers{
    // Note takers
    "org.gnome.Notes",
    "org.gnome.bijiben",
    "bijiben",
    "org.kde.knotes",
    "xpad",
    "org.gnome.Gnote",
    "gnote",
    "tomboy-ng",
    "tomboy",
    "xfce4-notes",
    // Editors
    "org.gnome.TextEditor",
    "org.gnome.gedit",
    "gedit",
    "org.kde.kwrite",
    "org.kde.kate",
    "org.xfce.mousepad",
    "mousepad",
    "org.x.editor",
    "xed",
    "pluma",
    "featherpad",
    "juffed",
    "io.elementary.code",
    "deepin-editor",
    "org.geany.Geany",
    "geany",
    "l3afpad",
    "leafpad",
    "bluefish",
};

}  // namespace

std::vector<std::string_view> noteApplications(std::string_view desktops) {
    std::vector<std::string_view> result;
    while (!desktops.empty()) {
        const auto end = desktops.find(':');
        for (const auto& [name, editor] : ownEditors) {
            if (name == desktops.substr(0, end)) result.push_back(editor);
        }
        desktops.remove_prefix(end == std::string_view::npos ? desktops.size() : end + 1);
    }
    result.insert(result.end(), allOthers.begin(), allOthers.end());
    return result;
}

}  // namespace trelvan
