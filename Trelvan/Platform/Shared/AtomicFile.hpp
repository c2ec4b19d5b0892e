#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace trelvan {

// Files of POSIX systems that survive a crash at any moment. Any thread; each call waits for the disk.

/// The bytes of a file. `missing` tells a file that is not there from one that cannot be read.
struct FileContent {
    std::optional<std::string> bytes;
    bool missing = false;
    std::string error;
};

/// The whole content of a file of at most `largest` bytes. What is no regular file (a pipe, a device, a
/// folder) is an error and never waited for.
[[nodiscard]] FileContent readRegularFile(const std::string& path, std::size_t largest);

/// Where a path leads through symbolic links, also when nothing is there yet.
[[nodiscard]] std::string linkTarget(const std::string& path);

/// The folder that holds the path; "." for a bare name.
[[nodiscard]] std::string folderOf(const std::string& path);

/// Who may read a file that was not there before; one that is replaced keeps its owner and permissions.
enum class NewFile { forOwner, asUsual };

/// Puts the bytes in the file's place whole or not at all. Symbolic links stay, and what they lead to is
/// replaced. What is no regular file is not replaced. The reason when it failed.
[[nodiscard]] std::error_code replaceWhole(const std::string& path, std::string_view bytes, NewFile kind);

/// Writes a new file, whole or not at all; fails with `file_exists` rather than replace one.
[[nodiscard]] std::error_code createWhole(const std::string& path, std::string_view bytes);

/// How the names of the temporary files begin that stand beside the file while it is replaced. Those that a
/// kill left behind are removed at the next replacement: ours, a minute old, and locked by nobody.
[[nodiscard]] std::string temporaryPrefix(const std::string& path);

/// Removes what killed replacements of the file left behind.
void removeStaleTemporaries(const std::string& path);

}  // namespace trelvan
