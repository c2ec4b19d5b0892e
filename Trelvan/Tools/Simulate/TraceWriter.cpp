#include "Tools/Simulate/TraceWriter.hpp"

#include "Tools/Simulate/ScriptLines.hpp"
#include "Tools/Simulate/SimulatedMenu.hpp"

#include <cmath>
#include <type_traits>

namespace trelvan {

namespace {

/// An enumeration as the number it stands for.
template <typename Enum>
constexpr auto number(Enum value) {
    return static_cast<std::underlying_type_t<Enum>>(value);
}

/// The moment without the noise that adding up fractions of a second leaves.
double plain(Seconds at) {
    return std::round(at.count() * 1e9) / 1e9;
}

constexpr std::string_view kindOf(const trace::Event&) {
    return "event";
}
constexpr std::string_view kindOf(const trace::PostedKey&) {
    return "post";
}
constexpr std::string_view kindOf(const trace::PostedMouse&) {
    return "post";
}
constexpr std::string_view kindOf(const trace::PostedMedia&) {
    return "post";
}
constexpr std::string_view kindOf(const trace::Opened&) {
    return "open";
}
constexpr std::string_view kindOf(const trace::Script&) {
    return "script";
}
constexpr std::string_view kindOf(const trace::Logged&) {
    return "log";
}
constexpr std::string_view kindOf(const trace::Prompted&) {
    return "prompt";
}
constexpr std::string_view kindOf(const trace::Notification&) {
    return "notification";
}

constexpr std::string_view kindOf(const trace::Menu&) {
    return "menu";
}

constexpr std::string_view kindOf(const trace::View&) {
    return "view";
}

constexpr std::string_view nameOf(trace::Opened::Kind kind) {
    switch (kind) {
        case trace::Opened::Kind::application:
            return "application";
        case trace::Opened::Kind::folder:
            return "folder";
        case trace::Opened::Kind::url:
            return "url";
        case trace::Opened::Kind::reveal:
            return "reveal";
    }
    return {};
}

constexpr std::string_view nameOf(LogLevel level) {
    switch (level) {
        case LogLevel::debug:
            return "debug";
        case LogLevel::info:
            return "info";
        case LogLevel::warning:
            return "warning";
        case LogLevel::error:
            return "error";
    }
    return {};
}

}  // namespace

void TraceWriter::begin(Seconds at, std::string_view kind) {
    line_.begin();
    line_.add("at", plain(at)).add("trace", kind);
}

void TraceWriter::write(const TraceEntry& entry) {
    std::visit(
        [this, &entry](const auto& what) {
            begin(entry.at, kindOf(what));
            add(what);
        },
        entry.what);
    output_(line_.end());
}

void TraceWriter::writeResult(Seconds at, std::string_view operation, std::string_view json) {
    begin(at, "result");
    line_.add("operation", operation).addRaw("value", json);
    output_(line_.end());
}

void TraceWriter::writeError(Seconds at, std::string_view operation, std::string_view error) {
    begin(at, "result");
    line_.add("operation", operation).add("error", error);
    output_(line_.end());
}

void TraceWriter::writeExplanation(Seconds at, const MappingExplanation& explanation) {
    begin(at, "explain");
    line_.add("button", explanation.buttonNumber)
        .add("slot", nameOf(explanation.function.slot))
        .add("action", rawValue(explanation.function.action))
        .addRaw("why", jsonTexts(explanation.why));
    output_(line_.end());
}

void TraceWriter::writeState(Seconds at, std::string_view what, std::string_view json) {
    begin(at, "state");
    line_.add("what", what).addRaw("value", json);
    output_(line_.end());
}

void TraceWriter::add(const trace::Event& traced) {
    const TapEvent& event = traced.event;
    const bool passed = traced.answer == TapAnswer::deliver;
    line_.add("type", number(event.type)).add("answer", passed ? "pass" : "swallow");
    switch (event.type) {
        case EventType::leftMouseDown:
        case EventType::rightMouseDown:
        case EventType::otherMouseDown:
        case EventType::otherMouseUp:
            line_.add("button", event.buttonNumber);
            break;
        case EventType::scrollWheel:
            if (!passed) break;
            line_.add("scrollX", event.scrollDeltaAxis2)
                .add("scrollY", event.scrollDeltaAxis1)
                .add("pointX", event.scrollPointDeltaAxis2)
                .add("pointY", event.scrollPointDeltaAxis1);
            break;
        default:
            if (!passed) break;
            line_.add("dx", event.deltaX)
                .add("dy", event.deltaY)
                .add("x", event.location.x)
                .add("y", event.location.y);
    }
    if (traced.marked) line_.add("marked", true);
}

void TraceWriter::add(const trace::PostedKey& key) {
    line_.add("kind", "key")
        .add("keyCode", key.keyCode)
        .add("down", key.down)
        .add("flags", key.flags)
        .add("tap", number(key.tap));
}

void TraceWriter::add(const trace::PostedMouse& mouse) {
    line_.add("kind", "mouse")
        .add("type", number(mouse.type))
        .add("button", mouse.button)
        .add("x", mouse.location.x)
        .add("y", mouse.location.y)
        .add("dx", mouse.deltaX)
        .add("dy", mouse.deltaY)
        .add("userData", mouse.userData)
        .add("tap", number(mouse.tap));
}

void TraceWriter::add(const trace::PostedMedia& media) {
    line_.add("kind", "media")
        .add("data1", media.data1)
        .add("flags", media.flags)
        .add("tap", number(media.tap));
}

void TraceWriter::add(const trace::Opened& opened) {
    line_.add(nameOf(opened.kind), opened.target);
}

void TraceWriter::add(const trace::Script& script) {
    line_.add("source", script.source);
}

void TraceWriter::add(const trace::Logged& logged) {
    line_.add("level", nameOf(logged.level)).add("message", logged.message);
}

void TraceWriter::add(const trace::Prompted& prompted) {
    line_.add("permission", prompted.permission == trace::Prompted::Permission::accessibility
                                ? "accessibility"
                                : "automation");
}

void TraceWriter::add(const trace::Notification& notification) {
    line_.add("title", notification.title).add("body", notification.body);
}

void TraceWriter::add(const trace::View& view) {
    line_.add("name", rawValue(view.view));
}

void TraceWriter::add(const trace::Menu& menu) {
    line_.add("shown", menu.shown);
    if (!menu.shown) return;
    line_.addRaw("center", menuCentre(menu)).addRaw("entries", menuEntries(menu));
}

}  // namespace trelvan
