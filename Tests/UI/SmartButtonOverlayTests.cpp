#include "UI/SmartButtonOverlayTest.hpp"

#include <QAccessible>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>

/// What clicks do, and what the menu is to the rest of the desktop.
namespace trelvan {
namespace {

using test::Names;
using test::numbered;
using test::SmartButtonOverlayTest;

TEST_F(SmartButtonOverlayTest, ClickOnAnEntryLaunchesIt) {
    open(numbered(3));
    click(overlay->entries()[1]);
    EXPECT_EQ(launched, Names{"Entry 2"});
    EXPECT_EQ(dismissals, 0);
}

TEST_F(SmartButtonOverlayTest, ClickAnywhereElseDismisses) {
    open(numbered(1));
    click(overlay.get());
    EXPECT_EQ(dismissals, 1);
    // On the ring, between the entries.
    click(overlay->entries()[0]->parentWidget(), Qt::RightButton);
    EXPECT_EQ(dismissals, 2);
    click(overlay.get(), Qt::BackButton);
    EXPECT_EQ(dismissals, 3);
}

TEST_F(SmartButtonOverlayTest, ReleaseOfAPressThatBeganElsewhereDismissesNothing) {
    open(numbered(1));
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(1, 1), QPointF(1, 1), Qt::BackButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(overlay.get(), &release);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(SmartButtonOverlayTest, ControlsDoWhatTheyAreCalled) {
    open(numbered(8));
    ASSERT_EQ(overlay->controls().size(), 3U);
    EXPECT_EQ(overlay->controls()[0]->size(), QSize(96, 96));
    for (auto* control : overlay->controls()) control->click();
    EXPECT_EQ(folders, 1);
    EXPECT_EQ(dismissals, 1);
    EXPECT_EQ(edits, 1);
}

TEST_F(SmartButtonOverlayTest, ScreenReadersHearTheNamesInBothLanguages) {
    open({"Notes", "Mail"});
    EXPECT_EQ(overlay->entries()[0]->accessibleName(), "Notes");
    EXPECT_EQ(overlay->entries()[1]->accessibleName(), "Mail");
    const QStringList english{"Open Applications", "Close Smart Button", "Edit Smart Button"};
    const QStringList spanish{"Abrir aplicaciones", "Cerrar Smart Button", "Editar Smart Button"};
    for (int index = 0; index < 3; ++index)
        EXPECT_EQ(overlay->controls()[static_cast<std::size_t>(index)]->accessibleName(), english[index]);
    open({"Notes"}, AppLanguage::spanish);
    for (int index = 0; index < 3; ++index)
        EXPECT_EQ(overlay->controls()[static_cast<std::size_t>(index)]->accessibleName(), spanish[index]);
}

TEST_F(SmartButtonOverlayTest, ScreenReadersFindAMenuOfButtons) {
    open({"Notes"});
    auto* menu = QAccessible::queryAccessibleInterface(overlay.get());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->role(), QAccessible::PopupMenu);
    EXPECT_EQ(menu->text(QAccessible::Name), "Smart Button");
    auto* entry = QAccessible::queryAccessibleInterface(overlay->entries()[0]);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->role(), QAccessible::Button);
    EXPECT_EQ(entry->text(QAccessible::Name), "Notes");
    ASSERT_NE(entry->actionInterface(), nullptr);
    EXPECT_TRUE(entry->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
}

TEST_F(SmartButtonOverlayTest, WindowTakesNoFocus) {
    open(numbered(1));
    EXPECT_TRUE(overlay->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(overlay->windowFlags().testFlag(Qt::BypassWindowManagerHint));
    EXPECT_TRUE(overlay->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(overlay->geometry(), QGuiApplication::primaryScreen()->geometry());
}

TEST_F(SmartButtonOverlayTest, ClickBesideTheWindowDismisses) {
    open(numbered(1));
    input.clickElsewhere();
    EXPECT_EQ(dismissals, 1);
}

TEST_F(SmartButtonOverlayTest, NothingIsGrabbedFromOtherPrograms) {
    open(numbered(2));
    EXPECT_TRUE(input.isOpen());
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    EXPECT_NE(overlay->windowType(), Qt::Popup);
}

TEST_F(SmartButtonOverlayTest, VanishedOverlayTellsNothingAndHasNoKeys) {
    open(numbered(2));
    EXPECT_TRUE(input.isOpen());
    overlay->vanish();
    EXPECT_FALSE(input.isOpen());
    EXPECT_FALSE(overlay->isVisible());
    press(MenuKey::entry1);
    press(MenuKey::leave);
    overlay->entries()[0]->click();
    EXPECT_EQ(launched, Names{});
    EXPECT_EQ(dismissals, 0);
}

TEST_F(SmartButtonOverlayTest, FunctionMayTakeTheOverlayAway) {
    open(numbered(1));
    const QPointer<QWidget> entry(overlay->entries()[0]);
    overlay->entries()[0]->click();
    EXPECT_EQ(launched, Names{"Entry 1"});
    overlay.reset();
    EXPECT_TRUE(entry.isNull());
}

}  // namespace
}  // namespace trelvan
