#include "Support/TestDesktop.hpp"
#include "UI/Components/Theme.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace trelvan {
namespace {

using Named = std::pair<std::string, QColor>;

/// What text and controls are drawn on.
std::vector<Named> grounds(const Theme& theme) {
    std::vector<Named> all;
    for (const auto& [name, window] :
         {Named{"window's top", theme.windowTop}, Named{"window's bottom", theme.windowBottom}}) {
        all.emplace_back(name, window);
        all.emplace_back("card on the " + name, over(theme.card, window));
        all.emplace_back("what the pointer is on, at the " + name, over(theme.hover, window));
    }
    all.emplace_back("sheet", theme.sheet);
    all.emplace_back("control", theme.control);
    return all;
}

std::vector<Theme> themes() {
    std::vector<Theme> all{Theme::light(), Theme::dark()};
    for (const auto* accent : {"#000000", "#FFFFFF", "#FFFF00", "#FF0000", "#3584E4", "#77767B", "#2EC27E"}) {
        all.push_back(Theme::light(QColor(accent)));
        all.push_back(Theme::dark(QColor(accent)));
    }
    return all;
}

TEST(ThemeTest, ContrastOfBlackOnWhiteIsTwentyOne) {
    EXPECT_NEAR(contrast(QColor(0, 0, 0), QColor(255, 255, 255)), 21, 0.01);
    EXPECT_NEAR(contrast(QColor("#777777"), QColor("#FFFFFF")), 4.48, 0.01);
    EXPECT_EQ(contrast(QColor("#123456"), QColor("#123456")), 1);
}

TEST(ThemeTest, TranslucentColourShowsItsShareOfTheGround) {
    EXPECT_EQ(over(QColor(255, 255, 255, 51), QColor(0, 0, 0)), QColor(51, 51, 51));
    EXPECT_EQ(over(QColor(10, 20, 30), QColor(200, 0, 0)), QColor(10, 20, 30));
}

TEST(ThemeTest, TextIsReadableOnEveryGroundOfBothThemesWithAnyAccent) {
    for (const Theme& theme : themes()) {
        const std::vector<Named> texts{{"text", theme.text},         {"second text", theme.secondaryText},
                                       {"accent", theme.accentText}, {"good", theme.good},
                                       {"warning", theme.warning},   {"danger", theme.danger}};
        for (const auto& [textName, text] : texts) {
            for (const auto& [groundName, ground] : grounds(theme)) {
                EXPECT_GE(contrast(text, ground), 4.5)
                    << textName << " on " << groundName << ", dark " << theme.isDark << ", "
                    << text.name().toStdString() << " on " << ground.name().toStdString();
            }
        }
        EXPECT_GE(contrast(theme.onAccent, theme.accent), 4.5) << theme.accent.name().toStdString();
    }
}

TEST(ThemeTest, ControlsStandOutFromEveryGroundOfBothThemesWithAnyAccent) {
    for (const Theme& theme : themes()) {
        for (const auto& [groundName, ground] : grounds(theme)) {
            EXPECT_GE(contrast(theme.controlEdge, ground), 3.0)
                << "outline on " << groundName << theme.isDark;
            EXPECT_GE(contrast(theme.accent, ground), 3.0)
                << theme.accent.name().toStdString() << " on " << groundName << theme.isDark;
        }
    }
}

TEST(ThemeTest, AccentThatIsReadableStaysAsItIs) {
    EXPECT_EQ(Theme::light().accent, QColor("#1F5AD6"));
    EXPECT_EQ(Theme::dark().accent, QColor("#7FAEFF"));
}

TEST(ThemeTest, StoredThemeDecidesAndAnyOtherFollowsTheDesktop) {
    test::TestDesktop desktop;
    for (const bool isDark : {false, true}) {
        desktop.changeAppearance(isDark);
        EXPECT_FALSE(isDarkTheme("Light", desktop.appearance()));
        EXPECT_TRUE(isDarkTheme("Dark", desktop.appearance()));
        for (const auto* other : {"System", "", "dark", "Sepia"})
            EXPECT_EQ(isDarkTheme(other, desktop.appearance()), isDark) << other;
    }
}

TEST(ThemeTest, DesktopsAccentIsTaken) {
    test::TestDesktop desktop;
    desktop.changeAppearance(false, Rgb{.red = 0.5, .green = 0, .blue = 0.5});
    EXPECT_EQ(themeFor("System", desktop.appearance()).accent.name(), "#800080");
}

}  // namespace
}  // namespace trelvan
