#include "Platform/Simulated/VirtualTime.hpp"
#include "UI/SmartButtonOverlay.hpp"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelvan {
namespace {

/// An overlay on the toolkit's screen without a display, and what it told.
class SmartButtonOverlayTest : public testing::Test {
  protected:
    void open(const std::vector<std::string>& names, AppLanguage language = AppLanguage::english) {
        SmartButtonRadialView view;
        for (const auto& name : names) view.apps.emplace_back().name = name;
        view.onLaunch = [this](const SmartButtonApp& app) { launched.push_back(app.name); };
        view.onEdit = [this] { ++edits; };
        view.onOpenApplications = [this] { ++folders; };
        view.onDismiss = [this] { ++dismissals; };
        QScreen* screen = QGuiApplication::primaryScreen();
        const QRect frame = screen->geometry();
        const BottomLeftRect area{0, 0, static_cast<double>(frame.width()),
                                  static_cast<double>(frame.height())};
        layout = RadialLayout::make({area.width / 2, area.height / 2}, area, names.size());
        overlay = std::make_unique<SmartButtonOverlay>(std::move(view), layout, screen,
                                                       SmartButtonOverlay::Look{.timers = time,
                                                                                .theme = RadialTheme::light(),
                                                                                .language = language,
                                                                                .isAnimated = false,
                                                                                .isComposited = true,
                                                                                .loadIcon = loadIcon});
        overlay->appear();
    }
    void sendKey(QEvent::Type type, int key, bool isRepeat = false) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeat);
        QCoreApplication::sendEvent(overlay.get(), &event);
    }
    /// Down and up again.
    void press(int key) {
        sendKey(QEvent::KeyPress, key);
        sendKey(QEvent::KeyRelease, key);
        time.runFor(releaseTime);
    }
    void enter(RadialButton* button) {
        QEnterEvent event({1, 1}, {1, 1}, {1, 1});
        QCoreApplication::sendEvent(button, &event);
    }
    void click(QWidget* widget, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF place = QRectF(widget->rect()).center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, widget->mapToGlobal(place), button,
                              type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(widget, &event);
        }
    }

    std::function<void(const SmartButtonApp&, int, qreal, std::function<void(QPixmap)>)> loadIcon =
        [](const SmartButtonApp&, int, qreal, const std::function<void(QPixmap)>& done) { done({}); };
    static constexpr Seconds releaseTime = SmartButtonOverlay::releaseTime;

    VirtualTime time;
    RadialLayout layout;
    std::unique_ptr<SmartButtonOverlay> overlay;
    std::vector<std::string> launched;
    int edits = 0;
    int folders = 0;
    int dismissals = 0;
};

using Names = std::vector<std::string>;

Names numbered(int count) {
    Names names;
    for (int index = 1; index <= count; ++index) names.push_back("Entry " + std::to_string(index));
    return names;
}

TEST_F(SmartButtonOverlayTest, EntriesStandWhereTheLayoutSays) {
    open(numbered(8));
    ASSERT_EQ(overlay->entries().size(), 8U);
    for (std::size_t index = 0; index < 8; ++index) {
        const auto* button = overlay->entries()[index];
        const QPointF middle = button->plateFrame().center() + button->parentWidget()->pos();
        EXPECT_NEAR(middle.x(), layout.entries[index].x, 1) << index;
        EXPECT_NEAR(middle.y(), layout.entries[index].y, 1) << index;
        EXPECT_EQ(button->plateFrame().size(), QSizeF(64, 64));
    }
}

TEST_F(SmartButtonOverlayTest, OfTenEntriesEightAreShown) {
    open(numbered(10));
    EXPECT_EQ(overlay->entries().size(), 8U);
}

TEST_F(SmartButtonOverlayTest, CaptionsTouchNothingForAnyNumberOfEntries) {
    for (int count = 1; count <= 8; ++count) {
        open(
            Names(static_cast<std::size_t>(count), "A very long name that no caption could ever hold whole"));
        for (const auto* one : overlay->entries()) {
            EXPECT_LE(one->captionFrame().width(), 120);
            EXPECT_LE(one->captionLines().size(), 2);
            EXPECT_TRUE(one->captionLines().back().endsWith(QChar(0x2026)));
            for (const auto* control : overlay->controls()) {
                // Controls are round.
                const QRectF caption = one->captionFrame();
                const QPointF middle = QRectF(control->geometry()).center();
                const QPointF nearest(qBound(caption.left(), middle.x(), caption.right()),
                                      qBound(caption.top(), middle.y(), caption.bottom()));
                EXPECT_GE(QLineF(nearest, middle).length(), control->width() / 2.0) << count;
            }
            for (const auto* other : overlay->entries()) {
                if (one == other) continue;
                EXPECT_FALSE(one->captionFrame().intersects(other->captionFrame())) << count;
                EXPECT_FALSE(one->captionFrame().intersects(other->plateFrame())) << count;
            }
        }
    }
}

