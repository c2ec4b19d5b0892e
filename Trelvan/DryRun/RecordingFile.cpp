#include "DryRun/RecordingFile.hpp"

#include <cerrno>

namespace trelvan {

std::optional<RecordingFile> RecordingFile::create(const std::string& path) {
    constexpr int mostNumbers = 9999;
    if (!path.empty()) {
        std::FILE* file = std::fopen(path.c_str(), "wx");
        return file != nullptr ? std::optional(RecordingFile(file, path)) : std::nullopt;
    }
    for (int number = 1; number <= mostNumbers; ++number) {
        std::string name = "trelvan-recording-" + std::to_string(number) + ".jsonl";
        if (std::FILE* file = std::fopen(name.c_str(), "wx")) return RecordingFile(file, std::move(name));
        if (errno != EEXIST) break;
    }
    return std::nullopt;
}

}  // namespace trelvan
