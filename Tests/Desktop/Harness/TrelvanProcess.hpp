#pragma once

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/Settings.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"
#include "Desktop/Harness/Wait.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// The program under test, run on a virtual desktop with settings of its own. Main thread.
class TrelvanProcess {
  public:
    /// Starts the program with these settings, with `more` in its environment and `command` before its other
    /// arguments, and waits until it serves
    /// the devices. Throws std::runtime_error with the program's output when it does not come to that.
    TrelvanProcess(VirtualDesktop& desktop, const Settings& settings,
                   const std::map<std::string, std::string>& more = {},
                   const std::vector<std::string>& command = {});

    /// Waits for a line of the output that contains the text.
    bool waitForLine(const std::string& text, std::chrono::milliseconds bound = timeout) const;
    [[nodiscard]] std::string output() const;
    /// How often the output contains the text.
    [[nodiscard]] int lines(const std::string& text) const;
    [[nodiscard]] std::string errors() const;
    [[nodiscard]] nlohmann::json storedSettings() const;

    /// The process that guards this one; none when there is no such process now.
    [[nodiscard]] std::optional<pid_t> guard() const { return guardOf(process->id()); }
    [[nodiscard]] pid_t id() const { return process->id(); }
    [[nodiscard]] bool isRunning() { return process->isRunning(); }
    void signal(int number) { process->signal(number); }
    /// The wait status of waitpid(2); none when the program goes on past the bound.
    std::optional<int> waitForEnd() { return process->waitForEnd(timeout); }

  private:
    [[nodiscard]] static std::optional<pid_t> guardOf(pid_t program);

    std::filesystem::path folder;
    std::unique_ptr<ChildProcess> process;
};

/// What a run of the program with these arguments, to its end, came to.
struct ProgramResult {
    std::optional<int> exitCode;  ///< none when it was ended by a signal or did not end in time
    std::string output;
    std::string errors;
};
ProgramResult runProgram(const VirtualDesktop& desktop, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment);

/// The program's path: the environment's TRELVAN_PROGRAM, or the one of this build.
std::string programPath();

}  // namespace trelvan::desktop
