#include "Platform/Files.hpp"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace trelvan {

namespace {

FileError failure(const std::string& path, const std::error_code& reason) {
    return {path + ": " + reason.message()};
}

FileError lastFailure(const std::string& path) {
    const int number = errno != 0 ? errno : EIO;
    return failure(path, std::error_code(number, std::generic_category()));
}

/// Why something that is there is no file to read or replace: a device or a pipe is used by others and may
/// have no end. None for a file, and for a place where nothing is.
std::optional<FileError> unlikeFile(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    switch (status.type()) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::not_found:
            return std::nullopt;
        case std::filesystem::file_type::none:
            return failure(path, error);
        case std::filesystem::file_type::directory:
            return failure(path, std::make_error_code(std::errc::is_a_directory));
        default:
            return failure(path, std::make_error_code(std::errc::invalid_argument));
    }
}

/// A name beside the file, so that the exchange stays on one disk, that nobody uses.
std::string freshNameBeside(const std::string& path) {
    std::error_code ignored;
    std::string fresh = path + ".new";
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(fresh, ignored)); ++number)
        fresh = path + ".new" + std::to_string(number);
    return fresh;
}

}  // namespace

std::variant<std::string, FileError> StandardFiles::read(const std::string& path) {
    if (auto reason = unlikeFile(path)) return std::move(*reason);
    std::error_code error;
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
    if (auto reason = unlikeFile(path)) return reason;
    std::error_code error;
    // A link stays one: what it leads to is replaced.
    const bool isLink = std::filesystem::is_symlink(path, error);
    const std::string target = isLink ? std::filesystem::weakly_canonical(path, error).string() : path;
    if (error && isLink) return failure(path, error);
    const std::string fresh = freshNameBeside(target);
    errno = 0;
    std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        auto reason = lastFailure(path);
        std::filesystem::remove(fresh, error);
        return reason;
    }
    std::filesystem::rename(fresh, target, error);
    if (!error) return std::nullopt;
    auto reason = failure(path, error);
    std::filesystem::remove(fresh, error);
    return reason;
}

}  // namespace trelvan
