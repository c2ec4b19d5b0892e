#include "Platform/Linux/Applications/AutostartEntry.hpp"

#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <functional>

namespace trelvan::autostart {

namespace {

/// Hands each line of the group "Desktop Entry" with its key and value to `use`, every other with an empty
/// key. Lines end before their line break.
void eachLine(
    std::string_view entry,
    const std::function<void(std::string_view line, std::string_view key, std::string_view value)>& use) {
    bool inGroup = false;
    while (!entry.empty()) {
        const auto end = entry.find('\n');
        const auto line = entry.substr(0, end);
        entry.remove_prefix(end == std::string_view::npos ? entry.size() : end + 1);
        const auto text = trimmed(line);
        if (text.starts_with('[')) inGroup = text == "[Desktop Entry]";
        const auto equals = text.find('=');
        if (!inGroup || text.starts_with('#') || equals == std::string_view::npos) {
            use(line, {}, {});
        } else {
            use(line, trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1)));
        }
    }
}

bool namesAny(std::string_view list, const std::vector<std::string>& desktops) {
    while (!list.empty()) {
        const auto end = list.find(';');
        if (std::ranges::find(desktops, trimmed(list.substr(0, end))) != desktops.end()) return true;
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return false;
}

/// The value of the Exec key.
std::string joined(const std::vector<std::string>& command) {
    std::string result;
    for (const auto& argument : command) {
        if (!result.empty()) result += ' ';
        result += quotedArgument(argument);
    }
    return result;
}

}  // namespace

std::string quotedArgument(std::string_view argument) {
    // Two levels: the quotes of Exec, and the escapes that every value of an entry has.
    std::string result = "\"";
    for (const char character : argument) {
        switch (character) {
            case '"':
            case '`':
            case '$':
                (result += "\\\\") += character;
                break;
            case '\\':
                result += "\\\\\\\\";
                break;
            case '%':
                result += "%%";
                break;
            case '\n':
                result += "\\n";
                break;
            case '\t':
                result += "\\t";
                break;
            case '\r':
                result += "\\r";
                break;
            default:
                result += character;
        }
    }
    return result += '"';
}

std::string entryFor(const std::vector<std::string>& command) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Trelvan\n"
           "Comment=More to do for trackballs and mice\n"
           "Comment[es]=Más funciones para trackballs y ratones\n"
           "Icon=input-mouse\n"
           "Exec=" +
           joined(command) +
           "\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

std::string withProgram(std::string_view entry, std::string_view program) {
    const auto parsed = parseDesktopEntry(entry);
    auto command = parsed ? commandLine(*parsed, {}) : std::vector<std::string>();
    if (command.empty()) command.emplace_back();
    command.front() = program;
    const std::string exec = "Exec=" + joined(command);
    std::string result;
    eachLine(entry, [&](std::string_view line, std::string_view key, std::string_view) {
        // It named the program that is not there any more.
        if (key == "TryExec") return;
        (result += key == "Exec" ? std::string_view(exec) : line) += '\n';
    });
    return result;
}

Reading read(std::string_view entry, const std::vector<std::string>& desktops) {
    Reading result;
    const auto parsed = parseDesktopEntry(entry);
    if (!parsed) return result;
    result.isWanted = !parsed->hidden;
    eachLine(entry, [&](std::string_view, std::string_view key, std::string_view value) {
        if (key == "X-GNOME-Autostart-enabled" && value == "false") result.isWanted = false;
        if (key == "OnlyShowIn" && !namesAny(value, desktops)) result.isWanted = false;
        if (key == "NotShowIn" && namesAny(value, desktops)) result.isWanted = false;
        if (key == "TryExec") result.required = value;
    });
    const auto command = commandLine(*parsed, {});
    if (!command.empty()) result.program = command.front();
    return result;
}

}  // namespace trelvan::autostart
