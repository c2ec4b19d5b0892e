#include "Support/TestDesktop.hpp"
#include "UI/SmartButtonWindows.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QScreen>
#include <cstdlib>
#include <memory>

namespace trelvan {
namespace {

class SmartButtonWindowsTest : public testing::Test {
  protected:
    static SmartButtonRadialView viewOf(int entries) {
        SmartButtonRadialView view;
        view.apps.resize(static_cast<std::size_t>(entries));
        const QRect frame = QGuiApplication::primaryScreen()->geometry();
        view.screenFrame = {0, 0, static_cast<double>(frame.width()), static_cast<double>(frame.height())};
        view.pointerLocation = {view.screenFrame.width / 2, view.screenFrame.height / 2};
        view.onDismiss = [] {};
        return view;
    }
    static SmartButtonOverlay* shownOverlay() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* overlay = dynamic_cast<SmartButtonOverlay*>(widget);
            if (overlay != nullptr && overlay->isVisible()) return overlay;
        }
        return nullptr;
    }
    static void runDeletions() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    SimulatedDesktop desktop;
    SmartButtonWindows windows{{.screens = desktop.screens(),
                                .appearance = desktop.appearance(),
                                .workspace = desktop.workspace(),
                                .defaults = desktop.userDefaults(),
                                .timers = desktop.timers(),
                                .input = desktop.menuInput()}};
};

TEST_F(SmartButtonWindowsTest, OverlayGoesWithItsPanelAndGivesItsMemoryBack) {
    auto panel = windows.showOverlay(viewOf(8));
    ASSERT_NE(panel, nullptr);
    const QPointer<SmartButtonOverlay> overlay = shownOverlay();
    ASSERT_FALSE(overlay.isNull());
    panel.reset();
    EXPECT_EQ(shownOverlay(), nullptr);
    EXPECT_TRUE(overlay.isNull());
}

TEST_F(SmartButtonWindowsTest, PanelMayGoWhileItsOwnButtonTells) {
    std::unique_ptr<SmartButtonPanels::Panel> panel;
    auto view = viewOf(1);
    view.onLaunch = [&](const SmartButtonApp&) { panel.reset(); };
    panel = windows.showOverlay(std::move(view));
    const QPointer<SmartButtonOverlay> overlay = shownOverlay();
    ASSERT_FALSE(overlay.isNull());
    overlay->entries().front()->click();
    EXPECT_EQ(panel, nullptr);
    runDeletions();
    EXPECT_TRUE(overlay.isNull());
}

TEST_F(SmartButtonWindowsTest, FrameInPixelsIsLaidOutInPoints) {
    // A frame of twice the toolkit's size, as a scaled screen reports it.
    auto view = viewOf(1);
    const QSize points = QGuiApplication::primaryScreen()->size();
    view.screenFrame = {100, 200, 2.0 * points.width(), 2.0 * points.height()};
    view.pointerLocation = {100.0 + points.width(), 200.0 + points.height()};
    desktop.screenFrames = {view.screenFrame};
    const auto panel = windows.showOverlay(std::move(view));
    const auto* overlay = shownOverlay();
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->size(), points);
    const auto* entry = overlay->entries().front();
    const QPointF middle = entry->plateFrame().center() + entry->parentWidget()->pos();
    EXPECT_NEAR(middle.x(), points.width() / 2.0, 1);
    EXPECT_NEAR(middle.y(), points.height() / 2.0 - 138, 1);
}

TEST_F(SmartButtonWindowsTest, EditorHostsTheLatestContent) {
    const auto editor = windows.makeEditor();
    QPointer<QWidget> first = new QWidget;
    QPointer<QWidget> second = new QWidget;
    editor->setContent(std::make_unique<SmartButtonWindows::WidgetContent>(std::unique_ptr<QWidget>(first)));
    editor->show();
    ASSERT_FALSE(first.isNull());
    const QWidget* window = first->window();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QString::fromUtf8("Trelvan — Smart Button"));
    EXPECT_EQ(window->minimumSize(), QSize(780, 860));
    EXPECT_EQ(window->size(), QSize(900, 960));
    editor->setContent(std::make_unique<SmartButtonWindows::WidgetContent>(std::unique_ptr<QWidget>(second)));
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(second->window(), window);
}

TEST_F(SmartButtonWindowsTest, EditorLargerThanItsScreenKeepsItsTitleBarInReach) {
    ASSERT_LT(QGuiApplication::primaryScreen()->availableSize().height(), 960);
    const auto editor = windows.makeEditor();
    QPointer<QWidget> content = new QWidget;
    editor->setContent(
        std::make_unique<SmartButtonWindows::WidgetContent>(std::unique_ptr<QWidget>(content)));
    editor->show();
    const QPoint corner = content->window()->pos();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_GE(corner.x(), available.left());
    EXPECT_GE(corner.y(), available.top());
}

}  // namespace
}  // namespace trelvan

int main(int argc, char** argv) {
    // No display is needed, whatever desktop the tests are run on.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
