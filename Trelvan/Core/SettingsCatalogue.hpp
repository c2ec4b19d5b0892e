#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

namespace trelvan {

/// The kind of a setting's stored value.
enum class SettingKind { boolean, number, string, data };

/// What is known about one stored setting: its key, its kind, what holds while nothing readable is stored,
/// and the range of a number. The only place where these are written down.
struct SettingRow {
    std::string_view key;
    SettingKind kind = SettingKind::boolean;
    /// The default of a boolean.
    bool isOn = false;
    /// The default of a number, and its range with both ends.
    double initial = 0;
    double minimum = 0;
    double maximum = 0;
    /// The default of a string.
    std::string_view text{};

    static constexpr SettingRow boolean(std::string_view key, bool isOn) {
        return {.key = key, .kind = SettingKind::boolean, .isOn = isOn};
    }
    static constexpr SettingRow number(std::string_view key, double initial, double minimum, double maximum) {
        return {.key = key,
                .kind = SettingKind::number,
                .initial = initial,
                .minimum = minimum,
                .maximum = maximum};
    }
    static constexpr SettingRow string(std::string_view key, std::string_view text) {
        return {.key = key, .kind = SettingKind::string, .text = text};
    }
    static constexpr SettingRow data(std::string_view key) { return {.key = key, .kind = SettingKind::data}; }

    /// The number as the setting takes it, wherever it comes from: moved into the range. None for none, and
    /// for what is not a number, which counts as a value of the wrong kind.
    [[nodiscard]] std::optional<double> accepted(std::optional<double> given) const {
        if (!given || std::isnan(*given)) return std::nullopt;
        return std::clamp(*given, minimum, maximum);
    }
};

namespace setting {

inline constexpr auto profiles = SettingRow::data("trackball_profiles");
inline constexpr auto activeProfile = SettingRow::string("trackball_active_profile", "");

inline constexpr auto scrollSpeedVertical =
    SettingRow::number("trackball_scroll_speed_vertical", 1.0, 0.2, 3.0);
inline constexpr auto horizontalScrollEnabled =
    SettingRow::boolean("trackball_horizontal_scroll_enabled", false);
inline constexpr auto scrollSpeedHorizontal =
    SettingRow::number("trackball_scroll_speed_horizontal", 1.0, 0.2, 3.0);
inline constexpr auto swapScrollDirection = SettingRow::boolean("trackball_swap_scroll_direction", false);
inline constexpr auto mouseSpeed = SettingRow::number("trackball_mouse_speed", 1.0, 0.5, 2.0);
inline constexpr auto advancedMouseSpeedEnabled =
    SettingRow::boolean("trackball_advanced_mouse_speed_enabled", true);
inline constexpr auto mouseAcceleration = SettingRow::number("trackball_mouse_acceleration", 0.6, 0.0, 1.0);

inline constexpr auto keepAwakeEnabled = SettingRow::boolean("keep_awake_enabled", false);
inline constexpr auto idleThresholdMinutes =
    SettingRow::number("keep_awake_idle_threshold_minutes", 3.0, 1.0, 120.0);
inline constexpr auto moveEveryMinutes = SettingRow::number("keep_awake_move_every_minutes", 1.0, 1.0, 60.0);
inline constexpr auto autoStopPreset = SettingRow::string("keep_awake_auto_stop_preset", "never");

inline constexpr auto notifyLowBattery = SettingRow::boolean("notify_low_battery", true);
inline constexpr auto notifyCapsLock = SettingRow::boolean("notify_caps_lock", true);
inline constexpr auto notifyFCLock = SettingRow::boolean("notify_fc_lock", false);
inline constexpr auto notifyMicMuteUnmute = SettingRow::boolean("notify_mic_mute_unmute", true);
inline constexpr auto privacyStoreLocalOnly = SettingRow::boolean("privacy_store_local_only", true);
inline constexpr auto privacyShareUsageData = SettingRow::boolean("privacy_share_usage_data", false);
inline constexpr auto theme = SettingRow::string("general_theme", "System");
inline constexpr auto language = SettingRow::string("general_language", "English");
/// In points. A smaller window is raised to its own minimum when it is shown.
inline constexpr auto windowWidth = SettingRow::number("window_saved_width", 900.0, 0.0, 100'000.0);
inline constexpr auto windowHeight = SettingRow::number("window_saved_height", 960.0, 0.0, 100'000.0);

/// Every setting that is stored.
inline constexpr std::array all{profiles,
                                activeProfile,
                                scrollSpeedVertical,
                                horizontalScrollEnabled,
                                scrollSpeedHorizontal,
                                swapScrollDirection,
                                mouseSpeed,
                                advancedMouseSpeedEnabled,
                                mouseAcceleration,
                                keepAwakeEnabled,
                                idleThresholdMinutes,
                                moveEveryMinutes,
                                autoStopPreset,
                                notifyLowBattery,
                                notifyCapsLock,
                                notifyFCLock,
                                notifyMicMuteUnmute,
                                privacyStoreLocalOnly,
                                privacyShareUsageData,
                                theme,
                                language,
                                windowWidth,
                                windowHeight};

}  // namespace setting

}  // namespace trelvan
