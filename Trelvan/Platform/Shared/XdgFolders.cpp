#include "Platform/Shared/XdgFolders.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace trelvan {

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string folderOr(const char* name, std::string_view belowHome) {
    const auto value = variable(name);
    return value.starts_with('/') ? std::string(value) : homeFolder().append(belowHome);
}

std::vector<std::string> foldersOr(const char* name, std::string_view otherwise) {
    const auto value = variable(name);
    auto folders = colonSeparated(value.empty() ? otherwise : value);
    std::erase_if(folders, [](const std::string& folder) { return !folder.starts_with('/'); });
    return folders;
}

bool isWritableFolder(std::string_view path) {
    return path.starts_with('/') && access(std::string(path).c_str(), W_OK | X_OK) == 0;
}

}  // namespace

std::string homeFolder() {
    const auto home = variable("HOME");
    if (home.starts_with('/')) return std::string(home);
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
        if (found->pw_dir != nullptr && *found->pw_dir == '/') return found->pw_dir;
    }
    return "/";
}

std::string configHome() {
    return folderOr("XDG_CONFIG_HOME", "/.config");
}

std::vector<std::string> configFolders() {
    return foldersOr("XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<std::string> dataFolders() {
    auto folders = foldersOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    folders.insert(folders.begin(), folderOr("XDG_DATA_HOME", "/.local/share"));
    return folders;
}

std::string runtimeFolder() {
    if (const auto runtime = variable("XDG_RUNTIME_DIR"); isWritableFolder(runtime))
        return std::string(runtime);
    if (const auto cache = variable("XDG_CACHE_HOME"); isWritableFolder(cache))
        return std::string(cache).append("/trelvan");
    return homeFolder().append("/.cache/trelvan");
}

std::string_view currentDesktopNames() {
    return variable("XDG_CURRENT_DESKTOP");
}

std::vector<std::string> colonSeparated(std::string_view list) {
    std::vector<std::string> parts;
    while (!list.empty()) {
        const auto end = list.find(':');
        if (const auto part = list.substr(0, end); !part.empty()) parts.emplace_back(part);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return parts;
}

}  // namespace trelvan
