#include "Platform/Linux/HeldPageFile.hpp"

#include "Platform/Linux/HomeFolder.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <utility>

namespace trelvan {

namespace {

/// Programs at once on one display that have a file each.
constexpr int mostPages = 8;

void* map(int descriptor) {
    const int flags = descriptor >= 0 ? MAP_SHARED : MAP_SHARED | MAP_ANONYMOUS;
    void* memory = mmap(nullptr, sizeof(HeldPage), PROT_READ | PROT_WRITE, flags, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

bool isStillAt(const std::string& path, int descriptor) {
    struct stat own {};
    struct stat there {};
    return fstat(descriptor, &own) == 0 && lstat(path.c_str(), &there) == 0 && own.st_ino == there.st_ino &&
           own.st_dev == there.st_dev;
}

/// "host:10.0" as part of a file name; the screen is no part of the display.
std::string fileName(std::string_view display) {
    const auto colon = display.rfind(':');
    std::string name(display.substr(0, colon == std::string_view::npos
                                           ? display.size()
                                           : std::min(display.find('.', colon), display.size())));
    std::ranges::replace(name, '/', '_');
    return "trelvan-held" + name + "-";
}

}  // namespace

HeldPageFile::HeldPageFile(const std::string& folder, std::string_view display) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string prefix = folder + "/" + fileName(display);
    for (int number = 0; number < mostPages; ++number) visit(prefix + std::to_string(number));
    if (page_ == nullptr) {
        void* memory = map(-1);
        if (memory == nullptr) throw std::bad_alloc();
        page_ = new (memory) HeldPage;
    }
}

HeldPageFile::~HeldPageFile() {
    munmap(page_, sizeof(HeldPage));
    if (descriptor_ >= 0) close(descriptor_);
}

std::string HeldPageFile::defaultFolder() {
    for (const auto& [variable, rest] : {std::pair{"XDG_RUNTIME_DIR", ""}, {"XDG_CACHE_HOME", "/trelvan"}}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value == '/' && access(value, W_OK | X_OK) == 0)
            return std::string(value) + rest;
    }
    return homeFolder() + "/.cache/trelvan";
}

void HeldPageFile::visit(const std::string& path) {
    const int create = page_ == nullptr ? O_CREAT : 0;
    const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | create, 0600);
    if (descriptor < 0) return;
    // The lock belongs to the open file, which the guard shares: it is free when both have ended. Whoever had
    // it before may have removed the file meanwhile; then the next number will do.
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isStillAt(path, descriptor) && claim(path, descriptor))
        return;
    close(descriptor);
}

bool HeldPageFile::claim(const std::string& path, int descriptor) {
    struct stat info {};
    if (fstat(descriptor, &info) != 0) return false;
    // All of it now: where the disk is full, the memory behind a hole would be missing later.
    if (posix_fallocate(descriptor, 0, sizeof(HeldPage)) != 0) return false;
    void* memory = map(descriptor);
    if (memory == nullptr) return false;
    auto* found = std::launder(static_cast<HeldPage*>(memory));
    if (info.st_size == sizeof(HeldPage) && found->version.load() == HeldPage::currentVersion) {
        const Owed debts = owedBy(*found);
        leftOver_.buttons |= debts.buttons;
        leftOver_.keys |= debts.keys;
        leftOver_.lent |= debts.lent;
    }
    if (page_ != nullptr) {
        munmap(memory, sizeof(HeldPage));
        unlink(path.c_str());
        return false;
    }
    page_ = new (memory) HeldPage;
    descriptor_ = descriptor;
    path_ = path;
    return true;
}

void HeldPageFile::remove() {
    if (descriptor_ >= 0 && isStillAt(path_, descriptor_)) unlink(path_.c_str());
}

}  // namespace trelvan
