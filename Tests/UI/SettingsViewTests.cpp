#include "Support/WindowFixture.hpp"
#include "UI/Components/Banner.hpp"
#include "UI/Components/Segmented.hpp"
#include "UI/Components/Toast.hpp"
#include "UI/ProfileBar.hpp"
#include "UI/TabBar.hpp"

#include <gmock/gmock.h>

#include <QLineEdit>

namespace trelvan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

class SettingsViewTest : public test::WindowTest {
  protected:
    /// The choice of the row that is named so.
    Segmented* picker(const QString& name) {
        for (auto* found : view().findChildren<QWidget*>()) {
            auto* segmented = dynamic_cast<Segmented*>(found);
            if (segmented != nullptr && segmented->accessibleName() == name) return segmented;
        }
        return nullptr;
    }
    void openActions() { click(view().profileBar().actions()); }
    void chooseItem(const QString& text) {
        ASSERT_NE(view().menu(), nullptr);
        for (auto* item : view().menu()->items()) {
            if (item->shownText() == text) return click(*item);
        }
        FAIL() << text.toStdString();
    }
    QLineEdit* field() { return view().sheet()->findChild<QLineEdit*>(); }
};

TEST_F(SettingsViewTest, HeaderShowsNameVersionAndStateOfTheMonitor) {
    openWindow();
    EXPECT_THAT(visibleTexts(), IsSupersetOf({"Trelvan v1.0", "Monitor active", "Default"}));
    app->monitorSwitch.stop();
    settle();
    EXPECT_THAT(visibleTexts(), Contains("Monitor stopped"));
    app->monitorSwitch.pauseFor(Seconds{3600});
    settle();
    EXPECT_THAT(visibleTexts(), Contains(testing::StartsWith("Paused until ")));
}

TEST_F(SettingsViewTest, FirstTabIsSystemAndEveryTabOpensItsPage) {
    openWindow();
    EXPECT_EQ(view().selectedTab(), SettingsTab::settings);
    EXPECT_THAT(visibleTexts(),
                IsSupersetOf({"General", "Theme", "Language", "System", "Light", "Dark", "English"}));
    for (const SettingsTab tab : view().availableTabs()) {
        click(*view().tabBar().button(tab));
        EXPECT_EQ(view().selectedTab(), tab);
    }
    EXPECT_THAT(visibleTexts(), Contains(testing::StartsWith("This page is not part of this version yet.")));
}

TEST_F(SettingsViewTest, LanguageChangesAtOnceInTheOpenWindow) {
    openWindow();
    EXPECT_TRUE(view().isEnglish());
    click(*picker("Language")->segments().at(1));
    EXPECT_FALSE(view().isEnglish());
    EXPECT_EQ(asText(desktop.userDefaults().object("general_language")), "Español");
    EXPECT_THAT(visibleTexts(),
                IsSupersetOf({"Sistema", "Botones y Scroll", "Exportar", "Notificaciones", "Tema", "Idioma",
                              "Monitor activo", "Privacy & Legal", "Share"}));
    EXPECT_THAT(visibleTexts(), Not(Contains("Language")));
}

TEST_F(SettingsViewTest, LanguageAndThemeChangedInTheFileAreShownAtOnce) {
    openWindow();
    store("general_language", "Español");
    store("general_theme", "Dark");
    desktop.userDefaults().tellOutsideChange({"general_language", "general_theme"});
    settle();
    EXPECT_THAT(visibleTexts(), Contains("Idioma"));
    EXPECT_TRUE(view().look().theme().isDark);
    EXPECT_EQ(picker("Tema")->selected(), 2);
    EXPECT_EQ(picker("Idioma")->selected(), 1);
}

