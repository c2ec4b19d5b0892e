#include "Platform/Linux/Shell/DesktopMoveScript.hpp"

#include "Utilities/Text.hpp"

#include <optional>

namespace trelvan {

namespace {

/// The next line without the blanks around it.
std::string_view takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    const auto line = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::optional<SystemView> desktopMove(std::string_view source) {
    if (takeLine(source) != "tell application \"System Events\"") return std::nullopt;
    const auto command = takeLine(source);
    if (takeLine(source) != "end tell" || !trimmed(source).empty()) return std::nullopt;
    if (command == "key code 123 using control down") return SystemView::desktopLeft;
    if (command == "key code 124 using control down") return SystemView::desktopRight;
    return std::nullopt;
}

}  // namespace

ScriptResult DesktopMoveScript::run(std::string_view source) {
    const auto view = desktopMove(source);
    if (!view) return {.status = ScriptResult::Status::notCreated, .error = {}};
    const auto noKeys = [] { return false; };
    if (views_.show(*view, noKeys)) return {.status = ScriptResult::Status::ran, .error = {}};
    return {.status = ScriptResult::Status::failed, .error = "el escritorio no se puede cambiar"};
}

}  // namespace trelvan
