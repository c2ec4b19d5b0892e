#include "Desktop/Harness/ChildProcess.hpp"

#include "Desktop/Harness/Wait.hpp"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace trelvan::desktop {
namespace {

/// The processes that have an owner.
std::set<pid_t>& owned() {
    static std::set<pid_t> processes;
    return processes;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

int openForAppending(const std::filesystem::path& path) {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
}

/// The child's side of the fork: nothing here may allocate. Writes errno to `report` when exec fails.
[[noreturn]] void becomeProgram(char* const* arguments, char* const* environment, const char* directory,
                                const int (&streams)[3], int inherited, int report, pid_t parent) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    bool ready = ::getppid() == parent;
    for (int stream = 0; stream < 3; ++stream) ready = ready && ::dup2(streams[stream], stream) == stream;
    if (inherited >= 0) ready = ready && ::fcntl(inherited, F_SETFD, 0) == 0;
    if (ready && ::chdir(directory) == 0) ::execve(arguments[0], arguments, environment);
    const int reason = errno;
    [[maybe_unused]] const auto written = ::write(report, &reason, sizeof reason);
    ::_exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const Launch& launch) {
    std::vector<std::string> arguments = launch.arguments;
    std::vector<std::string> variables;
    for (const auto& [name, value] : launch.environment) variables.push_back(name + "=" + value);
    const auto argumentPointers = pointersTo(arguments);
    const auto variablePointers = pointersTo(variables);
    const std::string directory = launch.directory.empty() ? "/" : launch.directory.string();

    const int output = openForAppending(launch.output.empty() ? "/dev/null" : launch.output);
    const int streams[3] = {::open("/dev/null", O_RDONLY | O_CLOEXEC), output,
                            launch.errors.empty() ? output : openForAppending(launch.errors)};
    int report[2] = {-1, -1};
    if (::pipe2(report, O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a child process");
    const pid_t parent = ::getpid();
    process = ::fork();
    if (process == 0) {
        becomeProgram(argumentPointers.data(), variablePointers.data(), directory.c_str(), streams,
                      launch.inheritedDescriptor, report[1], parent);
    }
    ::close(report[1]);
    for (const int stream : {streams[0], streams[1]}) ::close(stream);
    if (streams[2] != streams[1]) ::close(streams[2]);
    int reason = 0;
    const auto received = process > 0 ? ::read(report[0], &reason, sizeof reason) : -1;
    ::close(report[0]);
    if (received != 0) {
        if (process > 0) ::waitpid(process, nullptr, 0);
        throw std::runtime_error("cannot run " + arguments.front() + ": " + std::strerror(reason));
    }
    owned().insert(process);
}

ChildProcess::~ChildProcess() {
    stop();
    owned().erase(process);
}

bool ChildProcess::isRunning() {
    return !waitForEnd(std::chrono::milliseconds{0});
}

void ChildProcess::signal(int number) {
    if (!waitStatus) ::kill(process, number);
}

std::optional<int> ChildProcess::waitForEnd(std::chrono::milliseconds bound) {
    if (waitStatus) return waitStatus;
    int status = 0;
    if (waitUntil([&] { return ::waitpid(process, &status, WNOHANG) == process; }, bound))
        waitStatus = status;
    return waitStatus;
}

void ChildProcess::stop() {
    if (!isRunning()) {
        ::kill(-process, SIGKILL);
        return;
    }
    signal(SIGTERM);
    signal(SIGCONT);
    const bool ended = waitForEnd(std::chrono::seconds{5}).has_value();
    ::kill(-process, SIGKILL);
    if (!ended) waitForEnd(timeout);
}

void adoptOrphans() {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void endAdopted() {
    const std::string own = std::to_string(::getpid());
    std::ifstream list("/proc/self/task/" + own + "/children");
    for (pid_t child = 0; list >> child;) {
        if (owned().contains(child)) continue;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content << std::flush;
    if (!file) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace trelvan::desktop
