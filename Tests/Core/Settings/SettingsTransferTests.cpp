#include "Core/Settings/SettingsTransfer.hpp"
#include "Support/FakePanels.hpp"
#include "Support/RowValues.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

class SettingsTransferTest : public testing::Test {
  protected:
    /// No setting has its default.
    static AppSettingsSnapshot unusual() {
        AppSettingsSnapshot snapshot;
        for (const auto& row : setting::all) {
            if (row.isInBackup()) snapshot.set(row, test::otherValue(row));
        }
        return snapshot;
    }

    SimulatedDesktop desktop;
    test::FakePanels panels;
    TrelvanApp app{desktop, panels, desktop.logger};
    SettingsTransfer transfer{app.settings};
};

TEST_F(SettingsTransferTest, FreshInstallationHasTheDefaults) {
    EXPECT_EQ(transfer.current(), AppSettingsSnapshot());
    EXPECT_EQ(transfer.current()[setting::row("mouseAcceleration")], DefaultsValue(0.6));
}

TEST_F(SettingsTransferTest, WhatIsAppliedIsInForceAndStored) {
    transfer.apply(unusual());
    EXPECT_EQ(transfer.current(), unusual());
    EXPECT_TRUE(app.loginManager.isEnabled);
    EXPECT_TRUE(app.eventMonitor->debugMode);
    for (const auto& row : setting::all) {
        if (row.isInBackup() && row.isStored()) {
            EXPECT_EQ(desktop.defaults.at(std::string(row.key)), test::otherValue(row)) << row.name;
        }
    }
    EXPECT_FALSE(desktop.defaults.contains("keep_awake_enabled"));
    EXPECT_FALSE(desktop.defaults.contains("window_saved_width"));
}

TEST_F(SettingsTransferTest, RegistrationThatIsAsItShouldBeIsLeftAlone) {
    desktop.failures.loginItem = true;
    auto settings = unusual();
    settings.set(setting::row("launchAtLoginEnabled"), false);
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
    EXPECT_EQ(transfer.current()[setting::row("notifyCapsLock")], DefaultsValue(true));
    EXPECT_EQ(transfer.current()[setting::row("theme")], DefaultsValue(std::string("System")));
}

TEST_F(SettingsTransferTest, EverySettingThatIsNoProfileIsReachedByItsName) {
    for (const auto& row : test::settableRows()) {
        auto* const found = app.settings.named(row.name);
        ASSERT_NE(found, nullptr) << row.name;
        EXPECT_EQ(found->row().name, row.name);
        EXPECT_TRUE(found->take(test::otherValue(row))) << row.name;
        EXPECT_EQ(found->exported(), test::otherValue(row)) << row.name;
    }
    EXPECT_EQ(app.settings.named("profiles"), nullptr);
}

}  // namespace
}  // namespace trelvan
