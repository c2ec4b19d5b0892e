#include "Platform/Linux/Guard.hpp"

#include "Platform/Linux/GuardWatch.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace trelvan {

namespace {

std::string_view displayName() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? name : "";
}

/// Cuts the new process loose from what the program was started with: terminal, signals and all open files
/// but the two.
void detach(int owner, int page) {
    setsid();
    prctl(PR_SET_NAME, "trelvan-guard");
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

}  // namespace

Guard::Guard() : file_(HeldPageFile::defaultFolder(), displayName()) {
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
    if (process_ > 0) waitpid(process_, nullptr, WNOHANG);
    process_ = -1;
}

Guard::~Guard() {
    // The file is the guard's to remove only after it has put things right.
    if (!owedBy(page()).any()) file_.remove();
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace trelvan
