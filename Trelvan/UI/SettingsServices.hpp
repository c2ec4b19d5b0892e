#pragma once

#include "Core/EventMonitor.hpp"
#include "Core/KeepAwakeManager.hpp"
#include "Core/LaunchAtLoginManager.hpp"
#include "Core/MonitorSwitch.hpp"
#include "Core/PermissionsManager.hpp"
#include "Core/ProfileManager.hpp"
#include "Core/SmartButtonController.hpp"
#include "Platform/Appearance.hpp"
#include "Platform/BundleInfo.hpp"
#include "Platform/RunLoop.hpp"
#include "UI/Components/Look.hpp"
#include "UI/Models/InterfaceSettings.hpp"

#include <functional>
#include <optional>

namespace trelvan {

/// What the settings window shows and works on; all of it outlives the window.
struct SettingsServices {
    EventMonitor& monitor;
    MonitorSwitch& monitorSwitch;
    ProfileManager& profiles;
    PermissionsManager& permissions;
    LaunchAtLoginManager& login;
    KeepAwakeManager& keepAwake;
    SmartButtonController& smartButton;
    InterfaceSettings& settings;
    const BundleInfo& bundle;
    const Appearance& appearance;
    const Clock& clock;
    Timers& timers;
    MainQueue& mainQueue;
    /// Opens the place where the user grants access. What to tell the user instead, where there is no such
    /// place.
    std::function<std::optional<UiText>()> openAccessibilitySettings;
};

}  // namespace trelvan
