#include "Desktop/Harness/FakeService.hpp"
#include "Desktop/ShellTest.hpp"

#include <X11/keysym.h>

#include <algorithm>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
constexpr auto shortcutsRead = "Atajos del escritorio leídos: ";
constexpr auto kdeShortcuts = "org.kde.kglobalaccel";

std::string xfceEntry(const std::string& accelerator, const std::string& action) {
    return "<property name=\"" + accelerator + "\" type=\"string\" value=\"" + action + "\"/>";
}

// GNOME

TEST_F(ShellTest, Gnome_MissionControlTurnsTheOverviewOn) {
    const FakeService shell(desktop(), "org.gnome.Shell", {"Get=false"});
    start(Settings().map(3, "Mission Control"));
    trackball().click(extra);
    EXPECT_TRUE(shell.waitForCall("/org/gnome/Shell Set org.gnome.Shell OverviewActive true"));
    expectNoKeys();
}

TEST_F(ShellTest, Gnome_MissionControlTurnsTheOpenOverviewOff) {
    const FakeService shell(desktop(), "org.gnome.Shell", {"Get=true"});
    start(Settings().map(3, "Mission Control"));
    trackball().click(extra);
    EXPECT_TRUE(shell.waitForCall("/org/gnome/Shell Set org.gnome.Shell OverviewActive false"));
}

TEST_F(ShellTest, Gnome_ShellThatHangsHoldsNothingUp) {
    const FakeService shell(desktop(), "org.gnome.Shell", {"Get=silence"});
    start(Settings().map(3, "Mission Control").map(4, "Copiar"));
    trackball().click(extra);
    ASSERT_TRUE(shell.waitForCall("/org/gnome/Shell Get org.gnome.Shell OverviewActive"));
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_EQ(wholeOutput().find("El escritorio no respondió"), std::string::npos);
    // It is not asked again in another way, as it may still do it.
    EXPECT_TRUE(program().waitForLine("El escritorio no respondió"));
    EXPECT_EQ(shell.calls().size(), 1U);
    EXPECT_EQ(wholeOutput().find("Este escritorio no ofrece"), std::string::npos);
}

TEST_F(ShellTest, Gnome_ChangedSettingIsReadAgain) {
    const auto settings = desktop().folder() / "settings.txt";
    const auto set = [&](const std::string& accelerator) {
        writeFile(settings, "org.gnome.shell.keybindings toggle-overview ['" + accelerator + "']\n");
        std::filesystem::create_directories(desktop().folder() / "config/dconf");
        writeFile(desktop().folder() / "config/dconf/new", accelerator);
        std::filesystem::rename(desktop().folder() / "config/dconf/new",
                                desktop().folder() / "config/dconf/user");
    };
    writeProgram("gsettings", "[ \"$2\" = org.gnome.shell.keybindings ] && cat '" + settings.string() + "'");
    set("<Super>s");
    startOn("GNOME", Settings().map(3, "Mission Control"));
    ASSERT_TRUE(program().waitForLine(shortcutsRead + std::string("1")));
    set("<Super>F9");
    ASSERT_TRUE(waitUntil([&] { return linesWith(shortcutsRead) == 2; }));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_F9, Mod4Mask}));
}

TEST_F(ShellTest, Gnome_OverlayKeyIsPressedAloneWhereTheShellCannotBeAsked) {
    writeProgram("gsettings", "[ \"$2\" = org.gnome.mutter ] || exit 1\necho \"$2 overlay-key 'Super_L'\"");
    startOn("GNOME", Settings().map(3, "Mission Control"));
    ASSERT_TRUE(program().waitForLine(shortcutsRead + std::string("1")));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_Super_L, 0}));
    expectNoKeys();
}

TEST_F(ShellTest, Gnome_LaunchpadShowsTheApplications) {
    const FakeService shell(desktop(), "org.gnome.Shell");
    start(Settings().map(3, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(shell.waitForCall("/org/gnome/Shell ShowApplications"));
    expectNoKeys();
    EXPECT_EQ(shell.calls().size(), 1U);
}

TEST_F(ShellTest, Gnome_LaunchpadThatTheShellRefusesIsItsOwnShortcut) {
    const FakeService shell(desktop(), "org.gnome.Shell", {"ShowApplications=error"});
    writeProgram("gsettings",
                 "[ \"$2\" = org.gnome.shell.keybindings ] || exit 1\n"
                 "echo \"$2 toggle-application-view ['<Super>a']\"");
    startOn("ubuntu:GNOME", Settings().map(3, "Launchpad"));
    ASSERT_TRUE(program().waitForLine(shortcutsRead + std::string("1")));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_a, Mod4Mask}));
}

