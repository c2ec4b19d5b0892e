#pragma once

#include "Core/EventMonitor.hpp"
#include "Core/PermissionsManager.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <utility>
#include <vector>

namespace trelvan::test {

/// A monitor on the simulated desktop, with a handler that answers as told and remembers what it was asked.
class MonitorFixture : public testing::Test {
  protected:
    using Call = std::pair<std::int64_t, EventFlags>;

    MonitorFixture() : permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger) {}
    ~MonitorFixture() override {
        if (monitor) monitor->stop();
    }

    /// Makes the monitor with what the defaults hold now.
    EventMonitor& load() {
        monitor = std::make_shared<EventMonitor>(
            EventMonitor::Ports{desktop.eventTap(), desktop.eventPoster(), desktop.screens(),
                                desktop.userDefaults(), desktop.mainQueue(), desktop.clock(),
                                desktop.sessionState()},
            [this]() -> PermissionsManager& { return permissions; }, desktop.logger);
        return *monitor;
    }

    EventMonitor& start() {
        load().start();
        desktop.time.runDue();
        desktop.entries.clear();
        return *monitor;
    }

    void handleButtons() {
        monitor->onButtonEvent = [this](std::int64_t button, EventFlags flags) {
            calls.emplace_back(button, flags);
            return consumes;
        };
    }

    TapAnswer send(TapEvent event) {
        if (event.location == Point{}) event.location = desktop.pointer;
        return desktop.send(event);
    }
    TapAnswer button(EventType type, std::int64_t number, EventFlags flags = 0) {
        return send({.type = type, .flags = flags, .buttonNumber = number});
    }
    TapAnswer down(std::int64_t number) { return button(EventType::otherMouseDown, number); }
    TapAnswer up(std::int64_t number) { return button(EventType::otherMouseUp, number); }
    TapAnswer scroll(std::int64_t vertical, std::int64_t horizontal = 0) {
        return send({.type = EventType::scrollWheel,
                     .scrollDeltaAxis1 = vertical,
                     .scrollDeltaAxis2 = horizontal,
                     .scrollPointDeltaAxis1 = vertical * 10,
                     .scrollPointDeltaAxis2 = horizontal * 10});
    }
    TapAnswer move(std::int64_t deltaX, std::int64_t deltaY, std::int64_t userData = 0) {
        return send(
            {.type = EventType::mouseMoved, .deltaX = deltaX, .deltaY = deltaY, .sourceUserData = userData});
    }
    /// The event that reached the tap last, as it left it.
    TapEvent lastEvent() const { return desktop.all<trace::Event>().back().event; }

    TestDesktop desktop;
    PermissionsManager permissions;
    std::shared_ptr<EventMonitor> monitor;
    bool consumes = true;
    std::vector<Call> calls;
};

}  // namespace trelvan::test
