#include "Platform/Linux/HomeFolder.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace trelvan {

std::string homeFolder() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') return home;
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
        if (found->pw_dir != nullptr && *found->pw_dir == '/') return found->pw_dir;
    }
    return "/";
}

}  // namespace trelvan
