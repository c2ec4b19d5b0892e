#pragma once

#include "Core/Model/RecordField.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Utilities/Uuid.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace trelvan {

/// The settings that travel with a backup. A block that lacks one of them is none.
struct AppSettingsSnapshot {
    bool notifyLowBattery = true;
    bool notifyCapsLock = true;
    bool notifyFCLock = false;
    bool notifyMicMuteUnmute = true;
    bool privacyStoreLocalOnly = true;
    bool privacyShareUsageData = false;
    std::string generalThemeRawValue = "System";
    std::string generalLanguageRawValue = "English";
    double scrollSpeedVertical = 1;
    bool horizontalScrollEnabled = false;
    double scrollSpeedHorizontal = 1;
    bool swapScrollDirection = false;
    double mouseSpeed = 1;
    bool advancedMouseSpeedEnabled = true;
    double mouseAcceleration = 0;
    bool debugMode = false;
    bool launchAtLoginEnabled = false;

    static constexpr auto fields() {
        using Self = AppSettingsSnapshot;
        return std::tuple{
            required("notifyLowBattery", &Self::notifyLowBattery),
            required("notifyCapsLock", &Self::notifyCapsLock),
            required("notifyFCLock", &Self::notifyFCLock),
            required("notifyMicMuteUnmute", &Self::notifyMicMuteUnmute),
            required("privacyStoreLocalOnly", &Self::privacyStoreLocalOnly),
            required("privacyShareUsageData", &Self::privacyShareUsageData),
            required("generalThemeRawValue", &Self::generalThemeRawValue),
            required("generalLanguageRawValue", &Self::generalLanguageRawValue),
            required("scrollSpeedVertical", &Self::scrollSpeedVertical),
            required("horizontalScrollEnabled", &Self::horizontalScrollEnabled),
            required("scrollSpeedHorizontal", &Self::scrollSpeedHorizontal),
            required("swapScrollDirection", &Self::swapScrollDirection),
            required("mouseSpeed", &Self::mouseSpeed),
            required("advancedMouseSpeedEnabled", &Self::advancedMouseSpeedEnabled),
            required("mouseAcceleration", &Self::mouseAcceleration),
            required("debugMode", &Self::debugMode),
            required("launchAtLoginEnabled", &Self::launchAtLoginEnabled),
        };
    }
    friend bool operator==(const AppSettingsSnapshot& left, const AppSettingsSnapshot& right) {
        return equalFields(left, right);
    }
};

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
