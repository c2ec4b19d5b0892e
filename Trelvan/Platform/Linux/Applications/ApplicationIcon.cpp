#include "Platform/Linux/Applications/ApplicationIcon.hpp"

#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>

namespace trelvan {

namespace {

constexpr std::string_view imageEnding = ".AppImage";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

char lowered(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// "Krita-5.2.2-x86_64.AppImage" is the program krita: the name up to its version or its machine.
std::string imageName(std::string_view file) {
    file.remove_suffix(imageEnding.size());
    for (std::size_t index = 1; index + 1 < file.size(); ++index) {
        const bool separates = file[index] == '-' || file[index] == '_' || file[index] == '.';
        const auto rest = file.substr(index + 1);
        const bool isVersion = isDigit(rest[0]) || (rest[0] == 'v' && rest.size() > 1 && isDigit(rest[1]));
        if (separates && (isVersion || rest.starts_with("x86_64") || rest.starts_with("aarch64"))) {
            file = file.substr(0, index);
            break;
        }
    }
    std::string name(file);
    std::ranges::transform(name, name.begin(), lowered);
    return name;
}

}  // namespace

std::optional<std::string> applicationIcon(std::string_view path) {
    if (path.ends_with(".desktop")) {
        const auto content = readFile(std::string(path));
        const auto entry = content.bytes ? parseDesktopEntry(*content.bytes) : std::nullopt;
        return entry && !entry->icon.empty() ? std::optional(entry->icon) : std::nullopt;
    }
    auto file = lastPathComponent(path);
    if (file.ends_with(imageEnding)) return imageName(file);
    for (const std::string_view ending : {".sh", ".py", ".bin"}) {
        if (file.size() > ending.size() && file.ends_with(ending)) file.remove_suffix(ending.size());
    }
    return file.empty() ? std::nullopt : std::optional(std::string(file));
}

}  // namespace trelvan
