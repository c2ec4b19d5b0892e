#include "Core/SettingsTransfer.hpp"

#include "Core/Model/AppLanguage.hpp"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

using Settings = AppSettingsSnapshot;

/// Settings that live in the defaults alone. What is missing or damaged there has the snapshot's own default.
constexpr std::array<std::pair<std::string_view, bool Settings::*>, 6> storedSwitches{
    {{"notify_low_battery", &Settings::notifyLowBattery},
     {"notify_caps_lock", &Settings::notifyCapsLock},
     {"notify_fc_lock", &Settings::notifyFCLock},
     {"notify_mic_mute_unmute", &Settings::notifyMicMuteUnmute},
     {"privacy_store_local_only", &Settings::privacyStoreLocalOnly},
     {"privacy_share_usage_data", &Settings::privacyShareUsageData}}};
constexpr std::array<std::pair<std::string_view, std::string Settings::*>, 2> storedTexts{
    {{"general_theme", &Settings::generalThemeRawValue}, {languageKey, &Settings::generalLanguageRawValue}}};

constexpr std::array<std::pair<Published<double> EventMonitor::*, double Settings::*>, 4> shapingNumbers{
    {{&EventMonitor::scrollSpeedVertical, &Settings::scrollSpeedVertical},
     {&EventMonitor::scrollSpeedHorizontal, &Settings::scrollSpeedHorizontal},
     {&EventMonitor::mouseSpeed, &Settings::mouseSpeed},
     {&EventMonitor::mouseAcceleration, &Settings::mouseAcceleration}}};
constexpr std::array<std::pair<Published<bool> EventMonitor::*, bool Settings::*>, 3> shapingSwitches{
    {{&EventMonitor::horizontalScrollEnabled, &Settings::horizontalScrollEnabled},
     {&EventMonitor::swapScrollDirection, &Settings::swapScrollDirection},
     {&EventMonitor::advancedMouseSpeedEnabled, &Settings::advancedMouseSpeedEnabled}}};

}  // namespace

AppSettingsSnapshot SettingsTransfer::current() const {
    Settings settings;
    for (const auto& [key, member] : storedSwitches)
        settings.*member = onlyBool(defaults_.object(key)).value_or(settings.*member);
    for (const auto& [key, member] : storedTexts)
        settings.*member = asText(defaults_.object(key)).value_or(settings.*member);
    for (const auto& [live, member] : shapingNumbers) settings.*member = (monitor_.*live).get();
    for (const auto& [live, member] : shapingSwitches) settings.*member = (monitor_.*live).get();
    settings.debugMode = monitor_.debugMode;
    settings.launchAtLoginEnabled = loginManager_.isEnabled;
    return settings;
}

void SettingsTransfer::apply(const AppSettingsSnapshot& settings) {
    for (const auto& [key, member] : storedSwitches) defaults_.set(key, settings.*member);
    for (const auto& [key, member] : storedTexts) defaults_.set(key, settings.*member);
    for (const auto& [live, member] : shapingNumbers) monitor_.*live = settings.*member;
    for (const auto& [live, member] : shapingSwitches) monitor_.*live = settings.*member;
    monitor_.persistSpeedSettings();
    monitor_.debugMode = settings.debugMode;
    if (loginManager_.isEnabled != settings.launchAtLoginEnabled) loginManager_.toggle();
}

}  // namespace trelvan
