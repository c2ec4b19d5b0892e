#include "Core/SettingsCatalogue.hpp"
#include "Support/TestDesktop.hpp"
#include "UI/Models/EscapeChain.hpp"
#include "UI/Models/InterfaceSettings.hpp"
#include "UI/Models/MenuBarModel.hpp"
#include "UI/Models/SettingsTab.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

// What the window and the menu-bar item show, without either.

namespace trelvan {
namespace {

using testing::ElementsAre;

// Tabs

struct TabRow {
    const char* english;
    const char* spanish;
    const char* icon;
};

TEST(SettingsTabTest, TitlesAndSymbolsAreThoseOfTheTableByIndex) {
    const std::vector<TabRow> rows{
        {"Keep Awake", "Keep Awake", "figure.wave.circle"},
        {"Buttons & Scroll", "Botones y Scroll", "computermouse"},
        {"Smart Button", "Smart Button", "circle.grid.3x3.fill"},
        {"Notifications", "Notificaciones", "bell.badge"},
        {"Debug", "Debug", "ant"},
        {"System", "Sistema", "slider.horizontal.3"},
        {"Export", "Exportar", "externaldrive.badge.checkmark"},
        {"Privacy & Legal", "Privacy & Legal", "hand.raised"},
        {"Share", "Share", "square.and.arrow.up"},
        {"Share", "Share", "square.and.arrow.up"},
    };
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const auto tab = static_cast<SettingsTab>(index);
        EXPECT_EQ(tabTitle(tab).english, rows[index].english);
        EXPECT_EQ(tabTitle(tab).spanish, rows[index].spanish);
        EXPECT_EQ(iconName(tab), rows[index].icon);
        EXPECT_TRUE(symbols::isKnown(iconName(tab)));
    }
}

TEST(SettingsTabTest, EightTabsAreOfferedAndDebugStandsBetweenNotificationsAndPrivacy) {
    using enum SettingsTab;
    EXPECT_THAT(availableTabs(false), ElementsAre(settings, keepAwake, buttons, smartButton, backup,
                                                  notifications, privacyLegal, share));
    EXPECT_THAT(availableTabs(true), ElementsAre(settings, keepAwake, buttons, smartButton, backup,
                                                 notifications, debug, privacyLegal, share));
    EXPECT_EQ(firstTab, settings);
}

// Settings of the window

class InterfaceSettingsTest : public testing::Test {
  protected:
    void store(std::string_view key, DefaultsValue value) {
        desktop.userDefaults().set(key, std::move(value));
    }

