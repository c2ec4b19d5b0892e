#pragma once

#include "Core/Model/RawRepresentable.hpp"
#include "Core/Model/RecordField.hpp"
#include "Platform/LoginItem.hpp"
#include "Platform/SystemViews.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace trelvan {

template <>
struct RawValueTable<LoginItem::Status> {
    static constexpr std::string_view noun = "a status of the login item";
    static constexpr std::array<std::string_view, 4> rawValues{"notRegistered", "enabled", "requiresApproval",
                                                               "notFound"};
};

template <>
struct RawValueTable<SystemView> {
    static constexpr std::string_view noun = "a view of the desktop";
    static constexpr std::array<std::string_view, 11> rawValues{
        "missionControl", "appExpose",      "launchpad",      "showDesktop", "desktopLeft", "desktopRight",
        "screenshotArea", "screenshotFull", "screenshotTool", "emojiPanel",  "lockScreen"};
};

}  // namespace trelvan

/// The lines of a script, as records: what keys each has, and of what type.
namespace trelvan::script {

/// One event at the tap. Deltas have 32 bits, more than any device sends, so that no sum of them overflows.
struct Event {
    std::int64_t type = 0;
    std::int64_t button = 0;
    std::uint64_t flags = 0;
    std::optional<double> x;
    std::optional<double> y;
    std::int32_t dx = 0;
    std::int32_t dy = 0;
    std::int32_t scrollX = 0;
    std::int32_t scrollY = 0;
    std::int32_t pointX = 0;
    std::int32_t pointY = 0;
    std::int64_t userData = 0;

    static constexpr auto fields() {
        return std::tuple{required("type", &Event::type),
                          defaulted("button", &Event::button),
                          defaulted("flags", &Event::flags),
                          defaulted("x", &Event::x),
                          defaulted("y", &Event::y),
                          defaulted("dx", &Event::dx),
                          defaulted("dy", &Event::dy),
                          defaulted("scrollX", &Event::scrollX),
                          defaulted("scrollY", &Event::scrollY),
                          defaulted("pointX", &Event::pointX),
                          defaulted("pointY", &Event::pointY),
                          defaulted("userData", &Event::userData)};
    }
};

struct Index {
    std::uint64_t index = 0;
    static constexpr auto fields() { return std::tuple{required("index", &Index::index)}; }
};

struct PowerSource {
    double current = 0;
    double max = 0;
    std::string state;
    static constexpr auto fields() {
        return std::tuple{required("current", &PowerSource::current), required("max", &PowerSource::max),
                          required("state", &PowerSource::state)};
    }
};

struct Truth {
    bool value = false;
    static constexpr auto fields() { return std::tuple{required("value", &Truth::value)}; }
};

struct Backup {
    std::string path;
    bool settings = false;
    static constexpr auto fields() {
        return std::tuple{required("path", &Backup::path), required("settings", &Backup::settings)};
    }
};

struct Path {
    std::string path;
    static constexpr auto fields() { return std::tuple{required("path", &Path::path)}; }
};

struct Accessibility {
    bool granted = false;
    static constexpr auto fields() { return std::tuple{required("granted", &Accessibility::granted)}; }
};

struct Modifiers {
    std::uint64_t flags = 0;
    static constexpr auto fields() { return std::tuple{required("flags", &Modifiers::flags)}; }
};

struct Screens {
    std::vector<std::vector<double>> frames;
    static constexpr auto fields() { return std::tuple{required("frames", &Screens::frames)}; }
};

struct Pointer {
    double x = 0;
    double y = 0;
    static constexpr auto fields() {
        return std::tuple{required("x", &Pointer::x), required("y", &Pointer::y)};
    }
};

/// What does not stand in the line is as in a session in use.
struct Session {
    bool locked = false;
    bool active = true;
    static constexpr auto fields() {
        return std::tuple{defaulted("locked", &Session::locked), defaulted("active", &Session::active)};
    }
};

struct Window {
    std::vector<double> frame;
    bool visible = true;
    double alpha = 1;
    static constexpr auto fields() {
        return std::tuple{required("frame", &Window::frame), defaulted("visible", &Window::visible),
                          defaulted("alpha", &Window::alpha)};
    }
};

struct OwnWindows {
    std::vector<Window> windows;
    static constexpr auto fields() { return std::tuple{required("windows", &OwnWindows::windows)}; }
};

struct Frontmost {
    std::string bundle;
    static constexpr auto fields() { return std::tuple{required("bundle", &Frontmost::bundle)}; }
};

struct Disk {
    std::string path;
    std::string kind;
    std::string bundle;
    static constexpr auto fields() {
        return std::tuple{required("path", &Disk::path), required("kind", &Disk::kind),
                          defaulted("bundle", &Disk::bundle)};
    }
};

struct Fail {
    std::string what;
    bool on = false;
    static constexpr auto fields() {
        return std::tuple{required("what", &Fail::what), required("on", &Fail::on)};
    }
};

struct TapDisabled {
    std::string by;
    static constexpr auto fields() { return std::tuple{required("by", &TapDisabled::by)}; }
};

struct Key {
    std::uint16_t keyCode = 0;
    std::uint64_t flags = 0;
    std::string characters;
    bool down = false;
    static constexpr auto fields() {
        return std::tuple{required("keyCode", &Key::keyCode), defaulted("flags", &Key::flags),
                          defaulted("characters", &Key::characters), required("down", &Key::down)};
    }
};

struct CapsLock {
    bool on = false;
    bool monitored = true;
    static constexpr auto fields() {
        return std::tuple{required("on", &CapsLock::on), defaulted("monitored", &CapsLock::monitored)};
    }
};

/// Its lists of elements are read apart: a record has no form for an element that is null.
struct Microphone {
    bool present = false;
    static constexpr auto fields() { return std::tuple{required("present", &Microphone::present)}; }
};

/// Whose desktop the script plays on.
struct Platform {
    std::string name;
    std::optional<bool> postedCountsAsActivity;
    static constexpr auto fields() {
        return std::tuple{required("name", &Platform::name),
                          defaulted("postedCountsAsActivity", &Platform::postedCountsAsActivity)};
    }
};

/// The views that the desktop shows when it is asked.
struct Views {
    std::vector<SystemView> offered;
    static constexpr auto fields() { return std::tuple{required("offered", &Views::offered)}; }
};

struct LaunchAtLogin {
    LoginItem::Status status{};
    static constexpr auto fields() { return std::tuple{required("status", &LaunchAtLogin::status)}; }
};

struct Wait {
    double seconds = 0;
    static constexpr auto fields() { return std::tuple{required("seconds", &Wait::seconds)}; }
};

struct Print {
    std::string what;
    static constexpr auto fields() { return std::tuple{required("what", &Print::what)}; }
};

// The arguments of operations

struct OperationName {
    std::string operation;
    static constexpr auto fields() { return std::tuple{required("operation", &OperationName::operation)}; }
};

struct On {
    bool on = false;
    static constexpr auto fields() { return std::tuple{required("on", &On::on)}; }
};

struct Name {
    std::string name;
    static constexpr auto fields() { return std::tuple{required("name", &Name::name)}; }
};

struct Button {
    std::int64_t button = 0;
    std::uint64_t flags = 0;
    static constexpr auto fields() {
        return std::tuple{required("button", &Button::button), defaulted("flags", &Button::flags)};
    }
};

struct Direction {
    std::string direction;
    static constexpr auto fields() { return std::tuple{required("direction", &Direction::direction)}; }
};

}  // namespace trelvan::script
