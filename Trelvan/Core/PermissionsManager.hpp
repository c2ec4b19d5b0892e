#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/ScriptRunner.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Published.hpp"

#include <optional>
#include <string_view>

namespace trelvan {

/// Tracks and requests the two permissions the program depends on: Accessibility, without which there is no
/// tap, and automation of "System Events", which one fall-back of the desktop moves uses. Main thread.
class PermissionsManager {
  public:
    static constexpr std::string_view accessibilityPrefsURL =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
    static constexpr std::string_view automationPrefsURL =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation";

    /// Reads the Accessibility state once, which writes the first line about it.
    PermissionsManager(AccessibilityTrust& trust, ScriptRunner& scripts, Logger& logger);

    /// Last known Accessibility state.
    Published<bool> accessibilityGranted{false};

    /// Reads the state again without prompting; logs it only when it differs from what was last logged.
    void refresh();
    /// Asks for trust with the system's prompt.
    void requestIfNeeded();
    /// Makes the system ask for consent to automate "System Events". Blocks for as long as that takes.
    void requestAutomationPermissionIfNeeded();

  private:
    AccessibilityTrust& trust_;
    ScriptRunner& scripts_;
    Logger& logger_;
    std::optional<bool> lastLoggedAccessibilityGranted_;
};

}  // namespace trelvan
