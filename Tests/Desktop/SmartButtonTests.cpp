#include "Desktop/SmartButtonTest.hpp"

#include <csignal>

namespace trelvan::desktop {
namespace {

TEST_F(SmartButtonTest, ClickOnAnApplicationStartsItAndClosesTheMenu) {
    start(Settings()
              .map(opener, "Smart Button")
              .menuApplication("First", program("first"))
              .menuApplication("Second", program("second")));
    const Position centre = openAt({700, 440});
    clickAt(entry(centre, 1, 2));
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(hasRun("second"));
    EXPECT_FALSE(std::filesystem::exists(witness("first")));
    EXPECT_TRUE(DesktopTest::program().waitForLine("Smart Button abrió Second"));
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, ClickOnAShortcutTypesItIntoTheApplication) {
    start(twoShortcuts());
    const Window before = focus();
    const Position centre = openAt({700, 440});
    EXPECT_EQ(focus(), before);
    clickAt(entry(centre, 0, 2));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(focus(), before);
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask}}));
}

TEST_F(SmartButtonTest, EveryCornerHasTheWholeMenu) {
    start(twoShortcuts());
    // In the lowest strip of a screen buttons keep their own meaning.
    constexpr int low = VirtualDesktop::height - 60;
    constexpr int right = VirtualDesktop::width - 1;
    for (const Position corner :
         {Position{0, 0}, Position{right, 0}, Position{0, low}, Position{right, low}}) {
        client().forget();
        const Position centre = openAt(corner);
        clickAt(entry(centre, 1, 2));
        EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask})) << corner.x << ", " << corner.y;
        EXPECT_TRUE(isClosed());
    }
}

TEST_F(SmartButtonTest, OfTenEntriesTheFirstEightAreShown) {
    Settings settings = Settings().map(opener, "Smart Button");
    // The keys of the digits 1 to 9 and 0, in the program's codes.
    constexpr int digits[] = {18, 19, 20, 21, 23, 22, 26, 28, 25, 29};
    for (int index = 0; index < 10; ++index)
        settings.menuShortcut("Entry " + std::to_string(index + 1), digits[index], 0);
    start(settings);
    for (int index = 0; index < 8; ++index) {
        client().forget();
        const Position centre = openAt({700, 440});
        clickAt(entry(centre, index, 8));
        EXPECT_TRUE(client().waitForStroke({static_cast<KeySym>(XK_1 + index), 0})) << index;
        EXPECT_TRUE(isClosed());
    }
}

TEST_F(SmartButtonTest, KeysChooseAnEntryAlthoughTheApplicationKeepsTheFocus) {
    start(twoShortcuts());
    openAt({700, 440});
    client().forget();
    desktop().keyboard().keyStroke(client().keyCode(XK_2));
    EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}));
    EXPECT_TRUE(isClosed());
    openAt({700, 440});
    client().forget();
    desktop().keyboard().keyStroke(client().keyCode(XK_Right));
    desktop().keyboard().keyStroke(client().keyCode(XK_Right));
    desktop().keyboard().keyStroke(client().keyCode(XK_Left));
    desktop().keyboard().keyStroke(client().keyCode(XK_Return));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask}}));
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, EscapeClosesTheMenu) {
    start(twoShortcuts());
    openAt({700, 440});
    desktop().keyboard().keyStroke(client().keyCode(XK_Escape));
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_a, 0}}));
}

TEST_F(SmartButtonTest, ClickOutsideClosesTheMenuAndReachesNoApplication) {
    start(twoShortcuts());
    openAt({700, 440});
    client().forget();
    clickAt({100, 100});
    EXPECT_TRUE(isClosed());
    client().warpPointer(client().middle());
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, SecondPressOfTheButtonMovesTheMenuToThePointer) {
    start(twoShortcuts());
    const Position first = openAt({700, 440});
    const Window before = overlay();
    const Position second = openAt({300, 300});
    EXPECT_TRUE(waitUntil([&] { return overlay() != 0 && overlay() != before; }));
    EXPECT_NE(first.x, second.x);
    client().forget();
    clickAt(entry(second, 1, 2));
    EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}));
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, MenuOpensOnTheMonitorUnderThePointer) {
    // A second monitor on the right half of the screen.
    Display* display = client().connection().get();
    const auto split = [&](const char* name, const char* geometry, const char* output) {
        ChildProcess xrandr(Launch{.arguments = {"/usr/bin/xrandr", "--setmonitor", name, geometry, output},
                                   .environment = desktop().environment(),
                                   .directory = desktop().folder(),
                                   .output = desktop().folder() / "xrandr.output",
                                   .errors = {}});
        EXPECT_EQ(xrandr.waitForEnd(timeout), 0) << readFile(desktop().folder() / "xrandr.output");
    };
    split("left", "720/190x900/240+0+0", "DUMMY0");
    split("right", "720/190x900/240+720+0", "none");
    XSync(display, 0);
    start(twoShortcuts());
    client().warpPointer({1000, 440});
    trackball().click(xButton(opener));
    EXPECT_TRUE(waitUntil([&] { return overlay(720, 720) != 0; }));
    client().forget();
    clickAt({1000, 440 - radius});
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    for (const char* name : {"left", "right"}) {
        ChildProcess xrandr(Launch{.arguments = {"/usr/bin/xrandr", "--delmonitor", name},
                                   .environment = desktop().environment(),
                                   .directory = desktop().folder(),
                                   .output = desktop().folder() / "xrandr.output",
                                   .errors = {}});
        EXPECT_EQ(xrandr.waitForEnd(timeout), 0);
    }
}

