#include "Tools/Record/Recorder.hpp"

#include "Core/EventMonitor.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Tools/Record/RecordedSettings.hpp"
#include "Tools/Simulate/ScriptLines.hpp"
#include "Tools/Simulate/TraceJson.hpp"

#include <cmath>

namespace trelvan {

namespace {

using Json = TraceJson;

/// An application of which a recording says no more than that it is another one.
constexpr std::string_view someApplication = "com.example.app";

template <Origin origin>
Json rectangle(const RectFrom<origin>& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

}  // namespace

Recorder::Recorder(const Ports& ports, Output output)
    : ports_(ports), output_(std::move(output)), sessionObserver_(ports_.session.observe([this](bool usable) {
          if (start_) writeSession(usable);
      })) {}

bool Recorder::create(std::uint64_t mask, Callback callback, void* userInfo) {
    callback_ = callback;
    userInfo_ = userInfo;
    if (!ports_.tap.create(mask, &Recorder::see, this)) return false;
    if (!start_) writeHead();
    return true;
}

TapAnswer Recorder::see(void* self, TapEvent& event) {
    auto& recorder = *static_cast<Recorder*>(self);
    // Copies of the program's own come back in the dry run by themselves.
    if (event.sourceUserData != EventMonitor::scaledMotionMarker) {
        recorder.writeWorld(event);
        recorder.writeEvent(event);
    }
    return recorder.callback_(recorder.userInfo_, event);
}

void Recorder::writeCall(std::string_view operation, std::optional<std::int64_t> index) {
    if (!start_) return;
    begin("call");
    line_.add("operation", operation);
    if (index) line_.add("index", *index);
    end();
}

void Recorder::begin(std::string_view action) {
    line_.begin();
    const double at = (ports_.clock.uptime() - *start_).count();
    line_.add("at", std::floor(at * 1e6) / 1e6).add("do", action);
}

void Recorder::writeHead() {
    start_ = ports_.clock.uptime();
    writePlatform();
    writeDefaults();
    writeHotKeys();
    writeWorld(TapEvent{});
    if (!ports_.session.isUsable()) writeSession(false);
    begin("start");
    end();
}

void Recorder::writePlatform() {
    const bool isLinux = ports_.shortcuts.desktopGoesFirst;
    begin("platform");
    line_.add("name", isLinux ? "linux" : "macos");
    end();
    if (!isLinux) return;
    Json offered = Json::array();
    for (const auto view : ports_.views.offered()) offered.push_back(rawValue(view));
    begin("views");
    line_.addRaw("offered", traceText(offered));
    end();
}

void Recorder::writeDefaults() {
    const auto settings = recordedSettings(ports_.defaults, ports_.workspace);
    begin("defaults");
    line_.addRaw("set", traceText(settings.defaults));
    end();
    for (const auto& item : settings.disk) {
        begin("disk");
        line_.add("path", item.path).add("kind", item.kind);
        if (!item.bundle.empty()) line_.add("bundle", item.bundle);
        end();
    }
}

void Recorder::writeHotKeys() {
    Json table = Json::object();
    const auto write = [&](int id) {
        const auto entry = ports_.hotKeys.entry(id);
        if (!entry) return;
        Json parameters = Json::array();
        for (const auto& parameter : entry->parameters)
            parameters.push_back(parameter ? Json(*parameter) : Json());
        table[std::to_string(id)] = {{"enabled", entry->enabled}, {"value", {{"parameters", parameters}}}};
    };
    for (const auto action : allCases<ButtonAction>()) {
        const auto* const tool = desktopTool(action);
        if (tool == nullptr) continue;
        for (const int id : tool->hotKeys) write(id);
    }
    if (table.empty()) return;
    begin("hotKeys");
    line_.addRaw("table", traceText(table));
    end();
}

void Recorder::writeSession(bool usable) {
    begin("session");
    line_.add("locked", !usable);
    end();
}

void Recorder::writeWorld(const TapEvent& event) {
    // Movements that pass do so whatever the world is like; asking about it for each would slow the tap.
    const bool isMotion = event.type == EventType::mouseMoved && event.buttonNumber == 0 && !screens_.empty();
    if (const EventFlags now = ports_.input.flags(EventSourceState::combinedSession); now != modifiers_) {
        modifiers_ = now;
        begin("modifiers");
        line_.add("flags", now);
        end();
    }
    // Which applications the user works with is nobody's business; the rules know only some.
    auto application = ports_.screens.frontmostApplication();
    if (const auto* known = terminalOf(ports_.shortcuts.terminals, application)) {
        application = known->windowClass;
    } else if (application != EventMonitor::systemMenuOwner) {
        application = someApplication;
    }
    if (application != frontmost_) {
        frontmost_ = application;
        begin("frontmost");
        line_.add("bundle", application);
        end();
    }
    if (isMotion) return;
    Json frames = Json::array();
    for (const auto& frame : ports_.screens.frames()) frames.push_back(rectangle(frame));
    if (auto now = traceText(frames); now != screens_) {
        screens_ = std::move(now);
        begin("screens");
        line_.addRaw("frames", screens_);
        end();
    }
    Json windows = Json::array();
    for (const auto& window : ports_.screens.ownWindows()) {
        windows.push_back(
            {{"frame", rectangle(window.frame)}, {"visible", window.visible}, {"alpha", window.alpha}});
    }
    if (auto now = traceText(windows); now != windows_) {
        windows_ = std::move(now);
        begin("ownWindows");
        line_.addRaw("windows", windows_);
        end();
    }
}

void Recorder::writeEvent(const TapEvent& event) {
    if (event.type == EventType::tapDisabledByTimeout || event.type == EventType::tapDisabledByUserInput) {
        begin("tapDisabled");
        line_.add("by", event.type == EventType::tapDisabledByTimeout ? "timeout" : "userInput");
        return end();
    }
    begin("event");
    line_.add("type", static_cast<std::uint32_t>(event.type));
    const auto addUnlessZero = [this](std::string_view key, auto value) {
        if (value != 0) line_.add(key, value);
    };
    addUnlessZero("button", event.buttonNumber);
    addUnlessZero("flags", event.flags);
    line_.add("x", event.location.x).add("y", event.location.y);
    addUnlessZero("dx", event.deltaX);
    addUnlessZero("dy", event.deltaY);
    addUnlessZero("scrollX", event.scrollDeltaAxis2);
    addUnlessZero("scrollY", event.scrollDeltaAxis1);
    addUnlessZero("pointX", event.scrollPointDeltaAxis2);
    addUnlessZero("pointY", event.scrollPointDeltaAxis1);
    addUnlessZero("userData", event.sourceUserData);
    end();
}

}  // namespace trelvan
