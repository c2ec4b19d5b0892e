#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <cmath>
#include <csignal>
#include <numbers>

namespace trelvan::desktop {
namespace {

constexpr int opener = 3;
constexpr int radius = 138;
constexpr int margin = 248;
constexpr unsigned long command = 0x100000;
constexpr unsigned long control = 0x40000;
constexpr int keyC = 8;
constexpr int keyV = 9;

class SmartButtonTest : public DesktopTest {
  protected:
    /// An executable that leaves a file behind when it runs.
    std::string program(const std::string& name) {
        const auto path = desktop().folder() / "home" / name;
        writeFile(path, "#!/bin/sh\ntouch '" + witness(name) + "'\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::string witness(const std::string& name) { return desktop().folder() / "home" / (name + ".ran"); }
    bool hasRun(const std::string& name) {
        return waitUntil([&] { return std::filesystem::exists(witness(name)); });
    }

    /// The overlay: the only window of that size that no window manager knows. Windows may go while they are
    /// looked at.
    [[nodiscard]] Window overlay(int x = 0, int width = VirtualDesktop::width) {
        Display* display = client().connection().get();
        const auto former = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        Window found = 0;
        XQueryTree(display, client().connection().root(), &root, &parent, &children, &count);
        for (unsigned index = 0; index < count; ++index) {
            XWindowAttributes attributes;
            if (XGetWindowAttributes(display, children[index], &attributes) == 0) continue;
            if (attributes.override_redirect != 0 && attributes.map_state == IsViewable &&
                attributes.x == x && attributes.width == width && attributes.height == VirtualDesktop::height)
                found = children[index];
        }
        if (children != nullptr) XFree(children);
        XSync(display, 0);
        XSetErrorHandler(former);
        return found;
    }
    bool isOpen() {
        return waitUntil([&] { return overlay() != 0; });
    }
    bool isClosed() {
        return waitUntil([&] { return overlay() == 0; });
    }

    /// Opens the menu with the pointer there, and waits until it holds the keyboard; where its centre is.
    Position openAt(Position place) {
        client().warpPointer(place);
        trackball().click(xButton(opener));
        EXPECT_TRUE(isOpen());
        // A key that the menu does not know goes nowhere once the keyboard is held.
        EXPECT_TRUE(waitUntil([&] {
            client().forget();
            desktop().keyboard().keyStroke(client().keyCode(XK_F5));
            return !client().waitForStroke({XK_F5, 0}, std::chrono::milliseconds{60});
        }));
        return {std::clamp(place.x, margin, VirtualDesktop::width - margin),
                std::clamp(place.y, margin, VirtualDesktop::height - margin)};
    }
    /// The middle of an entry of so many.
    static Position entry(Position centre, int index, int count) {
        const double angle = 2 * std::numbers::pi * index / count - std::numbers::pi / 2;
        return {centre.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                centre.y + static_cast<int>(std::lround(radius * std::sin(angle)))};
    }
    /// Moves the trackball there and clicks.
    void clickAt(Position place) {
        const Position from = client().pointer();
        trackball().move(place.x - from.x, place.y - from.y);
        EXPECT_TRUE(waitUntil([&] { return client().pointer() == place; }));
        trackball().click(1);
    }
    [[nodiscard]] Window focus() {
        Window window = 0;
        int revert = 0;
        XGetInputFocus(client().connection().get(), &window, &revert);
        return window;
    }
    /// What was typed, without the keys that only tried whether the menu holds the keyboard.
    std::vector<KeyStroke> strokes() {
        auto all = client().strokes();
        std::erase(all, KeyStroke{XK_F5, 0});
        return all;
    }
    /// What is typed reaches the application again.
    void expectKeyboardFree() {
        client().forget();
        desktop().keyboard().keyStroke(client().keyCode(XK_a));
        EXPECT_TRUE(client().waitForStroke({XK_a, 0}));
    }

    Settings twoShortcuts() {
        return Settings()
            .map(opener, "Smart Button")
            .menuShortcut("Copy", keyC, control)
            .menuShortcut("Paste", keyV, control);
    }
};

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
    EXPECT_EQ(strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask}}));
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
    EXPECT_EQ(strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask}}));
    expectKeyboardFree();
}

TEST_F(SmartButtonTest, EscapeClosesTheMenu) {
    start(twoShortcuts());
    openAt({700, 440});
    desktop().keyboard().keyStroke(client().keyCode(XK_Escape));
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
    EXPECT_EQ(strokes(), (std::vector<KeyStroke>{{XK_a, 0}}));
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

TEST_F(SmartButtonTest, SecondPressOfTheButtonClosesTheMenu) {
    start(twoShortcuts());
    openAt({700, 440});
    trackball().click(xButton(opener));
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
    openAt({300, 300});
    trackball().click(xButton(opener));
    EXPECT_TRUE(isClosed());
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
        EXPECT_EQ(xrandr.waitForEnd(patience), 0) << readFile(desktop().folder() / "xrandr.output");
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
        EXPECT_EQ(xrandr.waitForEnd(patience), 0);
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
              .menuShortcut("Copy", keyC, control)
              .menuApplication("A rather long name of an application", "/usr/bin/xterm")
              .menuShortcut("Paste without formatting", keyV, control)
              .menuApplication("Web", "/usr/bin/xev")
              .menuShortcut("Donaudampfschifffahrtsgesellschaft", keyV, control)
              .menuApplication("Música y vídeo", "/usr/bin/xclock")
              .menuShortcut("Undo", 6, control)
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
    EXPECT_EQ(import.waitForEnd(patience), 0) << readFile(desktop().folder() / "import.output");
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
