#include "Platform/Linux/Applications/ApplicationIdentity.hpp"

#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

/// Programs that run others: their name says nothing about the application.
constexpr std::array<std::string_view, 13> runners{"sh",      "bash",         "dash", "env",  "python",
                                                   "python3", "perl",         "java", "node", "gjs",
                                                   "flatpak", "gapplication", "snap"};

void addName(std::vector<std::string>& names, std::string_view name) {
    auto text = comparableClass(name);
    if (text.empty() || std::ranges::find(names, text) != names.end()) return;
    names.push_back(std::move(text));
}

void addProgram(std::vector<std::string>& names, std::string_view program) {
    const auto name = lastPathComponent(program);
    if (std::ranges::find(runners, name) == runners.end()) addName(names, name);
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

}  // namespace trelvan
