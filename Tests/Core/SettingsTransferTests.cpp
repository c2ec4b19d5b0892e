#include "Core/SettingsTransfer.hpp"
#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

class SettingsTransferTest : public testing::Test {
  protected:
    static AppSettingsSnapshot unusual() {
        return {.notifyLowBattery = false,
                .notifyCapsLock = false,
                .notifyFCLock = true,
                .notifyMicMuteUnmute = false,
                .privacyStoreLocalOnly = false,
                .privacyShareUsageData = true,
                .generalThemeRawValue = "Dark",
                .generalLanguageRawValue = "Español",
                .scrollSpeedVertical = 2,
                .horizontalScrollEnabled = true,
                .scrollSpeedHorizontal = 0.5,
                .swapScrollDirection = true,
                .mouseSpeed = 1.3,
                .advancedMouseSpeedEnabled = false,
                .mouseAcceleration = 0.25,
                .debugMode = true,
                .launchAtLoginEnabled = true};
    }

    SimulatedDesktop desktop;
    test::FakePanels panels;
    TrelvanApp app{desktop, panels, desktop.logger};
    SettingsTransfer transfer{desktop.userDefaults(), *app.eventMonitor, app.loginManager};
};

TEST_F(SettingsTransferTest, FreshInstallationHasTheDefaults) {
    AppSettingsSnapshot expected;
    expected.mouseAcceleration = 0.6;
    EXPECT_EQ(transfer.current(), expected);
}

TEST_F(SettingsTransferTest, WhatIsAppliedIsInForceAndStored) {
    transfer.apply(unusual());
    EXPECT_EQ(transfer.current(), unusual());
    EXPECT_TRUE(app.loginManager.isEnabled);
    EXPECT_TRUE(app.eventMonitor->debugMode);
    EXPECT_EQ(desktop.defaults.at("trackball_mouse_speed"), DefaultsValue(1.3));
    EXPECT_EQ(desktop.defaults.at("general_language"), DefaultsValue(std::string("Español")));
    EXPECT_EQ(desktop.defaults.at("notify_fc_lock"), DefaultsValue(true));
}

TEST_F(SettingsTransferTest, RegistrationThatIsAsItShouldBeIsLeftAlone) {
    desktop.failures.loginItem = true;
    auto settings = unusual();
    settings.launchAtLoginEnabled = false;
    bool failed = false;
    desktop.onTrace = [&](const TraceEntry& entry) {
        const auto* line = std::get_if<trace::Logged>(&entry.what);
        failed = failed || (line != nullptr && line->level == LogLevel::error);
    };
    transfer.apply(settings);
    EXPECT_FALSE(failed);
    transfer.apply(unusual());
    EXPECT_TRUE(failed);
    desktop.onTrace = nullptr;
}

TEST_F(SettingsTransferTest, DamagedSettingsCountAsMissing) {
    desktop.defaults["notify_caps_lock"] = std::string("yes");
    desktop.defaults["general_theme"] = 3.0;
    EXPECT_TRUE(transfer.current().notifyCapsLock);
    EXPECT_EQ(transfer.current().generalThemeRawValue, "System");
}

}  // namespace
}  // namespace trelvan