TEST_F(SmartButtonTest, KilledProgramLeavesNeitherWindowNorKeyboard) {
    start(twoShortcuts());
    openAt({700, 440});
    DesktopTest::program().signal(SIGKILL);
    EXPECT_TRUE(DesktopTest::program().waitForEnd().has_value());
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, ApplicationThatIsGoneIsNamedAndTheMenuClosed) {
    start(Settings().map(opener, "Smart Button").menuApplication("Gone", "/no/such/program"));
    const Position centre = openAt({700, 440});
    clickAt(entry(centre, 0, 1));
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(DesktopTest::program().waitForLine("Smart Button: no se encontró /no/such/program"));
}

TEST_F(SmartButtonTest, CentreOpensTheFolderOfAllApplications) {
    start(twoShortcuts());
    const Position centre = openAt({700, 440});
    clickAt(centre);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(
        waitUntil([&] { return desktop().opened().find("/usr/share/applications") != std::string::npos; }));
}

/// How the menu looks, kept as a picture for people to judge.
struct LookCase {
    std::string name;
    std::string theme;
    std::string language;
    std::string scale;
};
class SmartButtonLookTest : public SmartButtonTest, public testing::WithParamInterface<LookCase> {};

TEST_P(SmartButtonLookTest, PictureIsKept) {
    const auto& look = GetParam();
    const std::string notes = desktop().folder() / "data" / "applications" / "notes.desktop";
    std::filesystem::create_directories(std::filesystem::path(notes).parent_path());
    writeFile(notes,
              "[Desktop Entry]\nType=Application\nName=Notes\nIcon=xterm-color\n"
              "Exec=true\n");
    start(Settings()
              .map(opener, "Smart Button")
              .menuApplication("Notes", notes)
              .menuShortcut("Copy", keyC, control, "⌃C")
              .menuApplication("A rather long name of an application", "/usr/bin/xterm")
              .menuShortcut("Paste without formatting", keyV, control, "⌃⇧V")
              .menuApplication("Web", "/usr/bin/xev")
              .menuShortcut("Donaudampfschifffahrtsgesellschaft", keyV, control, "⌃⌥⇧⌘V")
              .menuApplication("Música y vídeo", "/opt/gone/player")
              .menuShortcut("Undo", 6, control, "⌃Z")
              .set("general_theme", look.theme)
              .set("general_language", look.language),
          {{"QT_SCALE_FACTOR", look.scale}});
    client().warpPointer({720, 450});
    trackball().click(xButton(opener));
    ASSERT_TRUE(isOpen());
    desktop().keyboard().keyStroke(client().keyCode(XK_Right));
    // The keyboard's choice is drawn once the fade is over.
    const auto folder = std::filesystem::path(TRELVAN_ARTIFACTS);
    std::filesystem::create_directories(folder);
    const auto picture = folder / ("smart-button-" + look.name + ".png");
    std::filesystem::remove(picture);
    waitUntil([] { return false; }, std::chrono::milliseconds{400});
    ChildProcess import(Launch{.arguments = {"/usr/bin/import", "-window", "root", picture},
                               .environment = desktop().environment(),
                               .directory = desktop().folder(),
                               .output = desktop().folder() / "import.output",
                               .errors = {}});
    EXPECT_EQ(import.waitForEnd(timeout), 0) << readFile(desktop().folder() / "import.output");
    EXPECT_GT(std::filesystem::file_size(picture), 10'000U);
    desktop().keyboard().keyStroke(client().keyCode(XK_Escape));
    EXPECT_TRUE(isClosed());
}

INSTANTIATE_TEST_SUITE_P(Looks, SmartButtonLookTest,
                         testing::Values(LookCase{"Light", "Light", "English", "1"},
                                         LookCase{"Dark", "Dark", "English", "1"},
                                         LookCase{"Spanish", "Light", "Español", "1"},
                                         LookCase{"Scaled150", "Light", "English", "1.5"},
                                         LookCase{"Scaled200", "Dark", "English", "2"}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace trelvan::desktop
