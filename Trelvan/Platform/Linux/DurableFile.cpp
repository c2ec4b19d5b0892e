#include "Platform/Linux/DurableFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace trelvan {

namespace {

constexpr mode_t fileMode = 0600;
constexpr int mostLinks = 40;
constexpr int mostNumbers = 10'000;

/// Closes a descriptor at the end of its block.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

  private:
    int number_;
};

std::string lastError() {
    return std::generic_category().message(errno);
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

std::string folderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

void syncFolder(const std::string& folder) {
    const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) fsync(descriptor.number());
}

}  // namespace

FileContent readFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        return {.bytes = {}, .missing = errno == ENOENT || errno == ENOTDIR, .error = lastError()};
    std::string bytes;
    std::string block(65536, '\0');
    for (;;) {
        const auto count = read(file.number(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {.bytes = {}, .missing = false, .error = lastError()};
        if (count == 0) return {.bytes = std::move(bytes), .missing = false, .error = {}};
        bytes.append(block, 0, static_cast<std::size_t>(count));
    }
}

std::string linkTarget(const std::string& path) {
    std::filesystem::path current = path;
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code error;
        const auto target = std::filesystem::read_symlink(current, error);
        if (error) break;
        current = current.parent_path() / target;
    }
    return current.string();
}

std::optional<std::string> replaceFile(const std::string& path, std::string_view bytes) {
    const std::string target = linkTarget(path);
    const std::string folder = folderOf(target);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return error.message();
    std::string temporary = target + ".XXXXXX";
    const Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen()) return lastError();
    const bool isWritten = fchmod(file.number(), fileMode) == 0 && writeAll(file.number(), bytes) &&
                           rename(temporary.c_str(), target.c_str()) == 0;
    if (!isWritten) {
        auto reason = lastError();
        unlink(temporary.c_str());
        return reason;
    }
    syncFolder(folder);
    return std::nullopt;
}

std::optional<std::string> writeNumbered(const std::string& prefix, const std::string& suffix,
                                         std::string_view bytes) {
    const std::string folder = folderOf(prefix);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (int number = 1; number <= mostNumbers; ++number) {
        std::string path = prefix;
        path.append(std::to_string(number)).append(suffix);
        const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, fileMode));
        if (!file.isOpen()) {
            if (errno == EEXIST) continue;
            return std::nullopt;
        }
        if (!writeAll(file.number(), bytes)) {
            unlink(path.c_str());
            return std::nullopt;
        }
        syncFolder(folder);
        return path;
    }
    return std::nullopt;
}

}  // namespace trelvan
