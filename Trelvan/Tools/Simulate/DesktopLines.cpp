#include "Tools/Simulate/DesktopLines.hpp"

#include "Tools/Simulate/ScriptLimits.hpp"

#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace trelvan::lines {

using json::Problem;
using json::Value;

namespace {

CodingError wrong(std::string_view key, std::string problem) {
    return {std::string(key), std::move(problem)};
}

std::optional<EventType> eventType(std::int64_t number) {
    if (number < 0 || number >= 64) return std::nullopt;
    return static_cast<EventType>(number);
}

HotKeyEntry hotKeyEntry(const Value& entry) {
    HotKeyEntry result;
    const Value* enabled = json::member(entry, "enabled");
    result.enabled = enabled != nullptr && enabled->is_boolean() && enabled->get<bool>();
    const Value* value = json::member(entry, "value");
    const Value* parameters =
        value != nullptr && value->is_object() ? json::member(*value, "parameters") : nullptr;
    if (parameters == nullptr || !parameters->is_array()) return result;
    for (const Value& parameter : *parameters) {
        std::int64_t number = 0;
        const bool whole = !json::read(parameter, number, nullptr);
        result.parameters.push_back(whole ? std::optional{number} : std::nullopt);
    }
    return result;
}

}  // namespace

Problem sendEvent(SimulatedDesktop& desktop, const Value& line) {
    script::Event record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    const auto type = eventType(record.type);
    if (!type) return wrong("type", "is not an event number");
    if (auto problem = script::outOfReach(record)) return problem;
    desktop.send({.type = *type,
                  .flags = record.flags,
                  .location = {record.x.value_or(desktop.pointer.x), record.y.value_or(desktop.pointer.y)},
                  .buttonNumber = record.button,
                  .deltaX = record.dx,
                  .deltaY = record.dy,
                  .scrollDeltaAxis1 = record.scrollY,
                  .scrollDeltaAxis2 = record.scrollX,
                  .scrollPointDeltaAxis1 = record.pointY,
                  .scrollPointDeltaAxis2 = record.pointX,
                  .sourceUserData = record.userData});
    return std::nullopt;
}

Problem setAccessibility(SimulatedDesktop& desktop, const Value& line) {
    script::Accessibility record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.accessibility = record.granted;
    return std::nullopt;
}

Problem setModifiers(SimulatedDesktop& desktop, const Value& line) {
    script::Modifiers record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.modifierFlags = record.flags;
    return std::nullopt;
}

Problem setScreens(SimulatedDesktop& desktop, const Value& line) {
    script::Screens record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    std::vector<BottomLeftRect> frames;
    for (const auto& numbers : record.frames) {
        BottomLeftRect frame;
        if (auto problem = script::readRect(numbers, frame))
            return std::move(*problem).inside(frames.size()).inside("frames");
        frames.push_back(frame);
    }
    desktop.screenFrames = std::move(frames);
    return std::nullopt;
}

Problem movePointer(SimulatedDesktop& desktop, const Value& line) {
    script::Pointer record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    if (auto problem = script::outOfReach(record)) return problem;
    desktop.pointer = {record.x, record.y};
    return std::nullopt;
}

Problem setOwnWindows(SimulatedDesktop& desktop, const Value& line) {
    script::OwnWindows record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    std::vector<OwnWindow> windows;
    for (const auto& asked : record.windows) {
        OwnWindow window;
        if (auto problem = script::readWindow(asked, window))
            return std::move(*problem).inside(windows.size()).inside("windows");
        windows.push_back(window);
    }
    desktop.windows = std::move(windows);
    return std::nullopt;
}

Problem bringToFront(SimulatedDesktop& desktop, const Value& line) {
    script::Frontmost record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.bringToFront(record.bundle);
    return std::nullopt;
}

Problem setHotKeys(SimulatedDesktop& desktop, const Value& line) {
    const Value* table = json::member(line, "table");
    if (table == nullptr || !table->is_object()) return wrong("table", "must be an object");
    std::map<int, HotKeyEntry> entries;
    for (const auto& [key, entry] : table->items()) {
        int id = 0;
        const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), id);
        if (error != std::errc{} || end != key.data() + key.size())
            return wrong("table." + key, "is not a whole number");
        // An entry of another shape is in the table and resolves to nothing, as on a real system.
        if (entry.is_object()) entries[id] = hotKeyEntry(entry);
    }
    desktop.hotKeyEntries = std::move(entries);
    return std::nullopt;
}

Problem offerViews(SimulatedDesktop& desktop, const Value& line) {
    script::Views record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.offeredViews = {record.offered.begin(), record.offered.end()};
    return std::nullopt;
}

Problem changeDisk(SimulatedDesktop& desktop, const Value& line) {
    script::Disk record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    using Kind = SimulatedItem::Kind;
    if (record.kind == "none") {
        desktop.disk.erase(record.path);
        return std::nullopt;
    }
    constexpr std::array<std::pair<std::string_view, Kind>, 3> kinds{
        {{"application", Kind::application}, {"folder", Kind::folder}, {"file", Kind::file}}};
    for (const auto& [name, kind] : kinds) {
        if (name != record.kind) continue;
        desktop.disk[record.path] = {kind, record.bundle};
        return std::nullopt;
    }
    return wrong("kind", "must be application, folder, file or none");
}

Problem letFail(SimulatedDesktop& desktop, const Value& line) {
    script::Fail record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    const std::array<std::pair<std::string_view, bool*>, 7> switches{
        {{"tapCreate", &desktop.failures.tapCreate},
         {"eventCopy", &desktop.failures.eventCopy},
         {"eventCreate", &desktop.failures.eventCreate},
         {"scriptCreate", &desktop.failures.scriptCreate},
         {"scriptRun", &desktop.failures.scriptRun},
         {"loginItem", &desktop.failures.loginItem},
         {"save", &desktop.failures.save}}};
    for (const auto& [name, failure] : switches) {
        if (name != record.what) continue;
        desktop.settleDefaults();
        *failure = record.on;
        return std::nullopt;
    }
    return wrong("what", "\"" + record.what + "\" is not a call that can fail here");
}

Problem disableTap(SimulatedDesktop& desktop, const Value& line) {
    script::TapDisabled record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    if (record.by == "timeout") {
        desktop.disableTap(EventType::tapDisabledByTimeout);
    } else if (record.by == "userInput") {
        desktop.disableTap(EventType::tapDisabledByUserInput);
    } else {
        return wrong("by", "must be timeout or userInput");
    }
    return std::nullopt;
}

}  // namespace trelvan::lines
