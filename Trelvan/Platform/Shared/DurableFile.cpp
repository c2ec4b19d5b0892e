#include "Platform/Shared/DurableFile.hpp"

#include "Platform/Files.hpp"

#include <filesystem>
#include <system_error>

namespace trelvan {

namespace {

constexpr int maxNumbers = 10'000;

}  // namespace

FileContent readFile(const std::string& path) {
    return readRegularFile(path, Files::largest);
}

std::optional<std::string> replaceFile(const std::string& path, std::string_view bytes) {
    std::error_code error;
    std::filesystem::create_directories(folderOf(linkTarget(path)), error);
    if (!error) error = replaceWhole(path, bytes, NewFile::forOwner);
    return error ? std::optional(error.message()) : std::nullopt;
}

std::optional<std::string> writeNumbered(const std::string& prefix, const std::string& suffix,
                                         std::string_view bytes) {
    std::error_code error;
    std::filesystem::create_directories(folderOf(prefix), error);
    for (int number = 1; number <= maxNumbers; ++number) {
        std::string path = prefix;
        path.append(std::to_string(number)).append(suffix);
        std::error_code ignored;
        // Looked at first, so that many copies cost no write each.
        if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) continue;
        error = createWhole(path, bytes);
        if (!error) return path;
        if (error != std::errc::file_exists) return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace trelvan
