#include "Platform/Linux/ApplicationIdentity.hpp"

#include "Platform/Linux/DesktopEntry.hpp"
#include "Platform/Linux/DurableFile.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace trelvan {

namespace {

/// Programs that run others: their name says nothing about the application.
constexpr std::array<std::string_view, 13> runners{"sh",      "bash",         "dash", "env",  "python",
                                                   "python3", "perl",         "java", "node", "gjs",
                                                   "flatpak", "gapplication", "snap"};

std::string lower(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return result;
}

void addName(std::vector<std::string>& names, std::string_view name) {
    auto text = lower(name);
    if (text.empty() || std::ranges::find(names, text) != names.end()) return;
    names.push_back(std::move(text));
}

void addProgram(std::vector<std::string>& names, std::string_view program) {
    const auto name = lastPathComponent(program);
    if (std::ranges::find(runners, name) == runners.end()) addName(names, name);
}

bool descendsFrom(long process, long ancestor, const ParentOf& parentOf) {
    constexpr int deepest = 32;
    for (int depth = 0; depth < deepest && process > 1; ++depth) {
        if (process == ancestor) return true;
        process = parentOf(process);
    }
    return false;
}

}  // namespace

ApplicationIdentity identityOf(const std::string& path) {
    ApplicationIdentity result;
    if (!path.ends_with(".desktop")) {
        addProgram(result.names, path);
        return result;
    }
    const auto content = readFile(path);
    const auto entry = content.bytes ? parseDesktopEntry(*content.bytes) : std::nullopt;
    if (!entry) return result;
    addName(result.names, entry->windowClass);
    const auto id = desktopEntryId(path);
    addName(result.names, id);
    // The last word of an id in the form of a reversed address.
    if (const auto dot = id.rfind('.'); dot != std::string_view::npos)
        addName(result.names, id.substr(dot + 1));
    // The command of an entry for a terminal is not what opens the window.
    if (entry->terminal) return result;
    if (const auto command = commandLine(*entry, path); !command.empty())
        addProgram(result.names, command.front());
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
        return std::ranges::find(application.names, lower(name)) != application.names.end();
    };
    if (isNamed(window.className) || isNamed(window.instanceName)) return true;
    return application.process > 1 && descendsFrom(window.process, application.process, parentOf);
}

}  // namespace trelvan