TEST_F(ShellTest, Gnome_LaunchpadWithNeitherIsTheOverview) {
    const FakeService shell(desktop(), "org.gnome.Shell", {"ShowApplications=error"});
    start(Settings().map(3, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(shell.waitForCall("/org/gnome/Shell Set org.gnome.Shell OverviewActive true"));
    expectNoKeys();
}

TEST_F(ShellTest, Gnome_ScreenshotIsTheDesktopsOwnShortcut) {
    writeProgram("gsettings",
                 "[ \"$2\" = org.gnome.shell.keybindings ] || exit 1\n"
                 "echo \"$2 screenshot ['<Shift>Print']\"\necho \"$2 show-screenshot-ui ['<Super>Print']\"");
    startOn("GNOME", Settings().map(3, "Captura Completa").map(4, "Screenshot"));
    ASSERT_TRUE(program().waitForLine(shortcutsRead + std::string("3")));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_Print, ShiftMask}));
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_Print, Mod4Mask}));
}

// KDE

TEST_F(ShellTest, Kde_ViewsAreInvokedByName) {
    const FakeService kde(desktop(), kdeShortcuts, {"shortcutNames=list:Overview,ExposeAll,ExposeClass"});
    start(Settings().map(3, "Mission Control").map(4, "App Exposé"));
    trackball().click(extra);
    EXPECT_TRUE(kde.waitForCall("/component/kwin invokeShortcut Overview"));
    trackball().click(xButton(4));
    EXPECT_TRUE(kde.waitForCall("/component/kwin invokeShortcut ExposeClass"));
    expectNoKeys();
}

TEST_F(ShellTest, Kde_LaunchpadIsTheShellsOwnLauncher) {
    // Plasma 5.27 has no global shortcut by which its launcher could be invoked.
    const FakeService shortcuts(desktop(), kdeShortcuts,
                                {"shortcutNames=list:activate widget 3,show dashboard"});
    const FakeService shell(desktop(), "org.kde.plasmashell");
    start(Settings().map(3, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(shell.waitForCall("/PlasmaShell activateLauncherMenu"));
    expectNoKeys();
    EXPECT_EQ(shell.calls().size(), 1U);
}

TEST_F(ShellTest, Kde_ShellWithoutTheCallIsAskedByTheShortcutsName) {
    const FakeService kde(desktop(), kdeShortcuts, {"shortcutNames=list:activate application launcher"});
    const FakeService shell(desktop(), "org.kde.plasmashell", {"activateLauncherMenu=error"});
    start(Settings().map(3, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(kde.waitForCall("/component/plasmashell invokeShortcut activate application launcher"));
    expectNoKeys();
}

TEST_F(ShellTest, Kde_WithoutTheOverviewItIsTheWindowsOfAllDesktops) {
    const FakeService kde(desktop(), kdeShortcuts, {"shortcutNames=list:Show Desktop,Expose,ExposeAll"});
    start(Settings().map(3, "Mission Control"));
    trackball().click(extra);
    EXPECT_TRUE(kde.waitForCall("/component/kwin invokeShortcut ExposeAll"));
}

TEST_F(ShellTest, Kde_ScreenshotsAndEmojisAreItsOwnTools) {
    const FakeService kde(desktop(), kdeShortcuts,
                          {"shortcutNames=list:_launch,RectangularRegionScreenShot,FullScreenScreenShot"});
    start(Settings().map(3, "Captura de Área").map(4, "Emoji"));
    trackball().click(extra);
    EXPECT_TRUE(
        kde.waitForCall("/component/org_kde_spectacle_desktop invokeShortcut RectangularRegionScreenShot"));
    trackball().click(xButton(4));
    EXPECT_TRUE(kde.waitForCall("/component/org_kde_plasma_emojier_desktop invokeShortcut _launch"));
    expectNoKeys();
}

TEST_F(ShellTest, Kde_ViewThatItDoesNotHaveIsItsShortcut) {
    const FakeService kde(desktop(), kdeShortcuts, {"shortcutNames=list:Show Desktop"});
    writeFile(desktop().folder() / "config/kglobalshortcutsrc",
              "[kwin]\nExposeClass=Meta+F7,Ctrl+F7,Toggle Present Windows (Window class)\n");
    startOn("KDE", Settings().map(3, "App Exposé"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_F7, Mod4Mask}));
}

// XFCE

TEST_F(ShellTest, Xfce_ShortcutsAreTheDesktopsOwn) {
    writeXfceShortcuts(xfceEntry("&lt;Alt&gt;F3", "xfce4-appfinder") +
                       xfceEntry("&lt;Super&gt;Print", "xfce4-screenshooter -r"));
    startOn("XFCE", Settings().map(3, "Launchpad").map(4, "Captura de Área"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_F3, Mod1Mask}));
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_Print, Mod4Mask}));
}

