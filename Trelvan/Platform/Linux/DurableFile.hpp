#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Files that survive a crash at any moment. Each function waits for the disk.

/// The bytes of a file. `missing` tells a file that is not there from one that cannot be read.
struct FileContent {
    std::optional<std::string> bytes;
    bool missing = false;
    std::string error;
};
[[nodiscard]] FileContent readFile(const std::string& path);

/// Where a path leads through symbolic links, also when nothing is there yet.
[[nodiscard]] std::string linkTarget(const std::string& path);

/// Replaces the file's content whole or not at all, readable by its owner only; makes the folder where it is
/// missing. Why it could not, else none.
[[nodiscard]] std::optional<std::string> replaceFile(const std::string& path, std::string_view bytes);

/// Writes a new file under the first free of the names prefix + "1" + suffix, "2" and so on; its path, or
/// none when it could not be written.
[[nodiscard]] std::optional<std::string> writeNumbered(const std::string& prefix, const std::string& suffix,
                                                       std::string_view bytes);

}  // namespace trelvan
