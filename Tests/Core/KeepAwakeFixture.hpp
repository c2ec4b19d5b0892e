#pragma once

#include "Core/KeepAwakeManager.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <vector>

namespace trelvan::test {

/// Keep Awake on the simulated desktop, nobody at the computer.
class KeepAwakeFixture : public testing::Test {
  protected:
    /// Makes the manager with what the defaults hold now.
    KeepAwakeManager& load() {
        manager = std::make_unique<KeepAwakeManager>(KeepAwakeManager::Ports{
            .input = desktop.inputState(),
            .poster = desktop.eventPoster(),
            .screens = desktop.screens(),
            .defaults = desktop.userDefaults(),
            .clock = desktop.clock(),
            .mainQueue = desktop.mainQueue(),
            .timers = desktop.timers(),
            .inhibitor = desktop.idleInhibitor(),
        });
        return *manager;
    }
    KeepAwakeManager& loadEnabled() {
        desktop.defaults["keep_awake_enabled"] = true;
        return load();
    }

    void runUntil(double moment) { desktop.time.runUntil(Seconds{moment}); }
    void userMoves() { desktop.send({.type = EventType::mouseMoved}); }

    /// Where the pointer was posted to, in order, in top-left coordinates.
    std::vector<Point> moves() const {
        std::vector<Point> places;
        for (const auto& posted : desktop.all<trace::PostedMouse>()) places.push_back(posted.location);
        return places;
    }
    /// When it was nudged, without the moves back.
    std::vector<double> nudges() const {
        std::vector<double> moments;
        bool nudge = true;
        for (const auto& entry : desktop.entries) {
            if (!std::holds_alternative<trace::PostedMouse>(entry.what)) continue;
            if (nudge) moments.push_back(entry.at.count());
            nudge = !nudge;
        }
        return moments;
    }

    TestDesktop desktop;
    std::unique_ptr<KeepAwakeManager> manager;
};

}  // namespace trelvan::test
