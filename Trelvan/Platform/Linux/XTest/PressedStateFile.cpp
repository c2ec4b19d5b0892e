#include "Platform/Linux/XTest/PressedStateFile.hpp"

#include "Platform/Shared/XdgFolders.hpp"

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
constexpr int maxFiles = 8;

constexpr mode_t ofOthers = S_IRWXG | S_IRWXO;
constexpr mode_t changedByOthers = S_IWGRP | S_IWOTH;

PressedState* map(int descriptor) {
    void* memory = mmap(nullptr, sizeof(PressedState), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : std::launder(static_cast<PressedState*>(memory));
}

/// Whether the folder is this user's, and nobody else can put files into it.
bool isPrivateFolder(int folder) {
    struct stat info {};
    return fstat(folder, &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
           (info.st_mode & changedByOthers) == 0;
}

/// Whether the file is this user's alone, under one name.
bool isPrivateFile(int file) {
    struct stat info {};
    return fstat(file, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid() &&
           (info.st_mode & ofOthers) == 0 && info.st_nlink == 1;
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

PressedStateFile::PressedStateFile(const std::string& folder, std::string_view display) {
    std::error_code ignored;
    const auto parent = std::filesystem::path(folder).parent_path();
    std::filesystem::create_directories(parent, ignored);
    mkdir(folder.c_str(), S_IRWXU);
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0 && isPrivateFolder(opened)) {
        const std::string prefix = fileName(display);
        for (int number = 0; number < maxFiles; ++number)
            visit(opened, folder, prefix + std::to_string(number));
    }
    if (opened >= 0) close(opened);
    if (page_ == nullptr) useMemory();
}

PressedStateFile::PressedStateFile(int descriptor, PressedState* page, std::string path)
    : path_(std::move(path)), descriptor_(descriptor), page_(page) {}

std::unique_ptr<PressedStateFile> PressedStateFile::handedOn(int descriptor, const std::string& path) {
    struct stat info {};
    const bool isWhole = fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) &&
                         info.st_size >= static_cast<off_t>(sizeof(PressedState));
    PressedState* page = isWhole ? map(descriptor) : nullptr;
    if (page != nullptr && page->version.load() == PressedState::currentVersion)
        return std::unique_ptr<PressedStateFile>(new PressedStateFile(descriptor, page, path));
    if (page != nullptr) munmap(page, sizeof(PressedState));
    if (descriptor >= 0) close(descriptor);
    return nullptr;
}

void PressedStateFile::useMemory() {
    descriptor_ = memfd_create("trelvan-held", MFD_CLOEXEC);
    if (descriptor_ >= 0 && ftruncate(descriptor_, sizeof(PressedState)) == 0) page_ = map(descriptor_);
    if (page_ == nullptr) throw std::bad_alloc();
    new (page_) PressedState;
}

PressedStateFile::~PressedStateFile() {
    munmap(page_, sizeof(PressedState));
    if (descriptor_ >= 0) close(descriptor_);
}

void PressedStateFile::visit(int folder, const std::string& folderPath, const std::string& name) {
    const int create = page_ == nullptr ? O_CREAT : 0;
    // A pipe or a device in its place must not hold the start up either.
    const int descriptor = openat(folder, name.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | create,
                                  S_IRUSR | S_IWUSR);
    if (descriptor < 0) return;
    // The lock belongs to the open file, which the guard shares: it is free when both have ended. Whoever had
    // it before may have removed the file meanwhile; then the next number will do.
    if (isPrivateFile(descriptor) && flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
        isStillAt(folderPath + "/" + name, descriptor) && claim(folder, name, descriptor)) {
        path_ = folderPath + "/" + name;
        return;
    }
    close(descriptor);
}

bool PressedStateFile::claim(int folder, const std::string& name, int descriptor) {
    struct stat info {};
    if (fstat(descriptor, &info) != 0) return false;
    // All of it now: where the disk is full, the memory behind a hole would be missing later.
    if (posix_fallocate(descriptor, 0, sizeof(PressedState)) != 0) return false;
    PressedState* found = map(descriptor);
    if (found == nullptr) return false;
    if (info.st_size == sizeof(PressedState) && found->version.load() == PressedState::currentVersion) {
        const PendingReleases debts = pendingReleasesIn(*found);
        leftOver_.buttons |= debts.buttons;
        leftOver_.keys |= debts.keys;
        leftOver_.lent |= debts.lent;
    }
    if (page_ != nullptr) {
        munmap(found, sizeof(PressedState));
        unlinkat(folder, name.c_str(), 0);
        return false;
    }
    page_ = new (found) PressedState;
    descriptor_ = descriptor;
    return true;
}

void PressedStateFile::remove() {
    if (!path_.empty() && isStillAt(path_, descriptor_)) unlink(path_.c_str());
}

}  // namespace trelvan