TEST_F(SettingsViewTest, ThemeIsShownAtOnceAndSystemFollowsTheDesktop) {
    openWindow();
    EXPECT_FALSE(view().look().theme().isDark);
    desktop.changeAppearance(true);
    EXPECT_TRUE(view().look().theme().isDark);
    click(*picker("Theme")->segments().at(1));
    EXPECT_FALSE(view().look().theme().isDark);
    EXPECT_EQ(asText(desktop.userDefaults().object("general_theme")), "Light");
    click(*picker("Theme")->segments().at(0));
    EXPECT_TRUE(view().look().theme().isDark);
    desktop.changeAppearance(false);
    EXPECT_FALSE(view().look().theme().isDark);
}

TEST_F(SettingsViewTest, DebugTabComesAndGoesAtOnceAndTheFirstTabTakesItsPlace) {
    openWindow();
    EXPECT_EQ(view().tabBar().tabs().size(), 8U);
    app->eventMonitor->debugMode = true;
    settle();
    ASSERT_EQ(view().tabBar().tabs().size(), 9U);
    EXPECT_EQ(view().tabBar().tabs()[6], SettingsTab::debug);
    click(*view().tabBar().button(SettingsTab::debug));
    EXPECT_EQ(view().selectedTab(), SettingsTab::debug);
    app->eventMonitor->debugMode = false;
    settle();
    EXPECT_EQ(view().tabBar().tabs().size(), 8U);
    EXPECT_EQ(view().selectedTab(), SettingsTab::settings);
}

TEST_F(SettingsViewTest, BannerStandsWhileThePermissionIsMissingAndOpensItsPane) {
    desktop.accessibility = false;
    openWindow();
    EXPECT_THAT(visibleTexts(), IsSupersetOf({"Accessibility permission is missing", "Open settings"}));
    click(view().accessibilityBanner().button());
    EXPECT_THAT(desktop.all<trace::Opened>(),
                ElementsAre(trace::Opened{trace::Opened::Kind::url,
                                          std::string(PermissionsManager::accessibilityPrefsURL)}));
    desktop.accessibility = true;
    desktop.time.runFor(Seconds{2});
    settle();
    EXPECT_FALSE(view().accessibilityBanner().isVisible());
}

TEST_F(SettingsViewTest, ControlAndANumberChooseTabs) {
    openWindow();
    press(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(view().selectedTab(), SettingsTab::buttons);
    press(Qt::Key_8, Qt::ControlModifier);
    EXPECT_EQ(view().selectedTab(), SettingsTab::share);
    press(Qt::Key_9, Qt::ControlModifier);
    EXPECT_EQ(view().selectedTab(), SettingsTab::share);
    app->eventMonitor->debugMode = true;
    settle();
    press(Qt::Key_7, Qt::ControlModifier);
    EXPECT_EQ(view().selectedTab(), SettingsTab::debug);
}

TEST_F(SettingsViewTest, ArrowKeysGoThroughTheTabs) {
    openWindow();
    view().tabBar().button(SettingsTab::settings)->setFocus();
    press(Qt::Key_Right);
    EXPECT_EQ(view().selectedTab(), SettingsTab::keepAwake);
    press(Qt::Key_Left);
    EXPECT_EQ(view().selectedTab(), SettingsTab::settings);
}

TEST_F(SettingsViewTest, EscapeGoesToTheInnermostThatWantsIt) {
    openWindow();
    std::vector<std::string> got;
    auto countdown = view().onEscape(EscapeLevel::countdown, [&] { got.emplace_back("countdown"); });
    openActions();
    chooseItem("New profile");
    auto recorder = view().onEscape(EscapeLevel::recorder, [&] { got.emplace_back("recorder"); });
    press(Qt::Key_Escape);
    EXPECT_THAT(got, ElementsAre("recorder"));
    // The window's own shortcuts never reach a recorder.
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(window().isOpen());
    recorder.reset();
    ASSERT_NE(view().sheet(), nullptr);
    press(Qt::Key_Escape);
    EXPECT_EQ(view().sheet(), nullptr);
    press(Qt::Key_Escape);
    EXPECT_THAT(got, ElementsAre("recorder", "countdown"));
    EXPECT_TRUE(window().isOpen());
    countdown.reset();
    press(Qt::Key_Escape);
    EXPECT_FALSE(window().isOpen());
}

TEST_F(SettingsViewTest, ControlWClosesTheWindow) {
    openWindow();
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isOpen());
}