    test::TestDesktop desktop;
    InterfaceSettings settings{desktop.userDefaults()};
};

TEST_F(InterfaceSettingsTest, AnythingButSpanishIsEnglish) {
    EXPECT_EQ(settings.language(), AppLanguage::english);
    for (const auto* text : {"English", "Deutsch", "español", ""}) {
        store("general_language", std::string(text));
        EXPECT_EQ(settings.language(), AppLanguage::english) << text;
    }
    store("general_language", std::string("Español"));
    EXPECT_EQ(settings.language(), AppLanguage::spanish);
}

TEST_F(InterfaceSettingsTest, AnythingButLightAndDarkFollowsTheSystem) {
    EXPECT_EQ(settings.theme(), AppTheme::system);
    store("general_theme", std::string("Sepia"));
    EXPECT_EQ(settings.theme(), AppTheme::system);
    store("general_theme", std::string("Dark"));
    EXPECT_EQ(settings.theme(), AppTheme::dark);
}

TEST_F(InterfaceSettingsTest, ChoiceIsStoredByItsRawValueAndTold) {
    int told = 0;
    const auto subscription = settings.observe([&] { ++told; });
    settings.setLanguage(AppLanguage::spanish);
    settings.setTheme(AppTheme::light);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(asText(desktop.userDefaults().object("general_language")), "Español");
    EXPECT_EQ(asText(desktop.userDefaults().object("general_theme")), "Light");
}

TEST_F(InterfaceSettingsTest, ChangeByAnotherProgramIsTold) {
    int told = 0;
    const auto subscription = settings.observe([&] { ++told; });
    desktop.userDefaults().tellOutsideChange({"keep_awake_enabled"});
    EXPECT_EQ(told, 0);
    desktop.userDefaults().tellOutsideChange({"general_theme"});
    EXPECT_EQ(told, 1);
}

TEST_F(InterfaceSettingsTest, SavedSizeIsRaisedToTheSmallest) {
    EXPECT_EQ(settings.windowSize(), (WindowSize{900, 960}));
    settings.setWindowSize({300, 1200});
    EXPECT_EQ(settings.windowSize(), (WindowSize{780, 1200}));
    EXPECT_EQ(asDouble(desktop.userDefaults().object("window_saved_width")), 300.0);
    settings.setWindowSize({1100, 10});
    EXPECT_EQ(settings.windowSize(), (WindowSize{1100, 860}));
}

// Escape

TEST(EscapeChainTest, InnermostGetsTheKeyAndTheOthersFollow) {
    EscapeChain chain;
    std::vector<std::string> got;
    const auto noting = [&](const char* name) { return [&got, name] { got.emplace_back(name); }; };
    auto countdown = chain.add(EscapeLevel::countdown, noting("countdown"));
    auto recorder = chain.add(EscapeLevel::recorder, noting("recorder"));
    auto sheet = chain.add(EscapeLevel::sheet, noting("sheet"));
    EXPECT_TRUE(chain.has(EscapeLevel::recorder));
    EXPECT_TRUE(chain.handle());
    recorder.reset();
    EXPECT_FALSE(chain.has(EscapeLevel::recorder));
    EXPECT_TRUE(chain.handle());
    sheet.reset();
    EXPECT_TRUE(chain.handle());
    countdown.reset();
    EXPECT_FALSE(chain.handle());
    EXPECT_THAT(got, ElementsAre("recorder", "sheet", "countdown"));
}

TEST(EscapeChainTest, OfSeveralAtOneLevelTheLatestGetsTheKeyAndMayLeave) {
    EscapeChain chain;
    int first = 0;
    const auto outer = chain.add(EscapeLevel::sheet, [&] { ++first; });
    Subscription inner;
    inner = chain.add(EscapeLevel::sheet, [&] { inner.reset(); });
    EXPECT_TRUE(chain.handle());
    EXPECT_EQ(first, 0);
    EXPECT_TRUE(chain.handle());
    EXPECT_EQ(first, 1);
}

// Menu-bar item

TEST(MenuBarModelTest, LabelFollowsTheMonitorAndShowsTheVersion) {
    test::TestDesktop desktop;
    EXPECT_EQ(menuBarLabel(true, desktop.bundleInfo()), (MenuBarLabel{"computermouse.fill", "v1.0"}));
    desktop.bundle["CFBundleShortVersionString"] = "2.7";
    EXPECT_EQ(menuBarLabel(false, desktop.bundleInfo()), (MenuBarLabel{"computermouse", "v2.7"}));
    desktop.bundle.erase("CFBundleShortVersionString");
    EXPECT_EQ(menuBarLabel(false, desktop.bundleInfo()).text, "v1.0");
}

std::vector<std::string> texts(const MenuState& state) {
    std::vector<std::string> all;
    for (const MenuEntry& entry : menuEntries(state)) {
        std::string text = entry.beginsGroup ? "-" : "";
        text += entry.text;
        if (entry.isOn) text += *entry.isOn ? " [x]" : " [ ]";
        all.push_back(text);
    }
    return all;
}

TEST(MenuBarModelTest, MenuOffersWhatCanBeDoneNowInBothLanguages) {
    const Uuid one = Uuid::random();
    const Uuid two = Uuid::random();
    MenuState state{.isRunning = true, .profiles = {{one, "Work"}, {two, "Games"}}, .activeProfile = two};
    EXPECT_THAT(texts(state), ElementsAre("Open Trelvan", "-Stop monitor", "Pause for an hour", "-Work [ ]",
                                          "Games [x]", "-Keep Awake [ ]", "-Quit Trelvan"));
    state.language = AppLanguage::spanish;
    state.isRunning = false;
    state.keepsAwake = true;
    EXPECT_THAT(texts(state), ElementsAre("Abrir Trelvan", "-Iniciar monitor", "-Work [ ]", "Games [x]",
                                          "-Keep Awake [x]", "-Salir de Trelvan"));
    state.pausedUntil = "14:05";
    EXPECT_EQ(texts(state)[1], "-Iniciar monitor (en pausa hasta las 14:05)");
    state.language = AppLanguage::english;
    EXPECT_EQ(texts(state)[1], "-Start monitor (paused until 14:05)");
}

}  // namespace
}  // namespace trelvan
