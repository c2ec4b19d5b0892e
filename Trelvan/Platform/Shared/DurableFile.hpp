#pragma once

#include "Platform/Shared/AtomicFile.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

// The program's own files. Each function waits for the disk.

/// The bytes of a file of a size that this program has to do with.
[[nodiscard]] FileContent readFile(const std::string& path);

/// Replaces the file's content whole or not at all; a new one is readable by its owner only. Makes the folder
/// where it is missing. Why it could not, else none.
[[nodiscard]] std::optional<std::string> replaceFile(const std::string& path, std::string_view bytes);

/// Writes a new file under the first free of the names prefix + "1" + suffix, "2" and so on; its path, or
/// none when it could not be written.
[[nodiscard]] std::optional<std::string> writeNumbered(const std::string& prefix, const std::string& suffix,
                                                       std::string_view bytes);

}  // namespace trelvan
