#include "Support/WindowFixture.hpp"
#include "UI/ProfileBar.hpp"
#include "UI/TabBar.hpp"

#include <QDir>
#include <QPixmap>

// Pictures of the window for people to look at, in both languages and themes, at 100 and 200 percent.

namespace trelvan {
namespace {

class WindowPictureTest : public test::WindowTest {
  protected:
    void keep(const QString& name, int percent = 100) {
        settle();
        const double ratio = percent / 100.0;
        QPixmap picture(window().frame()->size() * ratio);
        picture.setDevicePixelRatio(ratio);
        window().frame()->render(&picture);
        const QString folder = TRELVAN_ARTIFACTS "/window/";
        QDir().mkpath(folder);
        ASSERT_TRUE(picture.save(folder + name + "-" + QString::number(percent) + ".png"));
    }
    void open(const char* language, const char* theme, QSize size) {
        store("general_language", language);
        store("general_theme", theme);
        desktop.userDefaults().tellOutsideChange({"general_language", "general_theme"});
        openWindow();
        window().frame()->resize(size);
        settle();
    }
};

TEST_F(WindowPictureTest, EveryTabIsKeptInBothLanguagesAndThemes) {
    for (const auto* language : {"English", "Español"}) {
        for (const auto* theme : {"Light", "Dark"}) {
            for (const int width : {780, 1200}) {
                open(language, theme, {width, 860});
                for (const SettingsTab tab : view().availableTabs()) {
                    view().selectTab(tab);
                    const QString name = QString("%1-%2-%3-%4")
                                             .arg(QString(iconName(tab).data()).replace('.', '-'))
                                             .arg(QString(language).left(2).toLower())
                                             .arg(QString(theme).toLower())
                                             .arg(width);
                    keep(name);
                    if (tab == firstTab) keep(name, 200);
                }
                window().close();
            }
        }
    }
}

TEST_F(WindowPictureTest, SheetMenuBannerAndToastAreKept) {
    desktop.accessibility = false;
    for (const auto* theme : {"Light", "Dark"}) {
        open("Español", theme, {900, 960});
        const QString end = QString(theme).toLower();
        app->profileManager.createProfile("Un perfil con un nombre bastante largo");
        view().tell(TextPair{"Button 5 removed.", "Botón 5 eliminado."}, TextPair{"Undo", "Deshacer"}, [] {});
        settle();
        click(view().profileBar().actions());
        keep("menu-" + end);
        click(*view().menu()->items().front());
        keep("sheet-" + end);
        view().sheet()->close();
        settle();
        click(view().profileBar().actions());
        click(*view().menu()->items().back());
        keep("delete-" + end);
        view().sheet()->close();
        settle();
        click(view().profileBar().chooser());
        keep("profiles-" + end);
        view().menu()->close();
        window().close();
    }
}

}  // namespace
}  // namespace trelvan