TEST_F(ShellTest, Xfce_ScreenshotWithoutAShortcutIsItsProgram) {
    const auto trace = desktop().folder() / "screenshot";
    std::filesystem::remove(trace);
    writeProgram("xfce4-screenshooter", "printf %s \"$*\" > '" + trace.string() + "'");
    writeXfceShortcuts(xfceEntry("Print", "xfce4-screenshooter"));
    startOn("XFCE", Settings().map(3, "Captura Completa").map(4, "Screenshot"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "-f"; })) << readFile(trace);
    expectNoKeys();
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_Print, 0}));
    EXPECT_EQ(readFile(trace), "-f");
    std::filesystem::remove(desktop().folder() / "bin/xfce4-screenshooter");
}

TEST_F(ShellTest, Xfce_ChangedShortcutIsReadAgain) {
    writeXfceShortcuts(xfceEntry("&lt;Alt&gt;F3", "xfce4-appfinder"));
    startOn("XFCE", Settings().map(3, "Launchpad"));
    writeXfceShortcuts(xfceEntry("&lt;Super&gt;space", "xfce4-appfinder"));
    ASSERT_TRUE(waitUntil([&] { return linesWith(shortcutsRead) == 2; }));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_space, Mod4Mask}));
    // And once more: the file that was watched is gone.
    writeXfceShortcuts(xfceEntry("&lt;Super&gt;F1", "xfce4-appfinder"));
    ASSERT_TRUE(waitUntil([&] { return linesWith(shortcutsRead) == 3; }));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_F1, Mod4Mask}));
}

TEST_F(ShellTest, Xfce_DesktopMovesGoByTheWindowManagerNotByKeys) {
    writeXfceShortcuts("", xfceEntry("&lt;Primary&gt;&lt;Alt&gt;Right", "right_workspace_key"));
    startOn("XFCE", Settings().map(3, "Mover escritorio derecha"));
    trackball().click(extra);
    EXPECT_TRUE(isProperty("_NET_CURRENT_DESKTOP", 1));
    client().connection().sendToRoot("_NET_CURRENT_DESKTOP", 0);
    EXPECT_TRUE(isProperty("_NET_CURRENT_DESKTOP", 0));
    expectNoKeys();
}

// A bare window manager

TEST_F(ShellTest, BareWindowManager_MovesGoThroughAllFourDesktopsAndStopAtTheEnds) {
    start(Settings().map(3, "Mover escritorio derecha").map(4, "Mover escritorio izquierda"));
    for (const long number : {1, 2, 3, 3}) {
        trackball().click(extra);
        EXPECT_TRUE(isProperty("_NET_CURRENT_DESKTOP", number));
    }
    for (const long number : {2, 1, 0, 0}) {
        trackball().click(xButton(4));
        EXPECT_TRUE(isProperty("_NET_CURRENT_DESKTOP", number));
    }
    expectNoKeys();
}

TEST_F(ShellTest, DesktopMoveWithoutANeighbour_TypesNothingIntoTheApplicationInFront) {
    // There is a shortcut that could be pressed, and the application in front is on the first desktop.
    writeXfceShortcuts("", xfceEntry("&lt;Primary&gt;&lt;Alt&gt;Left", "left_workspace_key"));
    startOn("XFCE", Settings().map(3, "Mover escritorio izquierda").map(4, "Copiar"));
    ASSERT_TRUE(program().waitForLine(shortcutsRead + std::string("1")));
    trackball().click(extra);
    expectNoKeys();
    // What was put off has been typed by now, had there been anything: keys take one queue.
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    const auto strokes = client().strokes();
    EXPECT_TRUE(std::ranges::all_of(strokes, [](const KeyStroke& stroke) { return stroke.key == XK_c; }));
    EXPECT_TRUE(isProperty("_NET_CURRENT_DESKTOP", 0));
}

TEST_F(ShellTest, BareWindowManager_ShowDesktopGoesThereAndBack) {
    start(Settings().map(3, "Mostrar Escritorio"));
    trackball().click(extra);
    EXPECT_TRUE(isProperty("_NET_SHOWING_DESKTOP", 1));
    trackball().click(extra);
    EXPECT_TRUE(isProperty("_NET_SHOWING_DESKTOP", 0));
}

