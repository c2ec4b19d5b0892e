#include "Core/MissingViewNotifier.hpp"
#include "Support/NotifierFixture.hpp"

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MissingViewNotifierTest : public test::NotifierFixture {
  protected:
    /// The program's other notifiers ask at its start.
    MissingViewNotifierTest() { poster.requestAuthorization(); }

    /// The desktop cannot show the view.
    void report(SystemView view, std::string_view program) {
        desktop.onMissingView({view, program});
        runFor(0.1);
    }

    MissingViewNotifier notifier{desktop.systemViews(), poster};
};

TEST_F(MissingViewNotifierTest, MissingViewNamesWhatToInstall) {
    report(SystemView::missionControl, "rofi");
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0",
                                                "This desktop offers no view of all windows. It will once "
                                                "rofi is installed."}));
}

TEST_F(MissingViewNotifierTest, SpanishTextsForTheSpanishInterface) {
    desktop.defaults["general_language"] = std::string("Español");
    report(SystemView::launchpad, "rofi");
    EXPECT_THAT(bodies(), ElementsAre("Este escritorio no ofrece un lanzador de aplicaciones. Lo hará cuando "
                                      "esté instalado rofi."));
}

TEST_F(MissingViewNotifierTest, ViewThatNothingHelpsIsOnlySaid) {
    report(SystemView::showDesktop, "");
    EXPECT_THAT(bodies(), ElementsAre("This desktop offers no way to show the desktop."));
}

TEST_F(MissingViewNotifierTest, EachViewIsSaidOnce) {
    for (int press = 0; press < 3; ++press) {
        report(SystemView::missionControl, "rofi");
        report(SystemView::appExpose, "rofi");
    }
    EXPECT_EQ(bodies().size(), 2U);
}

TEST_F(MissingViewNotifierTest, MovesToBothSidesAreOneMatter) {
    report(SystemView::desktopLeft, "");
    report(SystemView::desktopRight, "");
    EXPECT_THAT(bodies(), ElementsAre("This desktop offers no move between desktops."));
}

TEST_F(MissingViewNotifierTest, WhatFallsToKeysIsNeverMissing) {
    report(SystemView::lockScreen, "");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST(MissingViewNotifier, WhenItIsGoneTheDesktopTellsNobody) {
    test::TestDesktop desktop;
    NotificationPoster poster{{.center = desktop.notifications(),
                               .bundle = desktop.bundleInfo(),
                               .defaults = desktop.userDefaults(),
                               .mainQueue = desktop.mainQueue()}};
    { const MissingViewNotifier notifier(desktop.systemViews(), poster); }
    EXPECT_FALSE(desktop.onMissingView);
}

}  // namespace
}  // namespace trelvan
