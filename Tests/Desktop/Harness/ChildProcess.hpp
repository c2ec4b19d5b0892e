#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// What a child process is started with. The environment is exactly the given one.
struct Launch {
    std::vector<std::string> arguments;  ///< the program's path first
    std::map<std::string, std::string> environment;
    std::filesystem::path directory;
    std::filesystem::path output;  ///< takes standard output; appended to
    std::filesystem::path errors;  ///< takes standard error; the same as output when empty
    int inheritedDescriptor = -1;  ///< stays open in the child under its own number
};

/// One child process in a process group of its own; ends with its owner, and by the kernel's hand when the
/// owner is killed. Made and used on the main thread.
class ChildProcess {
  public:
    /// Throws std::runtime_error when the program cannot be run.
    explicit ChildProcess(const Launch& launch);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const { return process; }
    [[nodiscard]] bool isRunning();
    void signal(int number);

    /// The wait status of waitpid(2), once the process has ended; none when it has not within the bound.
    std::optional<int> waitForEnd(std::chrono::milliseconds bound);

    /// Asks the process to end, and after a bound ends it and its group by force.
    void stop();

  private:
    pid_t process = -1;
    std::optional<int> waitStatus;
};

/// Makes this process the parent of its descendants' orphans, so that none can outlive it unseen.
void adoptOrphans();

/// Ends every child process that came by adoption: all that no ChildProcess stands for.
void endAdopted();

/// The whole content of a file; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);

/// Throws std::runtime_error when the file cannot be written.
void writeFile(const std::filesystem::path& path, const std::string& content);

}  // namespace trelvan::desktop
