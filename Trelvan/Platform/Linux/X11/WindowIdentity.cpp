#include "Platform/Linux/X11/WindowIdentity.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace trelvan {

namespace {

bool descendsFrom(long process, long ancestor, const ParentOf& parentOf) {
    constexpr int deepest = 32;
    for (int depth = 0; depth < deepest && process > 1; ++depth) {
        if (process == ancestor) return true;
        process = parentOf(process);
    }
    return false;
}

}  // namespace

std::string comparableClass(std::string_view name) {
    std::string result(name);
    std::ranges::transform(result, result.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return result;
}

long parentProcess(long process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // "PID (name) state parent …"; the name may hold anything.
    const auto nameEnd = line.rfind(')');
    constexpr std::size_t toParent = 4;
    if (nameEnd == std::string::npos || nameEnd + toParent >= line.size()) return 0;
    return std::strtol(line.c_str() + nameEnd + toParent, nullptr, 10);
}

bool isWindowOf(const ApplicationIdentity& application, const WindowTraits& window,
                const ParentOf& parentOf) {
    if (!application.startupId.empty() && window.startupId == application.startupId) return true;
    const auto isNamed = [&](std::string_view name) {
        return std::ranges::find(application.names, comparableClass(name)) != application.names.end();
    };
    if (isNamed(window.className) || isNamed(window.instanceName)) return true;
    return application.process > 1 && descendsFrom(window.process, application.process, parentOf);
}

}  // namespace trelvan