// The file manager

TEST_F(ShellTest, OpenExplorer_IsTheFileManagerThatTheUserHasChosen) {
    // Any of those installed may have this name.
    const FakeService another(desktop(), "org.freedesktop.FileManager1");
    start(Settings().map(3, "Open Explorer"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return !desktop().opened().empty(); }));
    EXPECT_NE(desktop().opened().find((desktop().folder() / "home").string()), std::string::npos);
    EXPECT_TRUE(another.calls().empty());
}

// Lock

/// It may be asked whether it is locked at any time.
bool wasAskedToLock(const FakeService& service) {
    return std::ranges::any_of(service.calls(), [](const std::string& call) {
        return call.ends_with(" Lock") || call.find(" Lock ") != std::string::npos;
    });
}

TEST_F(ShellTest, Lock_AsksTheScreenSaver) {
    const FakeService saver(desktop(), "org.freedesktop.ScreenSaver");
    start(Settings().map(3, "Lock Workstation"));
    trackball().click(extra);
    EXPECT_TRUE(saver.waitForCall("/org/freedesktop/ScreenSaver Lock"));
    expectNoKeys();
}

TEST_F(ShellTest, Lock_OfADesktopsOwnScreenSaverGoesFirst) {
    const FakeService own(desktop(), "org.cinnamon.ScreenSaver");
    const FakeService common(desktop(), "org.freedesktop.ScreenSaver");
    start(Settings().map(3, "Lock Workstation"));
    trackball().click(extra);
    EXPECT_TRUE(own.waitForCall("/org/cinnamon/ScreenSaver Lock "));
    expectNoKeys();
    EXPECT_FALSE(wasAskedToLock(common));
}

TEST_F(ShellTest, Lock_ScreenSaverThatDiesOfItIsNotTheLastThatIsAsked) {
    // MATE's does outside of a session of MATE.
    const FakeService dying(desktop(), "org.mate.ScreenSaver", {"Lock=crash"});
    const FakeService common(desktop(), "org.freedesktop.ScreenSaver");
    start(Settings().map(3, "Lock Workstation"));
    trackball().click(extra);
    EXPECT_TRUE(common.waitForCall("/org/freedesktop/ScreenSaver Lock"));
}

TEST_F(ShellTest, Lock_OnXfceItsProgramGoesBeforeTheSignalThatNobodyMayHear) {
    const FakeService logins(desktop(), "org.freedesktop.login1");
    const auto trace = programThatRecords("xflock4");
    start(Settings().map(3, "Lock Workstation"),
          {{"XDG_CURRENT_DESKTOP", "XFCE"},
           {"DBUS_SYSTEM_BUS_ADDRESS", desktop().environment().at("DBUS_SESSION_BUS_ADDRESS")}});
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "\n"; }));
    EXPECT_FALSE(wasAskedToLock(logins));
    writeProgram("xflock4", "exit 1");
    trackball().click(extra);
    EXPECT_TRUE(logins.waitForCall("/org/freedesktop/login1/session/auto Lock"));
}

TEST_F(ShellTest, Lock_WithoutAScreenSaverAsksTheLoginManager) {
    const FakeService logins(desktop(), "org.freedesktop.login1");
    // One bus for both, as there is no login manager of ours on the system's.
    start(Settings().map(3, "Lock Workstation"),
          {{"DBUS_SYSTEM_BUS_ADDRESS", desktop().environment().at("DBUS_SESSION_BUS_ADDRESS")}});
    trackball().click(extra);
    EXPECT_TRUE(logins.waitForCall("/org/freedesktop/login1/session/auto Lock"));
    expectNoKeys();
}

TEST_F(ShellTest, Lock_WithNeitherRunsTheProgram) {
    const auto trace = desktop().folder() / "locked";
    std::filesystem::remove(trace);
    writeProgram("xdg-screensaver", "printf %s \"$*\" > '" + trace.string() + "'");
    start(Settings().map(3, "Lock Workstation"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "lock"; }));
    expectNoKeys();
}

TEST_F(ShellTest, WithoutASessionBus_ActionsGoOn) {
    start(Settings().map(3, "Lock Workstation").map(4, "Open Explorer"),
          {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all"}});
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_l, Mod4Mask}));
    trackball().click(xButton(4));
    EXPECT_TRUE(waitUntil([&] { return !desktop().opened().empty(); }));
}

}  // namespace
}  // namespace trelvan::desktop
