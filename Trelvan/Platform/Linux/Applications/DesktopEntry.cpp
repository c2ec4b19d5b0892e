#include "Platform/Linux/Applications/DesktopEntry.hpp"

#include "Platform/Shared/DurableFile.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Text.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

/// Undoes the escapes that every string value may have.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            result += value[index];
            continue;
        }
        switch (value[++index]) {
            case 's':
                result += ' ';
                break;
            case 'n':
                result += '\n';
                break;
            case 't':
                result += '\t';
                break;
            case 'r':
                result += '\r';
                break;
            case '\\':
                result += '\\';
                break;
            // Not of this level: quoting in Exec has escapes of its own.
            default:
                (result += '\\') += value[index];
                break;
        }
    }
    return result;
}

/// Splits Exec at blanks outside double quotes; none when a quote is left open.
std::optional<std::vector<std::string>> words(std::string_view exec) {
    std::vector<std::string> result;
    std::string word;
    bool inWord = false;
    bool inQuotes = false;
    for (std::size_t index = 0; index < exec.size(); ++index) {
        const char character = exec[index];
        if (inQuotes && character == '\\' && index + 1 < exec.size()) {
            word += exec[++index];
        } else if (character == '"') {
            inQuotes = !inQuotes;
            inWord = true;
        } else if (!inQuotes && (character == ' ' || character == '\t' || character == '\n')) {
            if (std::exchange(inWord, false)) result.push_back(std::exchange(word, {}));
        } else {
            word += character;
            inWord = true;
        }
    }
    if (inQuotes) return std::nullopt;
    if (inWord) result.push_back(word);
    return result;
}

/// One argument with its field codes expanded, added to the others. Codes for files stand for none.
void addExpanded(const std::string& word, const DesktopEntry& entry, std::string_view entryPath,
                 std::vector<std::string>& arguments) {
    if (word == "%i") {
        if (!entry.icon.empty()) arguments.insert(arguments.end(), {"--icon", entry.icon});
        return;
    }
    std::string result;
    for (std::size_t index = 0; index < word.size(); ++index) {
        if (word[index] != '%' || index + 1 == word.size()) {
            result += word[index];
            continue;
        }
        switch (word[++index]) {
            case '%':
                result += '%';
                break;
            case 'c':
                result += entry.name;
                break;
            case 'k':
                result += entryPath;
                break;
            default:
                break;
        }
    }
    if (!result.empty() || word.find('%') == std::string::npos) arguments.push_back(std::move(result));
}

bool isFile(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text) {
    DesktopEntry entry;
    bool inGroup = false;
    bool isApplication = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            inGroup = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (!inGroup || equals == std::string_view::npos) continue;
        const auto key = trimmed(line.substr(0, equals));
        const auto value = unescaped(trimmed(line.substr(equals + 1)));
        if (key == "Type") isApplication = value == "Application";
        if (key == "Name") entry.name = value;
        if (key == "Icon") entry.icon = value;
        if (key == "Exec") entry.exec = value;
        if (key == "Path") entry.path = value;
        if (key == "TryExec") entry.tryExec = value;
        if (key == "StartupWMClass") entry.windowClass = value;
        if (key == "DBusActivatable") entry.dbusActivatable = value == "true";
        if (key == "Terminal") entry.terminal = value == "true";
        if (key == "Hidden") entry.hidden = value == "true";
    }
    return isApplication ? std::optional(std::move(entry)) : std::nullopt;
}

std::vector<std::string> commandLine(const DesktopEntry& entry, std::string_view entryPath) {
    const auto parts = words(entry.exec);
    std::vector<std::string> arguments;
    if (!parts) return arguments;
    for (const auto& word : *parts) addExpanded(word, entry, entryPath, arguments);
    return arguments;
}

std::string_view desktopEntryId(std::string_view path) {
    constexpr std::string_view ending = ".desktop";
    path.remove_prefix(path.rfind('/') + 1);
    if (path.ends_with(ending)) path.remove_suffix(ending.size());
    return path;
}

std::string applicationObjectPath(std::string_view id) {
    std::string path = "/" + std::string(id);
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

std::optional<std::string> findDesktopEntry(std::string_view id) {
    if (id.empty() || id.find('/') != std::string_view::npos) return std::nullopt;
    for (const auto& folder : dataFolders()) {
        auto path = folder + "/applications/" + std::string(id) + ".desktop";
        if (!isFile(path)) continue;
        const auto content = readFile(path);
        const auto entry = content.bytes ? parseDesktopEntry(*content.bytes) : std::nullopt;
        // The first file with the id counts, also when it says that the application is not there.
        if (!entry || entry->hidden || (entry->exec.empty() && !entry->dbusActivatable)) return std::nullopt;
        return path;
    }
    return std::nullopt;
}

}  // namespace trelvan
