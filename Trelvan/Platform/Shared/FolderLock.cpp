#include "Platform/Shared/FolderLock.hpp"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace trelvan {

namespace {

constexpr int tries = 20;
constexpr std::chrono::milliseconds pause{5};

}  // namespace

FolderLock::FolderLock(const std::string& folder)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (!folder_.isOpen()) return;
    for (int left = tries; left > 0; --left) {
        heldByAnother_ = flock(folder_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (!heldByAnother_) return;
        std::this_thread::sleep_for(pause);
    }
}

}  // namespace trelvan
