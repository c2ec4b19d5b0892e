#include "Desktop/Harness/VirtualDesktop.hpp"

#include "Desktop/Harness/DesktopFiles.hpp"
#include "Desktop/Harness/HotPlug.hpp"
#include "Desktop/Harness/Wait.hpp"
#include "Desktop/Harness/XConnection.hpp"
#include "Desktop/Harness/Xlib.hpp"

#include <X11/Xatom.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace trelvan::desktop {
namespace {

constexpr int firstDisplay = 50;
constexpr int lastDisplay = 99;

/// Whether the server wrote its display number, the sign that it takes clients, before it ended.
bool serverIsReady(int descriptor) {
    std::string number;
    // The line end comes in a second write, and the server dies when nobody is there to read it.
    while (!number.ends_with('\n')) {
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        char next = 0;
        if (::poll(&readable, 1, 20'000) != 1 || ::read(descriptor, &next, 1) != 1) return false;
        number += next;
    }
    return true;
}

/// Whether a server answers there. One that was killed leaves its socket behind, which the next one replaces.
bool isListening(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int caller = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers = ::connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(caller);
    return answers;
}

constexpr auto folderPrefix = "trelvan-desktop-";

/// Opens and locks the file that says that a desktop's folder is in use; -1 when somebody else has it.
int claimFolder(const std::filesystem::path& folder, int flags) {
    const int file = ::open((folder / "claim").c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, 0600);
    if (file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0) return file;
    if (file >= 0) ::close(file);
    return -1;
}

/// Removes the folders of desktops whose owner was killed: their processes went with it, the folders did not.
void removeAbandonedFolders() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp", ignored)) {
        if (!entry.path().filename().string().starts_with(folderPrefix)) continue;
        const int file = claimFolder(entry.path(), 0);
        if (file < 0) continue;
        std::filesystem::remove_all(entry.path(), ignored);
        ::close(file);
    }
}

std::string executable(const std::vector<std::string>& candidates) {
    for (const std::string& candidate : candidates) {
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    throw std::runtime_error("not installed: " + candidates.front());
}

}  // namespace

VirtualDesktop::VirtualDesktop(std::vector<std::string> serverArguments, Plugs devicePlugs)
    : furtherArguments(std::move(serverArguments)), plugs(devicePlugs) {
    adoptOrphans();
    try {
        makeFolders();
        startServer();
        startBus();
        startWindowManager();
        firstPointer = std::make_unique<HardwareDevice>(place / "trackball");
        secondPointer = std::make_unique<HardwareDevice>(place / "mouse");
        penTablet = std::make_unique<HardwareDevice>(place / "tablet");
        keys = std::make_unique<HardwareDevice>(place / "keyboard");
        reset();
    } catch (...) {
        takeDown();
        throw;
    }
}

VirtualDesktop::~VirtualDesktop() {
    takeDown();
}

void VirtualDesktop::makeFolders() {
    removeAbandonedFolders();
    // A short path whatever TMPDIR says: a socket's path may have no more than 107 bytes.
    std::string name = std::string("/tmp/") + folderPrefix + "XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder under /tmp");
    place = name;
    claim = claimFolder(place, O_CREAT);
    for (const char* part : {"home", "config", "data", "cache", "run", "bin"}) {
        std::filesystem::create_directory(place / part);
    }
    std::filesystem::permissions(place / "run", std::filesystem::perms::owner_all);
    writeFile(place / "x.conf", serverConfiguration(place));
    writeFile(place / "openbox.xml", windowManagerConfiguration());
    writeFile(place / "bus.conf", busConfiguration(place / "run" / "bus"));
    writeFile(place / "bin" / "xdg-open", recordingOpener(place / "opened"));
    // A desktop without these: the machine may have them.
    for (const char* absent : {"xdg-screensaver", "gsettings"}) {
        writeFile(place / "bin" / absent, "#!/bin/sh\nexit 1\n");
        std::filesystem::permissions(place / "bin" / absent, std::filesystem::perms::owner_all);
    }
    std::filesystem::permissions(place / "bin" / "xdg-open", std::filesystem::perms::owner_all);
    variables = {{"HOME", place / "home"},
                 {"XDG_CONFIG_HOME", place / "config"},
                 {"XDG_DATA_HOME", place / "data"},
                 {"XDG_CACHE_HOME", place / "cache"},
                 {"XDG_RUNTIME_DIR", place / "run"},
                 {"XDG_CONFIG_DIRS", place / "config"},
                 {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (place / "run" / "bus").string()},
                 // Nobody is there: the machine's own would lock its user's screen.
                 {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (place / "run" / "no-system-bus").string()},
                 {"PATH", (place / "bin").string() + ":/usr/local/bin:/usr/bin:/bin"},
                 {"LANG", "C.UTF-8"}};
}

