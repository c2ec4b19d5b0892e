#include "Core/ActionDescription.hpp"
#include "Core/ActionReport.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace trelvan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Way = ViewAbility::Way;

class ActionReportTest : public testing::Test {
  protected:
    [[nodiscard]] ActionReport report(ButtonAction action,
                                      AppLanguage language = AppLanguage::english) const {
        const auto all = reportActions(linuxShortcuts, desktop, language);
        return *std::ranges::find(all, action, &ActionReport::action);
    }

    DesktopAbilities desktop{
        .desktop = "XFCE", .views = {}, .noteApplication = "/a/org.xfce.mousepad.desktop"};
};

TEST_F(ActionReportTest, EveryActionIsListedOnceInTheCataloguesOrderAndSaysWhatItDoes) {
    for (const auto language : {AppLanguage::english, AppLanguage::spanish}) {
        for (const auto* shortcuts : {&linuxShortcuts, &macShortcuts}) {
            const auto all = reportActions(*shortcuts, desktop, language);
            ASSERT_EQ(all.size(), 33U);
            for (std::size_t index = 0; index < all.size(); ++index) {
                EXPECT_EQ(all[index].action, static_cast<ButtonAction>(index));
                EXPECT_THAT(all[index].sends, Not(IsEmpty())) << rawValue(all[index].action);
                EXPECT_THAT(all[index].sends, Not(Contains("")));
            }
        }
    }
}

TEST_F(ActionReportTest, CombinationsAreThoseThatAreSent) {
    EXPECT_THAT(report(ButtonAction::copy).sends,
                ElementsAre("Sent: Control+C", "In a terminal: Control+Shift+C, or that terminal's own way"));
    EXPECT_THAT(describeAction(ButtonAction::copy, macShortcuts, AppLanguage::english),
                ElementsAre("Sent: Command+C"));
    EXPECT_THAT(report(ButtonAction::back, AppLanguage::spanish).sends,
                ElementsAre("Se envía: Alt+Izquierda"));
}

TEST_F(ActionReportTest, WayOfThisDesktopIsNamed) {
    desktop.views = {{SystemView::showDesktop, {.way = Way::windowManager}},
                     {SystemView::missionControl, {.way = Way::shell, .with = "org.gnome.Shell"}},
                     {SystemView::screenshotFull, {.way = Way::program, .with = "xfce4-screenshooter"}},
                     {SystemView::launchpad, {.way = Way::shortcut, .with = "F1", .flags = flag::option}}};
    EXPECT_EQ(report(ButtonAction::showDesktop).sends.back(), "Here: the window manager");
    EXPECT_EQ(report(ButtonAction::missionControl).sends.back(), "Here: org.gnome.Shell");
    EXPECT_EQ(report(ButtonAction::screenshotFull).sends.back(), "Here: xfce4-screenshooter");
    EXPECT_EQ(report(ButtonAction::launchpad, AppLanguage::spanish).sends.back(), "Aquí: Alt+F1");
    EXPECT_EQ(report(ButtonAction::newNote).sends.back(), "Here: org.xfce.mousepad.desktop");
}

TEST_F(ActionReportTest, ShortcutOfTheDesktopIsWhatItSends) {
    desktop.hotKeys[hotkey::launchpad] = {flag::option, "F3"};
    EXPECT_EQ(report(ButtonAction::launchpad).sends.front(),
              "Asked of the desktop; where it has no way of its own, sent: its hot key Alt+F3");
    EXPECT_EQ(report(ButtonAction::missionControl).sends.front(),
              "Asked of the desktop; where it has no way of its own, nothing is sent: it has no hot key");
}

TEST_F(ActionReportTest, ViewThatNothingShowsIsAnObstacleWithWhatToInstall) {
    desktop.views = {{SystemView::missionControl, {.way = Way::nothing, .toInstall = "rofi"}},
                     {SystemView::appExpose, {.way = Way::nothing}}};
    EXPECT_EQ(report(ButtonAction::missionControl).obstacle,
              "Nothing on this desktop does it; installed, this would: rofi");
    EXPECT_EQ(report(ButtonAction::appExpose, AppLanguage::spanish).obstacle,
              "Nada en este escritorio lo hace");
}

TEST_F(ActionReportTest, ToolThatIsMissingLeavesTheCombination) {
    desktop.views = {{SystemView::lockScreen, {.way = Way::nothing}}};
    EXPECT_EQ(report(ButtonAction::lockWorkstation).obstacle, std::nullopt);
}

TEST_F(ActionReportTest, WhatCannotBeToldIsNoObstacle) {
    desktop.views = {{SystemView::missionControl, {}}};
    EXPECT_EQ(report(ButtonAction::missionControl).obstacle, std::nullopt);
    EXPECT_EQ(report(ButtonAction::launchpad).obstacle, std::nullopt);
}

TEST_F(ActionReportTest, NewNoteNeedsAnEditor) {
    desktop.noteApplication.reset();
    EXPECT_EQ(report(ButtonAction::newNote).obstacle, "No editor and no note taker is installed");
    EXPECT_EQ(report(ButtonAction::newNote, AppLanguage::spanish).obstacle,
              "No hay ningún editor ni aplicación de notas instalado");
}

}  // namespace
}  // namespace trelvan
