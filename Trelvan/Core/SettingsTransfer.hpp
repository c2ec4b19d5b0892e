#pragma once

#include "Core/EventMonitor.hpp"
#include "Core/LaunchAtLoginManager.hpp"
#include "Core/Model/Backup.hpp"
#include "Platform/UserDefaults.hpp"

namespace trelvan {

/// The way of the settings into a backup and back: the only place that knows where each of them lives. Main
/// thread.
class SettingsTransfer {
  public:
    SettingsTransfer(UserDefaults& defaults, EventMonitor& monitor, LaunchAtLoginManager& loginManager)
        : defaults_(defaults), monitor_(monitor), loginManager_(loginManager) {}

    /// The settings as they are in force now.
    [[nodiscard]] AppSettingsSnapshot current() const;
    /// Puts them in force and stores them. The registration at login is touched only where it differs.
    void apply(const AppSettingsSnapshot& settings);

  private:
    UserDefaults& defaults_;
    EventMonitor& monitor_;
    LaunchAtLoginManager& loginManager_;
};

}  // namespace trelvan
