#include "Platform/Linux/Applications/LinuxWorkspace.hpp"

#include "Platform/Linux/Applications/ApplicationIcon.hpp"
#include "Platform/Linux/Applications/ApplicationIdentity.hpp"
#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Platform/Linux/Applications/NoteApplications.hpp"
#include "Platform/Linux/Applications/ProgramStart.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Text.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUrl>
#include <array>
#include <cstdlib>

namespace trelvan {

namespace {

constexpr std::string_view notesRole = "com.apple.Notes";
constexpr std::string_view applicationsFolder = "/Applications";
constexpr std::string_view sharedApplicationsFolder = "/usr/share/applications";
constexpr std::string_view launcherRole = "com.apple.launchpad.launcher";

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
    for (const auto id : noteApplications(currentDesktopNames())) {
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

void LinuxWorkspace::openInFront(std::string_view path, std::function<void()> inFront) {
    mainQueue_.async([this, path = std::string(path), inFront = std::move(inFront)] {
        auto application = identityOf(path);
        application.startupId = "trelvan-" + std::to_string(getpid()) + "-" + std::to_string(++starts_);
        const StartTold told{.startupId = application.startupId,
                             .started = [this](long process) { focus_.noteProcess(process); }};
        focus_.begin(std::move(application), focusTimeout, inFront, [path] {
            AppLogger.warning(
                InlineText(lastPathComponent(path), " no recibió el foco a tiempo: no se le escribe nada"));
        });
        if (!startApplication(path, told)) return focus_.cancel();
        focus_.look();
    });
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
