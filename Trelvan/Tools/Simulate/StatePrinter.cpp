#include "Tools/Simulate/StatePrinter.hpp"

#include "Core/Model/RecordJson.hpp"
#include "Tools/Simulate/TraceJson.hpp"
#include "Utilities/JsonText.hpp"

#include <type_traits>

namespace trelvan {

namespace {

using Json = TraceJson;

template <typename Record>
std::optional<std::string> encoded(const Record& record) {
    json::Value value;
    if (json::write(record, value)) return std::nullopt;
    return json::serialize(value);
}

Json jsonOf(const MouseEventInfo& info) {
    return {{"type", info.type},
            {"buttonNumber", info.buttonNumber},
            {"scrollDeltaX", info.scrollDeltaX},
            {"scrollDeltaY", info.scrollDeltaY}};
}

Json jsonOf(const DefaultsValue& value) {
    return std::visit(
        [](const auto& stored) -> Json {
            using Stored = std::decay_t<decltype(stored)>;
            if constexpr (std::is_same_v<Stored, Data>) {
                // Bytes that hold JSON are shown as what they hold.
                const bool isDeep = tooDeepAt(stored.bytes).has_value();
                auto parsed =
                    isDeep ? Json(Json::value_t::discarded) : Json::parse(stored.bytes, nullptr, false);
                return parsed.is_discarded() ? Json(stored.bytes) : parsed;
            } else if constexpr (std::is_same_v<Stored, double>) {
                return plainNumber(stored);
            } else {
                return stored;
            }
        },
        value);
}

std::string defaultsJson(const SimulatedDesktop& desktop) {
    Json result = Json::object();
    for (const auto& [key, value] : desktop.defaults) result[key] = jsonOf(value);
    return traceText(result);
}

std::string monitorJson(const EventMonitor& monitor) {
    const auto& last = monitor.lastEvent.get();
    return traceText({{"isRunning", monitor.isRunning.get()},
                      {"lastEvent", last ? jsonOf(*last) : Json()},
                      {"debugMode", monitor.debugMode.get()},
                      {"scrollSpeedVertical", plainNumber(monitor.scrollSpeedVertical)},
                      {"horizontalScrollEnabled", monitor.horizontalScrollEnabled.get()},
                      {"scrollSpeedHorizontal", plainNumber(monitor.scrollSpeedHorizontal)},
                      {"swapScrollDirection", monitor.swapScrollDirection.get()},
                      {"mouseSpeed", plainNumber(monitor.mouseSpeed)},
                      {"advancedMouseSpeedEnabled", monitor.advancedMouseSpeedEnabled.get()},
                      {"mouseAcceleration", plainNumber(monitor.mouseAcceleration)}});
}

/// The value as JSON; null for none.
template <typename Value>
Json jsonOf(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

std::string keepAwakeJson(const KeepAwakeManager& manager) {
    const auto& moved = manager.lastMoveDate.get();
    return traceText(
        {{"isEnabled", manager.isEnabled.get()},
         {"idleThresholdMinutes", plainNumber(manager.idleThresholdMinutes)},
         {"moveEveryMinutes", plainNumber(manager.moveEveryMinutes)},
         {"autoStopPreset", rawValue(manager.autoStopPreset.get())},
         {"isCurrentlyAway", manager.isCurrentlyAway.get()},
         {"nextMoveInSeconds", jsonOf(manager.nextMoveInSeconds.get())},
         {"remainingAutoStopSeconds", jsonOf(manager.remainingAutoStopSeconds.get())},
         // The virtual day starts at the epoch: a date is its second there.
         {"lastMoveDate", moved ? plainNumber(Seconds(moved->time_since_epoch()).count()) : Json()},
         {"lastErrorMessage", jsonOf(manager.lastErrorMessage.get())}});
}

std::string debugLogJson(const EventMonitor& monitor) {
    Json list = Json::array();
    for (const auto& info : monitor.debugLog.get()) list.push_back(jsonOf(info));
    return traceText(list);
}

}  // namespace

std::optional<std::string> stateOf(const TrelvanApp& app, const SimulatedDesktop& desktop,
                                   const SimulatedMenu& menu, std::string_view what) {
    if (what == "profiles") return encoded(app.profileManager.profiles.get());
    if (what == "activeProfile") return encoded(app.profileManager.activeProfile());
    if (what == "defaults") return defaultsJson(desktop);
    if (what == "monitor") return monitorJson(*app.eventMonitor);
    if (what == "keepAwake") return keepAwakeJson(app.keepAwakeManager);
    if (what == "menu") return menuState(menu.state());
    if (what == "debugLog") return debugLogJson(*app.eventMonitor);
    return std::nullopt;
}

}  // namespace trelvan