void VirtualDesktop::startServer() {
    const std::string program = executable({"/usr/lib/xorg/Xorg", "/usr/libexec/Xorg"});
    int ready[2] = {-1, -1};
    for (int number = firstDisplay; number <= lastDisplay; ++number) {
        const std::string socket = "/tmp/.X11-unix/X" + std::to_string(number);
        if (isListening(socket)) continue;
        if (::pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("no pipe for the X server");
        display = ":" + std::to_string(number);
        // From the folder of x.conf, because an ordinary user may not name an absolute path; a seat of its
        // own keeps the server away from the machine's real screens, devices and terminals.
        std::vector<std::string> arguments{program,
                                           display,
                                           "-config",
                                           "x.conf",
                                           "-configdir",
                                           "none",
                                           "-logfile",
                                           (place / "server.log").string(),
                                           "-noreset",
                                           "-seat",
                                           "seat9",
                                           "-nolisten",
                                           "tcp",
                                           "-displayfd",
                                           std::to_string(ready[1])};
        arguments.insert(arguments.end(), furtherArguments.begin(), furtherArguments.end());
        if (plugs == Plugs::open) arguments = HotPlug::launchCommand(std::move(arguments));
        server = std::make_unique<ChildProcess>(Launch{.arguments = std::move(arguments),
                                                       .environment = variables,
                                                       .directory = place,
                                                       .output = place / "server.output",
                                                       .errors = {},
                                                       .inheritedDescriptor = ready[1]});
        ::close(ready[1]);
        const bool isReady = serverIsReady(ready[0]);
        ::close(ready[0]);
        if (isReady) {
            variables["DISPLAY"] = display;
            return;
        }
        server.reset();
        // Somebody else may have taken the number in between; any other reason would come again.
        if (readFile(place / "server.output").find("already running") == std::string::npos) break;
    }
    throw std::runtime_error("the X server did not start:\n" + readFile(place / "server.output"));
}

void VirtualDesktop::startBus() {
    bus = std::make_unique<ChildProcess>(Launch{
        .arguments = {executable({"/usr/bin/dbus-daemon"}), "--config-file", place / "bus.conf", "--nofork"},
        .environment = variables,
        .directory = place,
        .output = place / "bus.output",
        .errors = {}});
    if (!waitUntil([&] { return std::filesystem::exists(place / "run" / "bus"); })) {
        throw std::runtime_error("the session bus did not start:\n" + readFile(place / "bus.output"));
    }
}

void VirtualDesktop::startWindowManager() {
    windowManager =
        std::make_unique<ChildProcess>(Launch{.arguments = {executable({"/usr/bin/openbox"}), "--sm-disable",
                                                            "--config-file", place / "openbox.xml"},
                                              .environment = variables,
                                              .directory = place,
                                              .output = place / "openbox.output",
                                              .errors = {}});
    XConnection connection(display);
    // Its properties are there before it listens, and a window shown in between stays unmanaged; so it is
    // ready when it has done something that it was asked for.
    const auto obeys = [&] {
        connection.sendToRoot("_NET_CURRENT_DESKTOP", desktops - 1);
        return connection.property(connection.root(), "_NET_CURRENT_DESKTOP") ==
               std::vector<long>{desktops - 1};
    };
    if (!waitUntil(obeys)) {
        throw std::runtime_error("the window manager did not start:\n" + readFile(place / "openbox.output"));
    }
}

bool VirtualDesktop::isAlive() {
    return server && server->isRunning() && bus->isRunning() && windowManager->isRunning();
}

std::string VirtualDesktop::serverLog() const {
    return readFile(place / "server.log");
}

std::string VirtualDesktop::opened() const {
    return readFile(place / "opened");
}

void VirtualDesktop::reset() {
    for (HardwareDevice* device : {firstPointer.get(), secondPointer.get(), penTablet.get(), keys.get()}) {
        device->releaseAll();
    }
    endAdopted();
    std::filesystem::remove(place / "opened");
    XConnection connection(display);
    connection.sendToRoot("_NET_CURRENT_DESKTOP", 0);
    const auto isFirst = [&] {
        return connection.property(connection.root(), "_NET_CURRENT_DESKTOP") == std::vector<long>{0};
    };
    if (!waitUntil(isFirst)) throw std::runtime_error("the window manager does not change the desktop");
}

void VirtualDesktop::killServer() {
    server->signal(SIGKILL);
    server->waitForEnd(timeout);
}

void VirtualDesktop::takeDown() {
    firstPointer.reset();
    secondPointer.reset();
    penTablet.reset();
    keys.reset();
    windowManager.reset();
    bus.reset();
    server.reset();
    endAdopted();
    std::error_code ignored;
    if (!place.empty()) std::filesystem::remove_all(place, ignored);
    if (claim >= 0) ::close(claim);
}

}  // namespace trelvan::desktop
