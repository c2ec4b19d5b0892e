#include "Core/SettingsTransfer.hpp"

#include "Core/SettingsCatalogue.hpp"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

using Settings = AppSettingsSnapshot;

/// Settings that live in the defaults alone. What is missing or damaged there has the snapshot's own default.
constexpr std::array<std::pair<std::string_view, bool Settings::*>, 6> storedSwitches{
    {{setting::notifyLowBattery.key, &Settings::notifyLowBattery},
     {setting::notifyCapsLock.key, &Settings::notifyCapsLock},
     {setting::notifyFCLock.key, &Settings::notifyFCLock},
     {setting::notifyMicMuteUnmute.key, &Settings::notifyMicMuteUnmute},
     {setting::privacyStoreLocalOnly.key, &Settings::privacyStoreLocalOnly},
     {setting::privacyShareUsageData.key, &Settings::privacyShareUsageData}}};
constexpr std::array<std::pair<std::string_view, std::string Settings::*>, 2> storedTexts{
    {{setting::theme.key, &Settings::generalThemeRawValue},
     {setting::language.key, &Settings::generalLanguageRawValue}}};

/// The members of the monitor's properties, in the order of its tables.
constexpr std::array<double Settings::*, 4> shapingNumbers{
    &Settings::scrollSpeedVertical, &Settings::scrollSpeedHorizontal, &Settings::mouseSpeed,
    &Settings::mouseAcceleration};
constexpr std::array<bool Settings::*, 3> shapingSwitches{
    &Settings::horizontalScrollEnabled, &Settings::swapScrollDirection, &Settings::advancedMouseSpeedEnabled};

}  // namespace

AppSettingsSnapshot SettingsTransfer::current() const {
    Settings settings;
    for (const auto& [key, member] : storedSwitches)
        settings.*member = strictBool(defaults_.object(key)).value_or(settings.*member);
    for (const auto& [key, member] : storedTexts)
        settings.*member = asText(defaults_.object(key)).value_or(settings.*member);
    for (std::size_t index = 0; index < shapingNumbers.size(); ++index)
        settings.*shapingNumbers[index] = (monitor_.*EventMonitor::numberProperties[index].value).get();
    for (std::size_t index = 0; index < shapingSwitches.size(); ++index)
        settings.*shapingSwitches[index] = (monitor_.*EventMonitor::switchProperties[index].value).get();
    settings.debugMode = monitor_.debugMode;
    settings.launchAtLoginEnabled = loginManager_.isEnabled;
    return settings;
}

void SettingsTransfer::apply(const AppSettingsSnapshot& settings) {
    for (const auto& [key, member] : storedSwitches) defaults_.set(key, settings.*member);
    for (const auto& [key, member] : storedTexts) defaults_.set(key, settings.*member);
    for (std::size_t index = 0; index < shapingNumbers.size(); ++index)
        monitor_.setNumber(EventMonitor::numberProperties[index], settings.*shapingNumbers[index]);
    for (std::size_t index = 0; index < shapingSwitches.size(); ++index)
        monitor_.*EventMonitor::switchProperties[index].value = settings.*shapingSwitches[index];
    monitor_.persistSpeedSettings();
    monitor_.debugMode = settings.debugMode;
    if (loginManager_.isEnabled != settings.launchAtLoginEnabled) loginManager_.toggle();
}

}  // namespace trelvan
