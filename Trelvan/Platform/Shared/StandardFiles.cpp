#include "Platform/Files.hpp"
#include "Platform/Shared/AtomicFile.hpp"

#include <utility>

namespace trelvan {

std::variant<std::string, FileError> StandardFiles::read(const std::string& path) {
    auto content = readRegularFile(path, largest);
    if (!content.bytes) return FileError{path + ": " + content.error};
    return std::move(*content.bytes);
}

std::optional<FileError> StandardFiles::write(const std::string& path, std::string_view bytes) {
    const auto reason = replaceWhole(path, bytes, NewFile::asUsual);
    return reason ? std::optional(FileError{path + ": " + reason.message()}) : std::nullopt;
}

}  // namespace trelvan
