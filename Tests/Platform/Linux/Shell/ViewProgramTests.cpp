#include "Platform/Linux/Shell/ViewProgram.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Words = std::vector<std::string>;

std::vector<Words> commands(DesktopKind desktop, SystemView view) {
    std::vector<Words> all;
    for (const auto& program : viewPrograms(desktop, view)) all.push_back(program.command);
    return all;
}

TEST(ViewProgram, XfceHasItsListOfWindows_BeforeTheCommonOne) {
    for (const auto view : {SystemView::missionControl, SystemView::appExpose}) {
        EXPECT_THAT(commands(DesktopKind::xfce, view),
                    ElementsAre(Words{"xfdesktop", "--windowlist"}, Words{"rofi", "-show", "window"}));
    }
}

TEST(ViewProgram, XfceHasItsLaunchers_BeforeTheCommonOne) {
    EXPECT_THAT(commands(DesktopKind::xfce, SystemView::launchpad),
                ElementsAre(Words{"xfce4-popup-whiskermenu"}, Words{"xfce4-appfinder"},
                            Words{"rofi", "-show", "drun"}));
}

TEST(ViewProgram, OtherDesktopsHaveTheCommonOne) {
    for (const auto desktop : {DesktopKind::mate, DesktopKind::other, DesktopKind::cinnamon}) {
        EXPECT_THAT(commands(desktop, SystemView::missionControl),
                    ElementsAre(Words{"rofi", "-show", "window"}));
        EXPECT_THAT(commands(desktop, SystemView::launchpad), ElementsAre(Words{"rofi", "-show", "drun"}));
    }
}

TEST(ViewProgram, WhatNoProgramShows_HasNone) {
    for (const auto view : {SystemView::showDesktop, SystemView::desktopLeft, SystemView::lockScreen}) {
        EXPECT_THAT(commands(DesktopKind::xfce, view), IsEmpty());
        EXPECT_EQ(programToInstall(view), "");
    }
}

TEST(ViewProgram, WhatCanBeInstalled_IsAmongThePrograms) {
    for (const auto view : {SystemView::missionControl, SystemView::appExpose, SystemView::launchpad}) {
        EXPECT_EQ(programToInstall(view), commands(DesktopKind::other, view).back().front());
    }
}

}  // namespace
}  // namespace trelvan