TEST_F(SmartButtonOverlayTest, CaptionWidthsAreAsWideAsTheyMayBe) {
    for (std::size_t count = 1; count <= 6; ++count) EXPECT_EQ(captionWidth(count), 120) << count;
    EXPECT_GE(captionWidth(8), 100);
}

TEST_F(SmartButtonOverlayTest, LinesFitTheirCaption) {
    open({"Donaudampfschifffahrtsgesellschaftskapitän", "Música y vídeo", "日本語の長い名前をここに書きます",
          ""});
    QFont font;
    font.setPixelSize(12);
    font.setWeight(QFont::Medium);
    const QFontMetricsF metrics(font);
    for (const auto* entry : overlay->entries()) {
        for (const auto& line : entry->captionLines())
            EXPECT_LE(metrics.horizontalAdvance(line), entry->width() + 1) << line.toStdString();
    }
    EXPECT_TRUE(overlay->entries()[3]->captionLines().isEmpty());
}

TEST_F(SmartButtonOverlayTest, ClickOnAnEntryLaunchesIt) {
    open(numbered(3));
    click(overlay->entries()[1]);
    EXPECT_EQ(launched, Names{"Entry 2"});
    EXPECT_EQ(dismissals, 0);
}

TEST_F(SmartButtonOverlayTest, NumberKeysLaunchTheirEntries) {
    open(numbered(8));
    press(Qt::Key_1);
    press(Qt::Key_8);
    EXPECT_EQ(launched, (Names{"Entry 1", "Entry 8"}));
}

TEST_F(SmartButtonOverlayTest, NumberKeyWithoutAnEntryDoesNothing) {
    open(numbered(2));
    press(Qt::Key_3);
    press(Qt::Key_9);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, KeyThatChooses_DoesSoOnceItIsReleased) {
    open(numbered(2));
    sendKey(QEvent::KeyPress, Qt::Key_2);
    time.runFor(Seconds{10});
    EXPECT_EQ(launched, Names{});
    EXPECT_TRUE(overlay->entries()[1]->isDown());
    sendKey(QEvent::KeyRelease, Qt::Key_2);
    EXPECT_EQ(launched, Names{});
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 2"});
    EXPECT_FALSE(overlay->entries()[1]->isDown());
}

TEST_F(SmartButtonOverlayTest, RepetitionOfAHeldKey_IsNoRelease) {
    open(numbered(2));
    sendKey(QEvent::KeyPress, Qt::Key_2);
    for (int count = 0; count < 20; ++count) {
        // Marked as what it is or not: that depends on how soon the second event comes.
        sendKey(QEvent::KeyRelease, Qt::Key_2, count % 2 == 0);
        time.runFor(Seconds{0.002});
        sendKey(QEvent::KeyPress, Qt::Key_2, count % 2 == 0);
        time.runFor(Seconds{0.028});
    }
    EXPECT_EQ(launched, Names{});
    sendKey(QEvent::KeyRelease, Qt::Key_2);
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 2"});
}

TEST_F(SmartButtonOverlayTest, ReleaseOfAKeyThatWasDownBefore_DoesNothing) {
    open(numbered(2));
    sendKey(QEvent::KeyRelease, Qt::Key_Escape);
    sendKey(QEvent::KeyRelease, Qt::Key_1);
    time.runFor(releaseTime);
    EXPECT_EQ(dismissals, 0);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, AnotherKeyPressedMeanwhile_TakesTheFirstBack) {
    open(numbered(2));
    sendKey(QEvent::KeyPress, Qt::Key_1);
    sendKey(QEvent::KeyPress, Qt::Key_Escape);
    EXPECT_FALSE(overlay->entries()[0]->isDown());
    sendKey(QEvent::KeyRelease, Qt::Key_1);
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{});
    sendKey(QEvent::KeyRelease, Qt::Key_Escape);
    time.runFor(releaseTime);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(SmartButtonOverlayTest, AnotherKeyRightAfterTheRelease_FindsItDone) {
    open(numbered(2));
    sendKey(QEvent::KeyPress, Qt::Key_1);
    sendKey(QEvent::KeyRelease, Qt::Key_1);
    sendKey(QEvent::KeyPress, Qt::Key_2);
    EXPECT_EQ(launched, Names{"Entry 1"});
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 1"});
}

TEST_F(SmartButtonOverlayTest, MenuThatGoesRightAfterARelease_ChoosesNothing) {
    open(numbered(1));
    sendKey(QEvent::KeyPress, Qt::Key_1);
    sendKey(QEvent::KeyRelease, Qt::Key_1);
    overlay->vanish();
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, ArrowsMoveTheChoiceAndReturnLaunchesIt) {
    open(numbered(4));
    press(Qt::Key_Return);
    EXPECT_EQ(launched, Names{});
    press(Qt::Key_Right);
    EXPECT_EQ(overlay->current(), 1U);
    EXPECT_TRUE(overlay->entries()[1]->isCurrent());
    press(Qt::Key_Down);
    EXPECT_EQ(overlay->current(), 2U);
    EXPECT_FALSE(overlay->entries()[1]->isCurrent());
    // Nothing lies below.
    press(Qt::Key_Down);
    EXPECT_EQ(overlay->current(), 2U);
    press(Qt::Key_Enter);
    EXPECT_EQ(launched, Names{"Entry 3"});
}

