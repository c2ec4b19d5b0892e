#pragma once

#include "Core/Settings/SettingRow.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Platform/UserDefaults.hpp"

#include <array>

namespace trelvan {

/// The settings that travel with a backup, a value for each row that has a name there. A block that lacks one
/// of them is none.
class AppSettingsSnapshot {
  public:
    /// Every setting with its default.
    AppSettingsSnapshot();

    /// The value of a row that is in the backup.
    [[nodiscard]] const DefaultsValue& operator[](const SettingRow& row) const;
    /// `value` has the row's type.
    void set(const SettingRow& row, DefaultsValue value);

    /// Strings are equal under canonical equivalence.
    friend bool operator==(const AppSettingsSnapshot& left, const AppSettingsSnapshot& right);

  private:
    std::array<DefaultsValue, setting::backupCount> values_;
};

}  // namespace trelvan
