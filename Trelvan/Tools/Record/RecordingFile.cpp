#include "Tools/Record/RecordingFile.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace trelvan {

namespace {

/// A new file that nobody but the user can read: it says when and where they press. Null when it exists or
/// cannot be made.
std::FILE* createPrivate(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) return nullptr;
    std::FILE* file = fdopen(descriptor, "w");
    if (file == nullptr) close(descriptor);
    return file;
}

}  // namespace

std::optional<RecordingFile> RecordingFile::create(const std::string& path) {
    constexpr int maxNumbers = 9999;
    if (!path.empty()) {
        std::FILE* file = createPrivate(path);
        return file != nullptr ? std::optional(RecordingFile(file, path)) : std::nullopt;
    }
    for (int number = 1; number <= maxNumbers; ++number) {
        std::string name = "trelvan-recording-" + std::to_string(number) + ".jsonl";
        if (std::FILE* file = createPrivate(name)) return RecordingFile(file, std::move(name));
        if (errno != EEXIST) break;
    }
    return std::nullopt;
}

}  // namespace trelvan
