#include "Support/WindowFixture.hpp"
#include "UI/SmartButtonWindows.hpp"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QIcon>
#include <algorithm>

namespace trelvan {
namespace {

class MenuBarSceneTest : public test::WindowTest {
  protected:
    /// Another program's window is activated: the toolkit knows only that its own is not.
    void deactivate() {
        QEvent event(QEvent::WindowDeactivate);
        QApplication::setActiveWindow(nullptr);
        QCoreApplication::sendEvent(window().frame(), &event);
        settle();
    }
    MenuEntry entry(MenuCommand command) {
        const auto entries = menuEntries(scene->menuState());
        const auto found = std::ranges::find(entries, command, &MenuEntry::command);
        return found != entries.end() ? *found : MenuEntry{};
    }
};

TEST_F(MenuBarSceneTest, WiringRunsWithoutAPlaceForTheItem) {
    start();
    EXPECT_EQ(scene->item(), nullptr);
    EXPECT_TRUE(app->eventMonitor->isRunning);
    EXPECT_TRUE(static_cast<bool>(app->eventMonitor->onButtonEvent));
    EXPECT_TRUE(static_cast<bool>(app->smartButtonController->editorContentProvider));
}

TEST_F(MenuBarSceneTest, ItemAppearsOnceTheDesktopHasAPlaceForIt) {
    start();
    desktop.showStatusArea();
    EXPECT_NE(scene->item(), nullptr);
}

TEST_F(MenuBarSceneTest, NothingIsBuiltBeforeTheFirstOpening) {
    desktop.showStatusArea();
    start();
    EXPECT_NE(scene->item(), nullptr);
    EXPECT_EQ(window().view(), nullptr);
    EXPECT_FALSE(window().isOpen());
}

TEST_F(MenuBarSceneTest, FurtherStartOpensTheWindowOfTheRunningProgram) {
    start();
    EXPECT_EQ(reach, SingleInstance::Reach::reachable);
    EXPECT_TRUE(desktop.startAgain());
    EXPECT_TRUE(window().isOpen());
}

TEST_F(MenuBarSceneTest, WithoutABusNoFurtherStartReachesTheProgram) {
    desktop.hasBus = false;
    start();
    EXPECT_EQ(reach, SingleInstance::Reach::noBus);
    EXPECT_FALSE(desktop.startAgain());
}

TEST_F(MenuBarSceneTest, ClickOnTheItemOpensAndClosesTheWindow) {
    desktop.showStatusArea();
    start();
    const QRect place(600, 0, 24, 24);
    scene->item()->onClick(place);
    EXPECT_TRUE(window().isOpen());
    scene->item()->onClick(place);
    EXPECT_FALSE(window().isOpen());
    scene->item()->onClick(place);
    EXPECT_TRUE(window().isOpen());
}

TEST_F(MenuBarSceneTest, WindowClosesWhenAnotherIsActivated) {
    openWindow();
    deactivate();
    EXPECT_FALSE(window().isOpen());
}

TEST_F(MenuBarSceneTest, PinnedWindowStaysAndSoDoesOneWithASheetOrAHold) {
    openWindow();
    for (auto* button : view().findChildren<QAbstractButton*>()) {
        if (button->accessibleName() == "Keep this window open") click(*button);
    }
    deactivate();
    EXPECT_TRUE(window().isOpen());
    for (auto* button : view().findChildren<QAbstractButton*>()) {
        if (button->accessibleName() == "Keep this window open") click(*button);
    }
    auto hold = view().keepOpen();
    deactivate();
    EXPECT_TRUE(window().isOpen());
    hold.reset();
    view().ask(
        {.title = TextPair{"?", "?"}, .cancel = TextPair{"No", "No"}, .confirm = TextPair{"Yes", "Sí"}});
    deactivate();
    EXPECT_TRUE(window().isOpen());
    view().sheet()->close();
    settle();
    deactivate();
    EXPECT_FALSE(window().isOpen());
}

TEST_F(MenuBarSceneTest, ClickThatTookTheActivationDoesNotOpenTheWindowAgain) {
    desktop.showStatusArea();
    openWindow();
    deactivate();
    ASSERT_FALSE(window().isOpen());
    desktop.time.runFor(Seconds{0.2});
    scene->item()->onClick({600, 0, 24, 24});
    EXPECT_FALSE(window().isOpen());
    scene->item()->onClick({600, 0, 24, 24});
    EXPECT_TRUE(window().isOpen());
}

TEST_F(MenuBarSceneTest, ClosedWindowGivesItsContentBackAfterAMinuteAndKeepsItsTab) {
    openWindow();
    view().selectTab(SettingsTab::share);
    window().close();
    desktop.time.runFor(Seconds{59});
    EXPECT_NE(window().view(), nullptr);
    desktop.time.runFor(Seconds{2});
    EXPECT_EQ(window().view(), nullptr);
    openWindow();
    EXPECT_EQ(view().selectedTab(), SettingsTab::share);
}

TEST_F(MenuBarSceneTest, WindowOpenedWithinTheMinuteIsTheSame) {
    openWindow();
    const SettingsView* before = &view();
    window().close();
    desktop.time.runFor(Seconds{30});
    openWindow();
    desktop.time.runFor(Seconds{120});
    EXPECT_EQ(window().view(), before);
}

TEST_F(MenuBarSceneTest, WindowTakesNoGrab) {
    openWindow();
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    EXPECT_EQ(window().frame()->windowType(), Qt::Window);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

// The window's frame

TEST_F(MenuBarSceneTest, WindowHasTheSavedSizeOfItsContentAndItsSmallestSize) {
    openWindow();
    EXPECT_EQ(window().frame()->size(), QSize(900, 960));
    EXPECT_EQ(window().frame()->minimumSize(), QSize(780, 860));
    window().close();
    desktop.userDefaults().set("window_saved_width", 100.0);
    desktop.userDefaults().set("window_saved_height", 1000.0);
    openWindow();
    EXPECT_EQ(window().frame()->size(), QSize(780, 1000));
    EXPECT_EQ(window().frame()->objectName(), "TrelvanSettingsWindowFrame");
}

TEST_F(MenuBarSceneTest, OuterFrameIsSavedWhenTheUserResizesAndNothingBefore) {
    openWindow();
    EXPECT_FALSE(desktop.userDefaults().object("window_saved_width").has_value());
    window().frame()->resize(950, 900);
    settle();
    const QSize outer = window().frame()->frameGeometry().size();
    EXPECT_EQ(asDouble(desktop.userDefaults().object("window_saved_width")), outer.width());
    EXPECT_EQ(asDouble(desktop.userDefaults().object("window_saved_height")), outer.height());
    // Back to the size it was given is the user's change too.
    window().frame()->resize(900, 960);
    settle();
    EXPECT_EQ(asDouble(desktop.userDefaults().object("window_saved_width")),
              window().frame()->frameGeometry().width());
}

TEST(PlaceAtItemTest, WindowHangsBelowATopPanelStandsAboveABottomOneAndStaysOnTheScreen) {
    const QRect screen(0, 0, 1600, 1200);
    EXPECT_EQ(placeAtItem({700, 0, 20, 24}, {900, 1000}, screen), QPoint(259, 30));
    EXPECT_EQ(placeAtItem({700, 1176, 20, 24}, {900, 1000}, screen), QPoint(259, 170));
    EXPECT_EQ(placeAtItem({1570, 0, 20, 24}, {900, 1000}, screen), QPoint(700, 30));
    EXPECT_EQ(placeAtItem({5, 0, 20, 24}, {900, 1000}, screen), QPoint(0, 30));
    // Larger than its screen: the title bar stays in reach.
    EXPECT_EQ(placeAtItem({5, 580, 20, 24}, {900, 1000}, QRect(0, 0, 800, 600)), QPoint(0, 0));
}

// The menu

TEST_F(MenuBarSceneTest, MenuStopsPausesAndStartsTheMonitor) {
    start();
    scene->choose(entry(MenuCommand::stop));
    desktop.time.runFor(Seconds{10});
    EXPECT_FALSE(app->eventMonitor->isRunning);
    scene->choose(entry(MenuCommand::start));
    settle();
    EXPECT_TRUE(app->eventMonitor->isRunning);
    scene->choose(entry(MenuCommand::pause));
    desktop.time.runFor(Seconds{3590});
    EXPECT_FALSE(app->eventMonitor->isRunning);
    EXPECT_TRUE(scene->menuState().pausedUntil.has_value());
    desktop.time.runFor(Seconds{12});
    EXPECT_TRUE(app->eventMonitor->isRunning);
}

TEST_F(MenuBarSceneTest, MenuChoosesProfilesSwitchesKeepAwakeOpensAndQuits) {
    start();
    const auto made = app->profileManager.createProfile("Games");
    scene->choose({.command = MenuCommand::profile, .text = "Games", .isOn = false, .profile = made.id});
    EXPECT_EQ(app->profileManager.activeProfile().name, "Games");
    scene->choose(entry(MenuCommand::keepAwake));
    EXPECT_TRUE(app->keepAwakeManager.isEnabled);
    scene->choose(entry(MenuCommand::open));
    EXPECT_TRUE(window().isOpen());
    scene->choose(entry(MenuCommand::quit));
    EXPECT_EQ(quits, 1);
}

TEST_F(MenuBarSceneTest, EditorOfTheRadialMenuShowsTheSmartButtonPage) {
    start();
    const auto content = app->smartButtonController->editorContentProvider();
    auto* widget = dynamic_cast<SmartButtonWindows::WidgetContent*>(content.get());
    ASSERT_NE(widget, nullptr);
    const auto* shown = dynamic_cast<SettingsView*>(widget->widget.get());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->selectedTab(), SettingsTab::smartButton);
}

TEST(MenuBarIconTest, IconOfARunningMonitorIsAnother) {
    for (const int side : {16, 22, 32, 48}) {
        const auto idle = menuBarIcon("computermouse").pixmap(side).toImage();
        const auto running = menuBarIcon("computermouse.fill").pixmap(side).toImage();
        EXPECT_EQ(idle.width(), side);
        EXPECT_NE(idle, running);
    }
}

}  // namespace
}  // namespace trelvan
