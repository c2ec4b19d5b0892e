#include "Platform/Shared/AtomicFile.hpp"

#include "Platform/Shared/Descriptor.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <random>
#include <utility>

namespace trelvan {

namespace {

constexpr mode_t ownerOnly = 0600;
constexpr mode_t anybody = 0666;
constexpr mode_t permissionBits = 07777;
constexpr mode_t groupBits = 0070;
constexpr int maxLinks = 40;
constexpr int maxTries = 100;
/// So long a replacement has at least, should its lock not be there yet.
constexpr std::time_t staleAge = 60;
/// Names have 255 bytes; the rest is for what is added.
constexpr std::size_t longestNamePart = 200;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code because(std::errc reason) {
    return std::make_error_code(reason);
}

/// Why something that is there cannot be read or replaced as a file.
std::error_code unlikeFile(mode_t mode) {
    if (S_ISREG(mode)) return {};
    return because(S_ISDIR(mode) ? std::errc::is_a_directory : std::errc::invalid_argument);
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return fsync(descriptor) == 0;
}

void syncFolder(const std::string& folder) {
    const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) fsync(descriptor.number());
}

/// A name that nobody can guess beforehand.
std::string randomName(const std::string& prefix) {
    std::random_device random;
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x%08x", random(), random());
    return prefix + digits.data();
}

/// A new file beside the one to come, removed at the end of its block unless it took that one's place.
class TemporaryFile {
  public:
    TemporaryFile(const std::string& target, mode_t mode) {
        const std::string prefix = temporaryPrefix(target);
        for (int tries = 0; tries < maxTries; ++tries) {
            path_ = randomName(prefix);
            file_ =
                Descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
            if (file_.isOpen() || errno != EEXIST) break;
        }
        // As long as this process lives nobody takes the file for one that was left behind.
        if (file_.isOpen()) flock(file_.number(), LOCK_EX | LOCK_NB);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (file_.isOpen() && !path_.empty()) unlink(path_.c_str());
    }

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    [[nodiscard]] int number() const { return file_.number(); }

    bool takePlaceOf(const std::string& target) {
        if (rename(path_.c_str(), target.c_str()) != 0) return false;
        path_.clear();
        return true;
    }
    /// Fails where something is there already.
    [[nodiscard]] bool takeFreePlace(const std::string& target) {
        if (link(path_.c_str(), target.c_str()) == 0) return true;
        // A file system without hard links; whoever else wants the name looks first, as the caller did.
        return (errno == EPERM || errno == EOPNOTSUPP) && takePlaceOf(target);
    }

  private:
    std::string path_;
    Descriptor file_;
};

/// Gives the new file the owner and the permissions of the one that it replaces.
bool inherit(int descriptor, const struct stat& old) {
    struct stat fresh {};
    if (fstat(descriptor, &fresh) != 0) return false;
    mode_t mode = old.st_mode & permissionBits;
    const bool isOthers = fresh.st_uid != old.st_uid || fresh.st_gid != old.st_gid;
    // What a group could read stays away from another one.
    if (isOthers && fchown(descriptor, old.st_uid, old.st_gid) != 0 && fresh.st_gid != old.st_gid)
        mode &= ~groupBits;
    return fchmod(descriptor, mode) == 0;
}

bool isStale(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!file.isOpen() || fstat(file.number(), &info) != 0) return false;
    return S_ISREG(info.st_mode) && info.st_uid == geteuid() &&
           info.st_mtime + staleAge < std::time(nullptr) && flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

}  // namespace

FileContent readRegularFile(const std::string& path, std::size_t largest) {
    const auto failed = [](const std::error_code& reason) {
        return FileContent{.bytes = {}, .missing = false, .error = reason.message()};
    };
    // Opening a device may do something already; a pipe is opened without waiting for its other end.
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) {
        return {.bytes = {}, .missing = errno == ENOENT || errno == ENOTDIR, .error = lastError().message()};
    }
    if (const auto reason = unlikeFile(info.st_mode)) return failed(reason);
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() || fstat(file.number(), &info) != 0) return failed(lastError());
    if (const auto reason = unlikeFile(info.st_mode)) return failed(reason);
    std::string bytes;
    std::array<char, 65536> block{};
    for (;;) {
        const auto count = read(file.number(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return failed(lastError());
        if (count == 0) return {.bytes = std::move(bytes), .missing = false, .error = {}};
        if (bytes.size() + static_cast<std::size_t>(count) > largest)
            return failed(because(std::errc::file_too_large));
        bytes.append(block.data(), static_cast<std::size_t>(count));
    }
}

std::string linkTarget(const std::string& path) {
    std::filesystem::path current = path;
    for (int links = 0; links < maxLinks; ++links) {
        std::error_code error;
        const auto target = std::filesystem::read_symlink(current, error);
        if (error) break;
        current = current.parent_path() / target;
    }
    return current.string();
}

std::string folderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::error_code replaceWhole(const std::string& path, std::string_view bytes, NewFile kind) {
    const std::string target = linkTarget(path);
    struct stat old {};
    const bool isThere = lstat(target.c_str(), &old) == 0;
    if (isThere && S_ISLNK(old.st_mode)) return because(std::errc::too_many_symbolic_link_levels);
    if (isThere) {
        if (const auto reason = unlikeFile(old.st_mode)) return reason;
    } else if (errno != ENOENT) {
        return lastError();
    }
    removeStaleTemporaries(target);
    TemporaryFile file(target, !isThere && kind == NewFile::asUsual ? anybody : ownerOnly);
    if (!file.isOpen() || (isThere && !inherit(file.number(), old)) || !writeAll(file.number(), bytes) ||
        !file.takePlaceOf(target))
        return lastError();
    syncFolder(folderOf(target));
    return {};
}

std::error_code createWhole(const std::string& path, std::string_view bytes) {
    TemporaryFile file(path, ownerOnly);
    if (!file.isOpen() || !writeAll(file.number(), bytes) || !file.takeFreePlace(path)) return lastError();
    syncFolder(folderOf(path));
    return {};
}

std::string temporaryPrefix(const std::string& path) {
    const std::filesystem::path whole = path;
    const auto name = "." + whole.filename().string().substr(0, longestNamePart) + ".trelvan-";
    return (whole.parent_path() / name).string();
}

void removeStaleTemporaries(const std::string& path) {
    const std::string target = linkTarget(path);
    const auto prefix = std::filesystem::path(temporaryPrefix(target)).filename().string();
    std::error_code error;
    std::filesystem::directory_iterator entries(folderOf(target), error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        const auto& entry = entries->path();
        if (entry.filename().string().starts_with(prefix) && isStale(entry.string())) unlink(entry.c_str());
    }
}

}  // namespace trelvan
