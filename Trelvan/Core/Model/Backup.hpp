#pragma once

#include "Core/Model/RecordField.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Core/Settings/AppSettingsSnapshot.hpp"
#include "Utilities/Uuid.hpp"

#include <cstdint>
#include <optional>
#include <tuple>
#include <vector>

namespace trelvan {

/// The top of a backup file.
struct BackupPackage {
    static constexpr std::int64_t currentFormat = 1;

    /// Read, and compared with nothing.
    std::int64_t formatVersion = currentFormat;
    std::vector<TrackballProfile> profiles;
    std::optional<Uuid> activeProfileID;
    std::optional<AppSettingsSnapshot> settings;

    static constexpr auto fields() {
        using Self = BackupPackage;
        return std::tuple{
            required("formatVersion", &Self::formatVersion),
            required("profiles", &Self::profiles),
            defaulted("activeProfileID", &Self::activeProfileID),
            defaulted("settings", &Self::settings),
        };
    }
};

/// What an import brought.
struct BackupImportResult {
    std::int64_t profileCount = 0;
    /// Of a full backup that has them.
    std::optional<AppSettingsSnapshot> settings;
};

}  // namespace trelvan
