#include "Desktop/Harness/FakeService.hpp"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace trelvan::desktop {

FakeService::FakeService(VirtualDesktop& onDesktop, const std::string& busName,
                         const std::vector<std::string>& answers)
    : desktop(onDesktop), name(busName) {
    static int count = 0;
    record = desktop.folder() / ("service-" + std::to_string(++count));
    Launch launch{.arguments = {TRELVAN_FAKE_SERVICE, record.string(), name},
                  .environment = desktop.environment(),
                  .directory = desktop.folder(),
                  .output = record.string() + ".output",
                  .errors = {}};
    launch.arguments.insert(launch.arguments.end(), answers.begin(), answers.end());
    process = std::make_unique<ChildProcess>(launch);
    if (!waitUntil([&] { return readFile(record).starts_with("ready\n"); })) {
        throw std::runtime_error("no service " + name + ": " + readFile(launch.output));
    }
}

void FakeService::emitSignal(const std::string& path, const std::string& interface, const std::string& member,
                             const std::vector<std::string>& values) const {
    Launch launch{
        .arguments = {"/usr/bin/dbus-send", "--session", "--print-reply", "--dest=" + name, "/",
                      "test.Signals.Emit", "string:" + path, "string:" + interface, "string:" + member},
        .environment = desktop.environment(),
        .directory = desktop.folder(),
        .output = record.string() + ".signals",
        .errors = {}};
    for (const auto& value : values) launch.arguments.push_back("string:" + value);
    ChildProcess sender(launch);
    if (sender.waitForEnd(timeout) != 0)
        throw std::runtime_error("no signal " + member + ": " + readFile(launch.output));
}

std::vector<std::string> FakeService::calls() const {
    std::istringstream lines(readFile(record));
    std::vector<std::string> result;
    for (std::string line; std::getline(lines, line);) {
        if (line != "ready") result.push_back(line);
    }
    return result;
}

bool FakeService::waitForCall(const std::string& call, std::chrono::milliseconds bound) const {
    return waitUntil(
        [&] {
            const auto all = calls();
            return std::find(all.begin(), all.end(), call) != all.end();
        },
        bound);
}

}  // namespace trelvan::desktop
