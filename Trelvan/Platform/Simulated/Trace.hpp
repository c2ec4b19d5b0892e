#pragma once

#include "Platform/EventPoster.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/SystemViews.hpp"
#include "Utilities/Geometry.hpp"
#include "Utilities/LogLevel.hpp"

#include <string>
#include <variant>
#include <vector>

namespace trelvan {

/// What can leave the program on the simulated desktop.
namespace trace {

/// An event that reached the tap, as it left it.
struct Event {
    TapEvent event;
    TapAnswer answer;
    /// Whether it is one of the program's own copies coming back.
    bool marked = false;
};

struct PostedKey {
    KeyCode keyCode;
    bool down;
    EventFlags flags;
    TapLocation tap;
    friend bool operator==(const PostedKey&, const PostedKey&) = default;
};

struct PostedMouse {
    EventType type;
    std::int64_t button;
    TopLeftPoint location;
    std::int64_t deltaX;
    std::int64_t deltaY;
    std::int64_t userData;
    TapLocation tap;
    friend bool operator==(const PostedMouse&, const PostedMouse&) = default;
};

struct PostedMedia {
    std::int64_t data1;
    EventFlags flags;
    TapLocation tap;
    friend bool operator==(const PostedMedia&, const PostedMedia&) = default;
};

struct Opened {
    enum class Kind { application, folder, url, reveal } kind;
    std::string target;
    friend bool operator==(const Opened&, const Opened&) = default;
};

struct Script {
    std::string source;
    friend bool operator==(const Script&, const Script&) = default;
};

struct Logged {
    LogLevel level;
    std::string message;
    friend bool operator==(const Logged&, const Logged&) = default;
};

struct Prompted {
    enum class Permission { accessibility, automation } permission;
    friend bool operator==(const Prompted&, const Prompted&) = default;
};

struct Notification {
    std::string title;
    std::string body;
    friend bool operator==(const Notification&, const Notification&) = default;
};

/// The desktop was asked for one of its views, and has it.
struct View {
    SystemView view;
    friend bool operator==(const View&, const View&) = default;
};

/// The radial menu came up or went away.
struct Menu {
    struct Entry {
        std::string name;
        Point centre;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    bool shown = false;
    /// In the overlay's coordinates, and nothing while the menu is not shown.
    Point centre;
    std::vector<Entry> entries;
    friend bool operator==(const Menu&, const Menu&) = default;
};

}  // namespace trace

/// One thing that left the program, and when.
struct TraceEntry {
    Seconds at;
    std::variant<trace::Event, trace::PostedKey, trace::PostedMouse, trace::PostedMedia, trace::Opened,
                 trace::Script, trace::Logged, trace::Prompted, trace::Notification, trace::Menu, trace::View>
        what;
};

}  // namespace trelvan
