#include "Core/MissingViewNotifier.hpp"
#include "Support/NotifierFixture.hpp"

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MissingViewNotifierTest : public test::NotifierFixture {
  protected:
    MissingViewNotifier notifier{desktop.systemViews(), poster};
};

TEST_F(MissingViewNotifierTest, MissingViewNamesWhatToInstall) {
    desktop.onMissingView({SystemView::missionControl, "rofi"});
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0",
                                                "This desktop offers no view of all windows. It will once "
                                                "rofi is installed."}));
}

TEST_F(MissingViewNotifierTest, SpanishTextsForTheSpanishInterface) {
    desktop.defaults["general_language"] = std::string("Español");
    desktop.onMissingView({SystemView::launchpad, "rofi"});
    EXPECT_THAT(bodies(), ElementsAre("Este escritorio no ofrece un lanzador de aplicaciones. Lo hará cuando "
                                      "esté instalado rofi."));
}

TEST_F(MissingViewNotifierTest, ViewThatNothingHelpsIsOnlySaid) {
    desktop.onMissingView({SystemView::showDesktop, {}});
    EXPECT_THAT(bodies(), ElementsAre("This desktop offers no way to show the desktop."));
}

TEST_F(MissingViewNotifierTest, EachViewIsSaidOnce) {
    for (int press = 0; press < 3; ++press) {
        desktop.onMissingView({SystemView::missionControl, "rofi"});
        desktop.onMissingView({SystemView::appExpose, "rofi"});
    }
    EXPECT_EQ(bodies().size(), 2U);
}

TEST_F(MissingViewNotifierTest, MovesToBothSidesAreOneMatter) {
    desktop.onMissingView({SystemView::desktopLeft, {}});
    desktop.onMissingView({SystemView::desktopRight, {}});
    EXPECT_THAT(bodies(), ElementsAre("This desktop offers no move between desktops."));
}

TEST_F(MissingViewNotifierTest, WhatFallsToKeysIsNeverMissing) {
    desktop.onMissingView({SystemView::lockScreen, {}});
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