TEST_F(SmartButtonOverlayTest, ArrowTowardsNothing_ChoosesTheFirstEntry) {
    open(numbered(1));
    press(Qt::Key_Down);
    EXPECT_EQ(overlay->current(), 0U);
}

TEST_F(SmartButtonOverlayTest, TabGoesThroughEntriesAndControlsBothWays) {
    open(numbered(2));
    for (const std::size_t expected : {0U, 1U, 2U, 3U, 4U, 0U}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(overlay->current(), expected);
    }
    press(Qt::Key_Backtab);
    EXPECT_EQ(overlay->current(), 4U);
    press(Qt::Key_Space);
    EXPECT_EQ(edits, 1);
    open(numbered(2));
    press(Qt::Key_Backtab);
    EXPECT_EQ(overlay->current(), 4U);
}

TEST_F(SmartButtonOverlayTest, KeyboardAndPointer_DoNotBothShowAChoice) {
    open(numbered(4));
    enter(overlay->entries()[2]);
    EXPECT_TRUE(overlay->entries()[2]->isHovered());
    press(Qt::Key_Up);
    EXPECT_FALSE(overlay->entries()[2]->isHovered());
    EXPECT_TRUE(overlay->entries()[0]->isCurrent());
    enter(overlay->entries()[3]);
    EXPECT_FALSE(overlay->entries()[0]->isCurrent());
    EXPECT_EQ(overlay->current(), std::nullopt);
}

TEST_F(SmartButtonOverlayTest, EscapeDismisses) {
    open(numbered(1));
    press(Qt::Key_Escape);
    EXPECT_EQ(dismissals, 1);
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

TEST_F(SmartButtonOverlayTest, IconThatComesLater_IsShownThenAndNeededByNobodyOnceTheMenuIsGone) {
    std::vector<std::function<void(QPixmap)>> waiting;
    loadIcon = [&](const SmartButtonApp&, int side, qreal, std::function<void(QPixmap)> done) {
        EXPECT_EQ(side, 44);
        waiting.push_back(std::move(done));
    };
    open(numbered(2));
    ASSERT_EQ(waiting.size(), 2U);
    EXPECT_FALSE(overlay->entries()[1]->icon().has_value());
    waiting[1](QPixmap(44, 44));
    ASSERT_TRUE(overlay->entries()[1]->icon().has_value());
    EXPECT_EQ(overlay->entries()[1]->icon()->size(), QSize(44, 44));
    overlay.reset();
    waiting[0](QPixmap(44, 44));
}

TEST_F(SmartButtonOverlayTest, TextIsReadableInBothThemes) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const auto contrast = [&](const QColor& one, const QColor& other) {
        const double first = luminance(one) + 0.05;
        const double second = luminance(other) + 0.05;
        return std::max(first, second) / std::min(first, second);
    };
    const auto over = [](const QColor& top, double below) {
        const auto mixed = [&](double value) { return top.alphaF() * value + (1 - top.alphaF()) * below; };
        return QColor::fromRgbF(static_cast<float>(mixed(top.redF())),
                                static_cast<float>(mixed(top.greenF())),
                                static_cast<float>(mixed(top.blueF())));
    };
    for (const auto& theme : {RadialTheme::light(), RadialTheme::dark()}) {
        // Whatever is behind the ring: names want 4.5 to 1, symbols and the mark of the choice 3 to 1.
        for (const double behind : {0.0, 1.0})
            EXPECT_GE(contrast(theme.text, over(theme.ring, behind)), 4.5) << behind;
        EXPECT_GE(contrast(theme.secondaryText, theme.plate), 3);
        EXPECT_GE(contrast(theme.accent, theme.plateHovered), 3);
        EXPECT_GE(contrast(theme.accent, theme.ring), 3);
    }
}

TEST_F(SmartButtonOverlayTest, WindowTakesNoFocus) {
    open(numbered(1));
    EXPECT_TRUE(overlay->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(overlay->windowFlags().testFlag(Qt::BypassWindowManagerHint));
    EXPECT_TRUE(overlay->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(overlay->geometry(), QGuiApplication::primaryScreen()->geometry());
}

TEST_F(SmartButtonOverlayTest, VanishedOverlayTellsNothingAndHoldsNoKeyboard) {
    open(numbered(2));
    EXPECT_EQ(QWidget::keyboardGrabber(), overlay.get());
    overlay->vanish();
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
    EXPECT_FALSE(overlay->isVisible());
    press(Qt::Key_1);
    press(Qt::Key_Escape);
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
