#include "Desktop/Harness/NotificationDaemon.hpp"
#include "Desktop/ShellTest.hpp"

#include <set>
#include <string>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);

/// Views on desktops whose shell has none, by programs or not at all.
using ViewProgramTest = ShellTest;

TEST_F(ViewProgramTest, Xfce_ViewsOfWindowsAreItsListOfThem) {
    const auto trace = programThatRecords("xfdesktop");
    startAlone("XFCE", Settings().map(3, "Mission Control").map(4, "App Exposé"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "--windowlist\n"; })) << readFile(trace);
    trackball().click(xButton(4));
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "--windowlist\n--windowlist\n"; }));
    expectNoKeys();
}

TEST_F(ViewProgramTest, Xfce_ListOfWindowsThatFailsIsTheCommonOne) {
    writeProgram("xfdesktop", "exit 1");
    const auto trace = programThatRecords("rofi");
    startAlone("XFCE", Settings().map(3, "Mission Control"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "-show window\n"; })) << readFile(trace);
}

TEST_F(ViewProgramTest, Xfce_LaunchpadWithoutAShortcutIsItsProgram) {
    const auto trace = programThatRecords("xfce4-appfinder");
    startAlone("XFCE", Settings().map(3, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "\n"; })) << readFile(trace);
    expectNoKeys();
}

TEST_F(ViewProgramTest, Mate_ViewsOfWindowsAreTheCommonProgramWhereItIsInstalled) {
    const auto trace = programThatRecords("rofi");
    startAlone("MATE", Settings().map(3, "Mission Control").map(4, "Launchpad"));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "-show window\n"; })) << readFile(trace);
    trackball().click(xButton(4));
    EXPECT_TRUE(waitUntil([&] { return readFile(trace) == "-show window\n-show drun\n"; }))
        << readFile(trace);
    expectNoKeys();
}

TEST_F(ViewProgramTest, Mate_WithoutItTheUserHearsOnceWhatToInstall) {
    const NotificationDaemon daemon(desktop());
    startAlone("MATE", Settings().map(3, "Mission Control").map(4, "App Exposé"));
    for (int press = 0; press < 3; ++press) trackball().click(extra);
    trackball().click(xButton(4));
    ASSERT_TRUE(daemon.waitForCount(2));
    // The shells are asked for each by ways of different length.
    std::set<std::string> bodies;
    for (const auto& shown : daemon.shown()) bodies.insert(shown.body);
    EXPECT_EQ(bodies, (std::set<std::string>{
                          "This desktop offers no view of all windows. It will once rofi is installed.",
                          "This desktop offers no view of an application's windows. It will once rofi is "
                          "installed."}));
    expectNoKeys();
}

TEST_F(ViewProgramTest, Mate_TheUserHearsItInTheLanguageOfTheInterface) {
    const NotificationDaemon daemon(desktop());
    startAlone("MATE", Settings().map(3, "Launchpad").set("general_language", "Español"));
    trackball().click(extra);
    ASSERT_TRUE(daemon.waitForCount(1));
    EXPECT_EQ(daemon.shown()[0].body,
              "Este escritorio no ofrece un lanzador de aplicaciones. Lo hará cuando esté instalado rofi.");
}

TEST_F(ViewProgramTest, BareWindowManager_ViewThatNobodyHasIsOneWarningAndNoKeys) {
    startAlone("", Settings().map(3, "Mission Control").map(4, "App Exposé"));
    for (int press = 0; press < 3; ++press) trackball().click(extra);
    trackball().click(xButton(4));
    // The second view is asked for after all of the first.
    EXPECT_TRUE(program().waitForLine("Este escritorio no ofrece la vista de la aplicación"));
    EXPECT_EQ(linesWith("Este escritorio no ofrece la vista de ventanas"), 1);
    expectNoKeys();
}

}  // namespace
}  // namespace trelvan::desktop
