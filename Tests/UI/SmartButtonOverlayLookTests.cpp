#include "UI/ShortcutText.hpp"
#include "UI/SmartButtonOverlayTest.hpp"

#include <cmath>
#include <functional>
#include <vector>

/// Where things stand and how they read.
namespace trelvan {
namespace {

using test::Names;
using test::numbered;
using test::SmartButtonOverlayTest;

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

TEST_F(SmartButtonOverlayTest, WordTooLongForALineIsBrokenWithAHyphen) {
    Names names(8, "Donaudampfschifffahrtsgesellschaft");
    names[1] = "My Donaudampfschifffahrtsgesellschaft";
    names[2] = "Some short words";
    names[3] = "Mail";
    open(names);
    const auto whole = overlay->entries()[0]->captionLines();
    ASSERT_EQ(whole.size(), 2);
    EXPECT_TRUE(whole[0].endsWith('-'));
    EXPECT_GE(whole[0].size(), 4);
    EXPECT_TRUE(names[0].starts_with(whole[0].chopped(1).toStdString()));
    EXPECT_TRUE(overlay->entries()[1]->captionLines()[0].endsWith('-'));
    for (const auto& line : overlay->entries()[2]->captionLines()) EXPECT_FALSE(line.contains('-'));
    EXPECT_EQ(overlay->entries()[3]->captionLines(), QStringList{"Mail"});
}

TEST_F(SmartButtonOverlayTest, MissingApplicationIsMarkedInTheUsersLanguage) {
    isMissing = [](const SmartButtonApp& app) { return app.name == "Gone"; };
    open({"Notes", "Gone"}, AppLanguage::spanish);
    EXPECT_FALSE(overlay->entries()[0]->isMissing());
    EXPECT_TRUE(overlay->entries()[1]->isMissing());
    EXPECT_EQ(overlay->entries()[1]->accessibleDescription(), "No se encuentra");
    open({"Notes", "Gone"});
    EXPECT_EQ(overlay->entries()[1]->accessibleDescription(), "Not found");
}

TEST_F(SmartButtonOverlayTest, CombinationIsWhatWasRecordedOrReadFromTheKey) {
    EXPECT_EQ(shortcutText({.keyCode = 8, .modifiersRawValue = 0x40000, .displayString = "⌃C"}), "⌃C");
    EXPECT_EQ(shortcutText({.keyCode = 8, .modifiersRawValue = 0x160000, .displayString = {}}), "⌃⇧⌘C");
    EXPECT_EQ(shortcutText({.keyCode = 123, .modifiersRawValue = 0x880000, .displayString = {}}), "⌥fn←");
    EXPECT_EQ(shortcutText({}), "");
    EXPECT_EQ(shortcutText({.keyCode = 500, .modifiersRawValue = 0x40000, .displayString = {}}), "");
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
        // What is under the ring is not seen through it.
        EXPECT_EQ(theme.ring.alpha(), 255);
        EXPECT_GE(contrast(theme.badgeText, theme.badge), 7);
        EXPECT_GE(contrast(theme.badgeText, theme.accent), 4.5);
        EXPECT_GE(contrast(theme.badge, theme.plate), 3);
        EXPECT_GE(contrast(theme.warning, theme.ring), 4.5);
        EXPECT_GE(contrast(theme.secondaryText, theme.plate), 3);
        EXPECT_GE(contrast(theme.accent, theme.plateHovered), 3);
        EXPECT_GE(contrast(theme.accent, theme.ring), 3);
    }
}

}  // namespace
}  // namespace trelvan
