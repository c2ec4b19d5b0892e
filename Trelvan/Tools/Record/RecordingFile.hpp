#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// A new file for a recording, which its owner alone can read; one that exists is never written over.
class RecordingFile {
  public:
    /// The file at the path, or under a free name in the working folder when the path is empty. None when it
    /// exists or cannot be made.
    [[nodiscard]] static std::optional<RecordingFile> create(const std::string& path);

    [[nodiscard]] const std::string& path() const { return path_; }
    /// Buffered: the tap waits for no disk.
    void write(std::string_view text) { std::fwrite(text.data(), 1, text.size(), file_.get()); }
    /// False when something of what was written did not reach the file.
    [[nodiscard]] bool flush() { return std::fflush(file_.get()) == 0 && std::ferror(file_.get()) == 0; }

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    RecordingFile(std::FILE* file, std::string path) : file_(file), path_(std::move(path)) {}

    std::unique_ptr<std::FILE, Close> file_;
    std::string path_;
};

}  // namespace trelvan
