#include "Desktop/Harness/TrelvanProcess.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace trelvan::desktop {
namespace {

constexpr auto readyLine = "EventMonitor iniciado ✅";

/// A folder that no earlier run on this desktop had.
std::filesystem::path freshFolder(const VirtualDesktop& desktop) {
    static int count = 0;
    const auto folder = desktop.folder() / ("run-" + std::to_string(++count));
    std::filesystem::create_directory(folder);
    return folder;
}

}  // namespace

std::string programPath() {
    const char* chosen = std::getenv("TRELVAN_PROGRAM");
    return chosen != nullptr ? chosen : TRELVAN_BUILT_PROGRAM;
}

TrelvanProcess::TrelvanProcess(VirtualDesktop& desktop, const Settings& settings,
                               const std::map<std::string, std::string>& more,
                               const std::vector<std::string>& command)
    : folder(freshFolder(desktop)) {
    std::filesystem::create_directory(folder / "config");
    writeFile(folder / "config" / "settings.json", settings.text());
    auto environment = desktop.environment();
    for (const auto& [name, value] : more) environment[name] = value;
    std::vector<std::string> arguments{programPath()};
    arguments.insert(arguments.end(), command.begin(), command.end());
    arguments.insert(arguments.end(), {"--config", (folder / "config").string()});
    process = std::make_unique<ChildProcess>(Launch{.arguments = arguments,
                                                    .environment = environment,
                                                    .directory = folder,
                                                    .output = folder / "output",
                                                    .errors = folder / "errors"});
    const bool isReady = waitUntil(
        [&] { return output().find(readyLine) != std::string::npos || !process->isRunning(); }, timeout);
    if (!isReady || output().find(readyLine) == std::string::npos) {
        throw std::runtime_error("the program does not serve the devices; its output:\n" + output() +
                                 readFile(folder / "errors"));
    }
}

bool TrelvanProcess::waitForLine(const std::string& text, std::chrono::milliseconds bound) const {
    return waitUntil([&] { return output().find(text) != std::string::npos; }, bound);
}

std::string TrelvanProcess::output() const {
    return readFile(folder / "output");
}

int TrelvanProcess::lines(const std::string& text) const {
    const std::string all = output();
    int count = 0;
    for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) ++count;
    return count;
}

std::string TrelvanProcess::errors() const {
    return readFile(folder / "errors");
}

std::optional<pid_t> TrelvanProcess::guardOf(pid_t program) {
    const std::string number = std::to_string(program);
    std::ifstream children("/proc/" + number + "/task/" + number + "/children");
    for (pid_t child = 0; children >> child;) {
        if (readFile("/proc/" + std::to_string(child) + "/comm") == "trelvan-guard\n") return child;
    }
    return std::nullopt;
}

nlohmann::json TrelvanProcess::storedSettings() const {
    return nlohmann::json::parse(readFile(folder / "config" / "settings.json"), nullptr, false);
}

ProgramResult runProgram(const VirtualDesktop& desktop, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment) {
    const auto folder = freshFolder(desktop);
    Launch launch{.arguments = {programPath()},
                  .environment = environment,
                  .directory = folder,
                  .output = folder / "output",
                  .errors = folder / "errors"};
    launch.arguments.insert(launch.arguments.end(), arguments.begin(), arguments.end());
    ChildProcess process(launch);
    const auto status = process.waitForEnd(timeout);
    ProgramResult result{
        .exitCode = {}, .output = readFile(folder / "output"), .errors = readFile(folder / "errors")};
    if (status && WIFEXITED(*status)) result.exitCode = WEXITSTATUS(*status);
    return result;
}

}  // namespace trelvan::desktop
