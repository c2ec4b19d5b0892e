#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// Why a file could not be read or written: the system's own words behind the path.
struct FileError {
    std::string text;
};

/// Files that the user has chosen, by absolute or relative path. Any thread; each call waits for the disk.
class Files {
  public:
    /// Larger files are refused: nothing of this program comes near it.
    static constexpr std::size_t largest = std::size_t{16} * 1024 * 1024;

    virtual ~Files() = default;

    /// The whole content.
    [[nodiscard]] virtual std::variant<std::string, FileError> read(const std::string& path) = 0;
    /// Puts the bytes in the file's place whole, or leaves the file as it was. Permissions of a file that is
    /// replaced stay.
    [[nodiscard]] virtual std::optional<FileError> write(const std::string& path, std::string_view bytes) = 0;
};

/// The files of a POSIX system.
class StandardFiles final : public Files {
  public:
    [[nodiscard]] std::variant<std::string, FileError> read(const std::string& path) override;
    [[nodiscard]] std::optional<FileError> write(const std::string& path, std::string_view bytes) override;
};

}  // namespace trelvan
