#include "Platform/Files.hpp"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace trelvan {

namespace {

FileError failure(const std::string& path, const std::error_code& reason) {
    return {path + ": " + reason.message()};
}

FileError lastFailure(const std::string& path) {
    const int number = errno != 0 ? errno : EIO;
    return failure(path, std::error_code(number, std::generic_category()));
}

}  // namespace

std::variant<std::string, FileError> StandardFiles::read(const std::string& path) {
    std::error_code error;
    // Devices and pipes could be read without end.
    const bool isFile = std::filesystem::is_regular_file(path, error);
    if (error) return failure(path, error);
    if (!isFile) return failure(path, std::make_error_code(std::errc::invalid_argument));
    const auto size = std::filesystem::file_size(path, error);
    if (error) return failure(path, error);
    if (size > largest) return failure(path, std::make_error_code(std::errc::file_too_large));
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!file || !file.read(bytes.data(), static_cast<std::streamsize>(size))) return lastFailure(path);
    return bytes;
}

std::optional<FileError> StandardFiles::write(const std::string& path, std::string_view bytes) {
    // Beside the file, so that the exchange stays on one disk.
    const std::string fresh = path + ".new";
    errno = 0;
    std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    std::error_code error;
    if (!file) {
        auto reason = lastFailure(path);
        std::filesystem::remove(fresh, error);
        return reason;
    }
    std::filesystem::rename(fresh, path, error);
    if (!error) return std::nullopt;
    auto reason = failure(path, error);
    std::filesystem::remove(fresh, error);
    return reason;
}

}  // namespace trelvan
