#include "Core/PermissionsManager.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::ElementsAre;
using testing::IsEmpty;

class PermissionsManagerTest : public testing::Test {
  protected:
    TestDesktop desktop;
};

TEST_F(PermissionsManagerTest, ConstructionReadsAndLogsTheStateOnce) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    EXPECT_TRUE(permissions.accessibilityGranted);
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Accesibilidad: concedida ✅"));
}

TEST_F(PermissionsManagerTest, HundredUnchangedRefreshesWriteOneLine) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    int told = 0;
    const auto subscription = permissions.accessibilityGranted.observe([&](bool) { ++told; });
    for (int poll = 0; poll < 100; ++poll) permissions.refresh();
    EXPECT_EQ(told, 100);
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Accesibilidad: concedida ✅"));
}

TEST_F(PermissionsManagerTest, RevokingIsLoggedAtTheNextRefresh) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    desktop.accessibility = false;
    permissions.refresh();
    EXPECT_FALSE(permissions.accessibilityGranted);
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Accesibilidad: concedida ✅", "Accesibilidad: denegada ❌"));
}

TEST_F(PermissionsManagerTest, RequestWhenTrustedShowsNoPrompt) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    permissions.requestIfNeeded();
    EXPECT_THAT(desktop.all<trace::Prompted>(), IsEmpty());
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "Permiso solicitado. Resultado: true");
}

TEST_F(PermissionsManagerTest, RequestLeavesTheLoggedStateAlone) {
    desktop.accessibility = false;
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    desktop.accessibility = true;
    permissions.requestIfNeeded();
    EXPECT_TRUE(permissions.accessibilityGranted);
    permissions.refresh();
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Accesibilidad: denegada ❌", "Permiso solicitado. Resultado: true",
                            "Accesibilidad: concedida ✅"));
}

TEST_F(PermissionsManagerTest, AutomationRunsTheHarmlessScript) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    permissions.requestAutomationPermissionIfNeeded();
    EXPECT_THAT(
        desktop.all<trace::Script>(),
        ElementsAre(trace::Script{"tell application \"System Events\" to get name of first process"}));
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "Automatización con System Events disponible ✅");
}

TEST_F(PermissionsManagerTest, AutomationFailureIsAWarning) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    desktop.failures.scriptRun = true;
    permissions.requestAutomationPermissionIfNeeded();
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("Automatización no concedida todavía: simulated failure"));
}

TEST_F(PermissionsManagerTest, AutomationScriptThatCannotBeBuiltDoesNothing) {
    PermissionsManager permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger);
    desktop.failures.scriptCreate = true;
    desktop.entries.clear();
    permissions.requestAutomationPermissionIfNeeded();
    EXPECT_THAT(desktop.entries, IsEmpty());
}

}  // namespace
}  // namespace trelvan
