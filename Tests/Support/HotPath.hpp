#pragma once

#include "Core/ButtonMapper.hpp"
#include "Core/EventMonitor.hpp"
#include "Core/PermissionsManager.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <cstdint>
#include <memory>

namespace trelvan::test {

/// A running monitor with a real mapper behind it on a simulated desktop that keeps no trace: what tests and
/// benchmarks of the hot path send events through.
class HotPath {
  public:
    /// The profile maps `mappings` extra buttons, from 2 up, to an action that starts nothing.
    explicit HotPath(int mappings = 0)
        : permissions_(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger),
          monitor(std::make_shared<EventMonitor>(
              EventMonitor::Ports{desktop.eventTap(), desktop.eventPoster(), desktop.screens(),
                                  desktop.userDefaults(), desktop.mainQueue(), desktop.clock(),
                                  desktop.sessionState()},
              [this]() -> PermissionsManager& { return permissions_; }, desktop.logger)) {
        TrackballProfile profile;
        for (int index = 0; index < mappings; ++index) {
            ButtonMapping mapping;
            mapping.buttonNumber = 2 + index;
            // Handled to the end without a key sequence, so that the pipeline to the action is what is
            // measured.
            mapping.action() = ButtonAction::customShortcut;
            profile.mappings.push_back(mapping);
        }
        snapshot_ = std::make_shared<const ProfileSnapshot>(std::move(profile));
        const auto mapper = std::make_shared<ButtonMapper>(
            ButtonMapper::Ports{desktop.inputState(), desktop.eventPoster(), desktop.backgroundQueue(),
                                desktop.mainQueue(), desktop.screens(), desktop.workspace(),
                                desktop.hotKeyTable(), desktop.systemViews(), desktop.scriptRunner(),
                                desktop.actionShortcuts(), desktop.sessionState()},
            [this] { return snapshot_; }, std::weak_ptr<SmartButtonMenu>(), desktop.logger);
        monitor->onButtonEvent = [mapper](std::int64_t button, EventFlags flags) {
            return mapper->execute(button, flags);
        };
        desktop.windows = {{.frame = {0, 0, 10, 10}, .visible = false}};
        monitor->start();
        desktop.time.runDue();
    }
    HotPath(const HotPath&) = delete;
    HotPath& operator=(const HotPath&) = delete;
    ~HotPath() { monitor->stop(); }

    TapAnswer send(TapEvent event) {
        event.location = desktop.pointer;
        return desktop.send(event);
    }
    /// What one event puts off until later, so that nothing heaps up.
    void drain() { desktop.time.runDue(); }

    SimulatedDesktop desktop;

  private:
    PermissionsManager permissions_;
    std::shared_ptr<const ProfileSnapshot> snapshot_;

  public:
    std::shared_ptr<EventMonitor> monitor;
};

}  // namespace trelvan::test
