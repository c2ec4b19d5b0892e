#pragma once

#include "Core/Settings/AppSettingsSnapshot.hpp"
#include "Core/Settings/Settings.hpp"

namespace trelvan {

/// The way of the settings into a backup and back. Main thread.
class SettingsTransfer {
  public:
    explicit SettingsTransfer(const Settings& settings) : settings_(settings) {}

    /// The settings as they are in force now.
    [[nodiscard]] AppSettingsSnapshot current() const;
    /// Puts them in force and stores them.
    void apply(const AppSettingsSnapshot& snapshot);

  private:
    const Settings& settings_;
};

}  // namespace trelvan