// Profiles

TEST_F(SettingsViewTest, NewProfileIsCreatedUnderItsNameByReturn) {
    openWindow();
    openActions();
    chooseItem("New profile");
    EXPECT_THAT(visibleTexts(), IsSupersetOf({"New profile", "Cancel", "Create"}));
    ASSERT_EQ(QApplication::focusWidget(), field());
    EXPECT_EQ(field()->placeholderText(), "Profile name");
    type("Games");
    press(Qt::Key_Return);
    EXPECT_EQ(view().sheet(), nullptr);
    EXPECT_THAT(profileNames(), ElementsAre("Default", "Games"));
    EXPECT_EQ(app->profileManager.activeProfile().name, "Default");
    EXPECT_EQ(view().toast().shownText(), "Profile 'Games' created.");
    click(view().toast().button());
    EXPECT_EQ(app->profileManager.activeProfile().name, "Games");
    EXPECT_EQ(view().profileBar().chooser().shownText(), "Games");
}

TEST_F(SettingsViewTest, NameOfNothingCannotBeGiven) {
    openWindow();
    openActions();
    chooseItem("New profile");
    type("  ");
    EXPECT_FALSE(view().sheet()->confirmButton().isEnabled());
    press(Qt::Key_Return);
    EXPECT_NE(view().sheet(), nullptr);
    EXPECT_THAT(profileNames(), ElementsAre("Default"));
}

TEST_F(SettingsViewTest, ProfileIsRenamedFromItsPresentName) {
    openWindow();
    openActions();
    chooseItem("Rename profile…");
    EXPECT_THAT(visibleTexts(), IsSupersetOf({"Rename profile", "Cancel", "Save"}));
    EXPECT_EQ(field()->text(), "Default");
    type("Work");
    click(view().sheet()->confirmButton());
    EXPECT_THAT(profileNames(), ElementsAre("Work"));
    EXPECT_EQ(view().profileBar().chooser().shownText(), "Work");
}

TEST_F(SettingsViewTest, ProfileIsDuplicatedAndChosenFromTheMenu) {
    openWindow();
    openActions();
    chooseItem("Duplicate profile");
    EXPECT_THAT(profileNames(), ElementsAre("Default", "Default (copia)"));
    click(view().profileBar().chooser());
    ASSERT_NE(view().menu(), nullptr);
    EXPECT_EQ(view().menu()->items().at(0)->symbol(), "checkmark");
    EXPECT_EQ(view().menu()->items().at(1)->symbol(), "");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(view().menu(), nullptr);
    EXPECT_EQ(app->profileManager.activeProfile().name, "Default (copia)");
}

TEST_F(SettingsViewTest, DeletionAsksWithTheNameAndCancelLeavesEverything) {
    openWindow();
    app->profileManager.createProfile("Games");
    settle();
    openActions();
    chooseItem("Delete profile");
    EXPECT_THAT(visibleTexts(),
                IsSupersetOf({"Delete profile", "Cancel", "Delete",
                              "Profile 'Default' will be deleted. This action cannot be undone."}));
    EXPECT_TRUE(view().profileBar().pendingDeleteProfileID().has_value());
    // The keyboard starts on the way out.
    press(Qt::Key_Return);
    EXPECT_EQ(view().sheet(), nullptr);
    EXPECT_FALSE(view().profileBar().pendingDeleteProfileID().has_value());
    EXPECT_THAT(profileNames(), ElementsAre("Default", "Games"));
}

