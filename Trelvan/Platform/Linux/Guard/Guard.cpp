#include "Platform/Linux/Guard/Guard.hpp"

#include "Platform/Linux/Guard/GuardWatch.hpp"
#include "Platform/Shared/XdgFolders.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace trelvan {

namespace {

/// As the guard's process is named, and what its arguments begin with; the path of the page's file follows.
constexpr const char* processName = "trelvan-guard";
constexpr std::string_view argument = "--guard-process";
/// Where an executed guard finds its end of the connection, and the page.
constexpr int ownerPlace = 3;
constexpr int pagePlace = 4;

std::string_view displayName() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? name : "";
}

/// Cuts the new process loose from what the program was started with: terminal, signals and all open files
/// but the two.
void detach(int owner, int page) {
    setsid();
    prctl(PR_SET_NAME, processName);
    // It ends with the program and not before: a signal to all processes must leave it its last task.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGUSR1, SIGUSR2, SIGTSTP}) {
        ::signal(signal, SIG_IGN);
    }
    [[maybe_unused]] const int changed = chdir("/");
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (int stream = 0; stream < 3; ++stream) {
        if (nothing >= 0 && stream != owner && stream != page) dup2(nothing, stream);
    }
    constexpr int firstAfterStreams = 3;
    int next = firstAfterStreams;
    for (const int kept : {std::min(owner, page), std::max(owner, page)}) {
        if (kept < next) continue;
        if (kept > next) close_range(static_cast<unsigned>(next), static_cast<unsigned>(kept) - 1, 0);
        next = kept + 1;
    }
    close_range(static_cast<unsigned>(next), ~0U, 0);
}

/// The attributes and the actions of a process to start, and their end.
struct Launch {
    Launch(int owner, int page) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, owner, ownerPlace);
        posix_spawn_file_actions_adddup2(&actions, page, pagePlace);
        posix_spawnattr_init(&attributes);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    }
    Launch(const Launch&) = delete;
    Launch& operator=(const Launch&) = delete;
    ~Launch() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

/// The same file under a number that is none of the guard's places.
int outOfTheWay(int descriptor) {
    return fcntl(descriptor, F_DUPFD_CLOEXEC, pagePlace + 1);
}

/// This program as it was started, also where its file has been replaced since.
pid_t execute(int owner, int page, const std::string& path) {
    const int ownerCopy = outOfTheWay(owner);
    const int pageCopy = outOfTheWay(page);
    pid_t process = -1;
    if (ownerCopy >= 0 && pageCopy >= 0) {
        const Launch launch(ownerCopy, pageCopy);
        std::string name(processName);
        std::string option(argument);
        std::string file(path);
        const std::array<char*, 4> arguments{name.data(), option.data(), file.data(), nullptr};
        if (posix_spawn(&process, "/proc/self/exe", &launch.actions, &launch.attributes, arguments.data(),
                        environ) != 0)
            process = -1;
    }
    for (const int copy : {ownerCopy, pageCopy}) {
        if (copy >= 0) close(copy);
    }
    return process;
}

}  // namespace

Guard::Guard() : file_(runtimeFolder(), displayName()) {
    std::array<int, 2> ends{-1, -1};
    if (displayName().empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    process_ = fork();
    if (process_ == 0) {
        detach(ends[1], file_.descriptor());
        watchOver(file_, ends[1]);
        _exit(0);
    }
    close(ends[1]);
    if (process_ > 0) {
        descriptor_ = ends[0];
    } else {
        close(ends[0]);
    }
}

void Guard::noteEnd() {
    if (process_ > 0) {
        // It closes its files a moment before it is gone.
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    process_ = -1;
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
}

bool Guard::restart() {
    if (process_ > 0) return true;
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
    process_ = execute(ends[1], file_.descriptor(), file_.path());
    close(ends[1]);
    if (process_ > 0) {
        descriptor_ = ends[0];
    } else {
        close(ends[0]);
    }
    return process_ > 0;
}

void Guard::wake() const {
    // One that has not read the last ones yet wakes anyway.
    if (descriptor_ < 0) return;
    [[maybe_unused]] const auto sent = send(descriptor_, "", 1, MSG_DONTWAIT | MSG_NOSIGNAL);
}

std::optional<int> Guard::runIfAsked(int argc, char** argv) {
    if (argc != 3 || argv[1] != argument) return std::nullopt;
    const auto file = PressedStateFile::handedOn(pagePlace, argv[2]);
    if (!file) return EXIT_FAILURE;
    detach(ownerPlace, pagePlace);
    watchOver(*file, ownerPlace);
    return EXIT_SUCCESS;
}

Guard::~Guard() {
    // The file is the guard's to remove only after it has put things right.
    if (!pendingReleasesIn(page()).any()) file_.remove();
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace trelvan
