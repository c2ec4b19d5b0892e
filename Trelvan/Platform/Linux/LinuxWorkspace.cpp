#include "Platform/Linux/LinuxWorkspace.hpp"

#include "Platform/Linux/ApplicationIcon.hpp"
#include "Platform/Linux/DesktopEntry.hpp"
#include "Platform/Linux/HomeFolder.hpp"
#include "Platform/Linux/ProgramStart.hpp"

#include <sys/stat.h>

#include <array>

namespace trelvan {

namespace {

constexpr std::string_view notesRole = "com.apple.Notes";
constexpr std::string_view applicationsFolder = "/Applications";
constexpr std::string_view sharedApplicationsFolder = "/usr/share/applications";
constexpr std::string_view launcherRole = "com.apple.launchpad.launcher";

/// Note takers first, then plain editors.
constexpr std::array noteApplications{
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
    "org.gnome.TextEditor",
    "org.gnome.gedit",
    "gedit",
    "org.kde.kwrite",
    "org.kde.kate",
    "org.xfce.mousepad",
    "mousepad",
    "xed",
    "pluma",
    "featherpad",
};

}  // namespace

std::string LinuxWorkspace::homeDirectory() const {
    return homeFolder();
}

bool LinuxWorkspace::exists(std::string_view path) const {
    struct stat info {};
    return stat(std::string(path).c_str(), &info) == 0;
}

std::optional<std::string> LinuxWorkspace::applicationPath(std::string_view bundleIdentifier) const {
    if (bundleIdentifier == launcherRole) return std::nullopt;
    if (bundleIdentifier != notesRole) return findDesktopEntry(bundleIdentifier);
    for (const char* id : noteApplications) {
        if (auto path = findDesktopEntry(id)) return path;
    }
    return std::nullopt;
}

std::optional<std::string> LinuxWorkspace::applicationIcon(std::string_view path) const {
    return trelvan::applicationIcon(path);
}

void LinuxWorkspace::openApplication(std::string_view path) {
    mainQueue_.async([path = std::string(path)] { startApplication(path); });
}

void LinuxWorkspace::openFolder(std::string_view path) {
    // The folder of all applications has another place here.
    if (path == applicationsFolder) path = sharedApplicationsFolder;
    mainQueue_.async([path = std::string(path)] { openWithDesktop(path, true); });
}

void LinuxWorkspace::openUrl(std::string_view url) {
    mainQueue_.async([url = std::string(url)] { openWithDesktop(url, false); });
}

void LinuxWorkspace::reveal(std::string_view folder) {
    // Not over the bus: where there are several file managers it is chance which of them answers, and not the
    // one that the user has chosen.
    openFolder(folder);
}

}  // namespace trelvan
