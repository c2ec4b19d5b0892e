#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/AppTheme.hpp"
#include "Core/Model/AutoStopPreset.hpp"
#include "Core/Settings/SettingRow.hpp"
#include "Utilities/Fatal.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// Every setting of the program, a row each: the only place where keys, defaults, ranges and policies are
/// written down. A new setting is a new row; loading, saving, backup, scripts and `check` follow.
namespace trelvan::setting {

/// How rows are put together: a policy, the names, and the value's type with its default.
namespace make {

constexpr SettingRow boolean(bool isOn) {
    return {.key = {}, .name = {}, .kind = SettingKind::boolean, .isOn = isOn};
}
/// From `minimum` to `maximum`, both included.
constexpr SettingRow number(double initial, double minimum, double maximum) {
    return {.key = {},
            .name = {},
            .kind = SettingKind::number,
            .initial = initial,
            .minimum = minimum,
            .maximum = maximum,
            .maximumLoaded = maximum};
}
constexpr SettingRow string(std::string_view text) {
    return {.key = {}, .name = {}, .kind = SettingKind::string, .text = text};
}
constexpr SettingRow data() {
    return {.key = {}, .name = {}, .kind = SettingKind::data};
}
/// A string with the raw values of an enumeration for its words; another one stays and is read as each reader
/// does.
template <RawRepresentable Enum>
constexpr SettingRow word(Enum initial) {
    SettingRow row = string(rawValue(initial));
    row.words = RawValueTable<Enum>::rawValues;
    row.wordNoun = RawValueTable<Enum>::noun;
    return row;
}
/// The same, where another string becomes the default.
template <RawRepresentable Enum>
constexpr SettingRow knownWord(Enum initial) {
    SettingRow row = word(initial);
    row.keepsUnknownWords = false;
    return row;
}
/// A number that does not survive a start outside its range, or above `highest`: it becomes the default, in
/// the defaults too.
constexpr SettingRow resetAbove(double highest, SettingRow row) {
    row.maximumLoaded = highest;
    row.resetsOutside = true;
    return row;
}

constexpr SettingRow named(std::string_view key, std::string_view name, Keeping keeping, SettingRow row) {
    row.key = key;
    row.name = name;
    row.keeping = keeping;
    return row;
}
/// Of the event path: changed at once, written by the explicit save.
constexpr SettingRow shaping(std::string_view key, std::string_view name, SettingRow row) {
    row = named(key, name, Keeping::onRequest, row);
    row.reading = Reading::loose;
    row.backupName = name;
    row.isRecorded = true;
    return row;
}
/// Of Keep Awake: written with each change, as it is given, and in no backup.
constexpr SettingRow keepAwake(std::string_view key, std::string_view name, SettingRow row) {
    row = named(key, name, Keeping::onChange, row);
    row.clampsWhenSet = false;
    return row;
}
/// What the interface writes and anybody reads at the moment of use.
constexpr SettingRow stored(std::string_view key, std::string_view name, SettingRow row) {
    return named(key, name, Keeping::readAnew, row);
}
constexpr SettingRow owned(std::string_view key, std::string_view name, SettingRow row) {
    return named(key, name, Keeping::byOwner, row);
}
constexpr SettingRow inBackup(std::string_view backupName, SettingRow row) {
    row.backupName = backupName;
    return row;
}
/// What travels under the name of its property.
constexpr SettingRow inBackup(SettingRow row) {
    return inBackup(row.name, row);
}
constexpr SettingRow recorded(SettingRow row) {
    row.isRecorded = true;
    return row;
}

// clang-format off
inline constexpr std::array rows{
    owned("trackball_profiles", "profiles", data()),
    owned("trackball_active_profile", "activeProfileID", string("")),

    shaping("trackball_scroll_speed_vertical", "scrollSpeedVertical", number(1.0, 0.2, 3.0)),
    shaping("trackball_horizontal_scroll_enabled", "horizontalScrollEnabled", boolean(false)),
    shaping("trackball_scroll_speed_horizontal", "scrollSpeedHorizontal", number(1.0, 0.2, 3.0)),
    shaping("trackball_swap_scroll_direction", "swapScrollDirection", boolean(false)),
    // A faster speed lasts until the next launch only, so that nobody is locked in with a wild pointer.
    shaping("trackball_mouse_speed", "mouseSpeed", resetAbove(1.4, number(1.0, 0.5, 2.0))),
    shaping("trackball_advanced_mouse_speed_enabled", "advancedMouseSpeedEnabled", boolean(true)),
    shaping("trackball_mouse_acceleration", "mouseAcceleration", number(0.6, 0.0, 1.0)),

    keepAwake("keep_awake_enabled", "isEnabled", boolean(false)),
    keepAwake("keep_awake_idle_threshold_minutes", "idleThresholdMinutes", number(3.0, 1.0, 120.0)),
    keepAwake("keep_awake_move_every_minutes", "moveEveryMinutes", number(1.0, 1.0, 60.0)),
    keepAwake("keep_awake_auto_stop_preset", "autoStopPreset", knownWord(AutoStopPreset::never)),

    inBackup(stored("notify_low_battery", "notifyLowBattery", boolean(true))),
    inBackup(stored("notify_caps_lock", "notifyCapsLock", boolean(true))),
    inBackup(stored("notify_fc_lock", "notifyFCLock", boolean(false))),
    inBackup(stored("notify_mic_mute_unmute", "notifyMicMuteUnmute", boolean(true))),
    inBackup(stored("privacy_store_local_only", "privacyStoreLocalOnly", boolean(true))),
    inBackup(stored("privacy_share_usage_data", "privacyShareUsageData", boolean(false))),
    inBackup("generalThemeRawValue", stored("general_theme", "theme", word(AppTheme::system))),
    recorded(inBackup("generalLanguageRawValue",
                      stored("general_language", "language", word(AppLanguage::english)))),
    // In points. A smaller window is raised to its own minimum when it is shown.
    stored("window_saved_width", "windowWidth", number(900.0, 0.0, 100'000.0)),
    stored("window_saved_height", "windowHeight", number(960.0, 0.0, 100'000.0)),

    inBackup(owned("", "debugMode", boolean(false))),
    inBackup(owned("", "launchAtLoginEnabled", boolean(false))),
};
// clang-format on

}  // namespace make

/// Every setting.
inline constexpr auto& all = make::rows;

inline constexpr auto backupCount = static_cast<std::size_t>(
    std::ranges::count_if(all, [](const SettingRow& row) { return !row.backupName.empty(); }));

/// The row of a setting, by the name of its property; a wrong name does not compile.
consteval const SettingRow& row(std::string_view name) {
    for (const auto& each : all) {
        if (each.name == name) return each;
    }
    fatal("no such setting");
}

}  // namespace trelvan::setting
