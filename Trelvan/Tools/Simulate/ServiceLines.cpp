#include "Tools/Simulate/ServiceLines.hpp"

#include "Tools/Simulate/ScriptLimits.hpp"

#include <array>
#include <utility>

namespace trelvan::lines {

using json::Problem;
using json::Value;

namespace {

template <typename T>
using Elements = std::array<std::optional<T>, 3>;

/// The values of elements 0, 1 and 2; null, and what the list is too short for, is an element without the
/// control. `known` tells a value that the control can have from another one.
template <typename Read, typename T, typename Known>
Problem readElements(const Value& line, std::string_view key, Elements<T>& elements, Known known,
                     std::string_view expected) {
    const Value* list = json::member(line, key);
    if (list == nullptr) return std::nullopt;
    if (!list->is_array()) return json::unexpected("an array", *list).inside(key);
    if (list->size() > elements.size())
        return CodingError{std::string(key), "must have three elements at most"};
    for (std::size_t index = 0; index < list->size(); ++index) {
        const Value& element = (*list)[index];
        if (element.is_null()) continue;
        Read value{};
        auto problem = json::read(element, value, nullptr);
        if (!problem && !known(value)) problem = CodingError{"", std::string(expected)};
        if (problem) return std::move(*problem).inside(index).inside(key);
        elements[index] = static_cast<T>(value);
    }
    return std::nullopt;
}

}  // namespace

Problem pressKey(SimulatedDesktop& desktop, const Value& line) {
    script::Key record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    const bool isModifier = record.keyCode >= key::rightCommand && record.keyCode <= key::function;
    const EventType edge = record.down ? EventType::keyDown : EventType::keyUp;
    desktop.sendKey({.type = isModifier ? EventType::flagsChanged : edge,
                     .keyCode = record.keyCode,
                     .flags = record.flags,
                     .characters = isModifier ? std::string() : std::move(record.characters)});
    return std::nullopt;
}

Problem switchCapsLock(SimulatedDesktop& desktop, const Value& line) {
    script::CapsLock record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.switchCapsLock(record.on, record.monitored);
    return std::nullopt;
}

Problem setMicrophone(SimulatedDesktop& desktop, const Value& line) {
    script::Microphone record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    SimulatedMicrophone microphone{.present = record.present, .reads = desktop.microphone.reads};
    if (auto problem = readElements<std::int64_t>(
            line, "mute", microphone.mute, [](auto value) { return value == 0 || value == 1; },
            "must be 0, 1 or null"))
        return problem;
    if (auto problem = readElements<double>(
            line, "volume", microphone.volume, [](auto value) { return value >= 0 && value <= 1; },
            "must be 0 to 1 or null"))
        return problem;
    desktop.microphone = microphone;
    return std::nullopt;
}

Problem changeSession(SimulatedDesktop& desktop, const Value& line) {
    script::Session record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.changeSession(record.locked, record.active);
    return std::nullopt;
}

Problem setLaunchAtLogin(SimulatedDesktop& desktop, const Value& line) {
    script::LaunchAtLogin record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.loginStatus = record.status;
    return std::nullopt;
}

Problem setBattery(SimulatedDesktop& desktop, const Value& line) {
    const auto sources = line.find("sources");
    if (sources == line.end()) return CodingError{"sources", "required key is missing"};
    if (sources->is_null()) {
        desktop.powerSources.reset();
        return std::nullopt;
    }
    std::vector<script::PowerSource> read;
    if (auto problem = json::read(*sources, read, nullptr)) return std::move(*problem).inside("sources");
    for (std::size_t index = 0; index < read.size(); ++index) {
        if (auto problem = script::outOfReach(read[index]))
            return std::move(*problem).inside(index).inside("sources");
    }
    desktop.powerSources.emplace();
    for (auto& source : read)
        desktop.powerSources->push_back({source.current, source.max, std::move(source.state)});
    return std::nullopt;
}

Problem setFnState(SimulatedDesktop& desktop, const Value& line) {
    script::Truth record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.fnState = record.value;
    return std::nullopt;
}

Problem setDoNotDisturb(SimulatedDesktop& desktop, const Value& line) {
    if (const auto value = line.find("value"); value != line.end() && value->is_null()) {
        desktop.doNotDisturb.reset();
        return std::nullopt;
    }
    script::Truth record;
    if (auto problem = json::read(line, record, nullptr)) return problem;
    desktop.doNotDisturb = record.value;
    return std::nullopt;
}

}  // namespace trelvan::lines