TEST_F(SettingsViewTest, DeletionInSpanishRemovesTheProfile) {
    store("general_language", "Español");
    openWindow();
    app->profileManager.createProfile("Juegos");
    settle();
    openActions();
    chooseItem("Eliminar perfil");
    EXPECT_THAT(visibleTexts(),
                IsSupersetOf({"Eliminar perfil", "Cancelar", "Eliminar",
                              "Se eliminará el perfil 'Default'. Esta acción no se puede deshacer."}));
    click(view().sheet()->confirmButton());
    EXPECT_THAT(profileNames(), ElementsAre("Juegos"));
}

TEST_F(SettingsViewTest, LastProfileCannotBeDeleted) {
    openWindow();
    openActions();
    EXPECT_FALSE(view().menu()->items().back()->isEnabled());
    press(Qt::Key_Escape);
    EXPECT_EQ(view().menu(), nullptr);
    EXPECT_TRUE(window().isOpen());
}

TEST_F(SettingsViewTest, KeyboardStaysInASheetAndComesBackAfterIt) {
    openWindow();
    view().profileBar().actions().setFocus();
    press(Qt::Key_Space);
    chooseItem("New profile");
    type("x");
    for (int step = 0; step < 5; ++step) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(view().sheet()->isAncestorOf(QApplication::focusWidget()));
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &view().profileBar().actions());
}

TEST_F(SettingsViewTest, LongNameIsCutInTheButtonAndWholeInItsTooltip) {
    openWindow();
    const std::string name(80, 'm');
    app->profileManager.rename(app->profileManager.activeProfile().id, name);
    settle();
    EXPECT_LT(view().profileBar().chooser().width(), 300);
    EXPECT_EQ(view().profileBar().chooser().toolTip().toStdString(), name);
}

TEST_F(SettingsViewTest, ToastGoesAfterEightSeconds) {
    openWindow();
    int undone = 0;
    view().tell(TextPair{"Gone.", "Fuera."}, TextPair{"Undo", "Deshacer"}, [&] { ++undone; });
    desktop.time.runFor(Seconds{7.9});
    EXPECT_TRUE(view().toast().isVisible());
    desktop.time.runFor(Seconds{0.2});
    EXPECT_FALSE(view().toast().isVisible());
    view().tell(TextPair{"Gone.", "Fuera."}, TextPair{"Undo", "Deshacer"}, [&] { ++undone; });
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(undone, 1);
    EXPECT_FALSE(view().toast().isVisible());
}

TEST_F(SettingsViewTest, NoTabIsCutAtTheSmallestWidthInEitherLanguage) {
    for (const auto* language : {"English", "Español"}) {
        store("general_language", language);
        openWindow();
        app->eventMonitor->debugMode = true;
        window().frame()->resize(780, 860);
        settle();
        int right = 0;
        for (const SettingsTab tab : view().tabBar().tabs())
            right = qMax(right, view().tabBar().button(tab)->geometry().right());
        EXPECT_LE(right, view().tabBar().width()) << language;
        window().close();
    }
}

TEST_F(SettingsViewTest, EveryControlHasANameForAScreenReader) {
    openWindow();
    int controls = 0;
    for (const QWidget* widget : view().findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
        ++controls;
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
        EXPECT_GE(widget->height(), 28) << widget->accessibleName().toStdString();
    }
    EXPECT_GE(controls, 12);
    QAccessibleInterface* tab =
        QAccessible::queryAccessibleInterface(view().tabBar().button(SettingsTab::settings));
    ASSERT_NE(tab, nullptr);
    EXPECT_EQ(tab->role(), QAccessible::PageTab);
    EXPECT_TRUE(tab->state().selected);
    QAccessibleInterface* other =
        QAccessible::queryAccessibleInterface(view().tabBar().button(SettingsTab::share));
    EXPECT_FALSE(other->state().selected);
    other->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(view().selectedTab(), SettingsTab::share);
}

}  // namespace
}  // namespace trelvan
