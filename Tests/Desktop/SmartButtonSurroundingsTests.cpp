#include "Desktop/Harness/FakeService.hpp"
#include "Desktop/SmartButtonTest.hpp"

#include <X11/Xutil.h>
#include <X11/extensions/Xrandr.h>

#include <csignal>
#include <fstream>

/// The radial menu with what is around it: compositors, monitors, the desktop's wishes, other programs'
/// grabs.
namespace trelvan::desktop {
namespace {

constexpr Position middle{700, 440};
constexpr const char* portal = "org.freedesktop.portal.Desktop";
/// On the ring, where two entries leave it empty.
constexpr Position onRing{middle.x + 180, middle.y};
/// On the screen, beside the ring, over the application's window.
constexpr Position besideRing{middle.x - 300, middle.y};

class SmartButtonSurroundingsTest : public SmartButtonTest {
  protected:
    Display* display() { return client().connection().get(); }

    /// The colour of a place on the screen, 0xRRGGBB.
    unsigned long pixelAt(Position place) {
        XImage* image =
            XGetImage(display(), client().connection().root(), place.x, place.y, 1, 1, AllPlanes, ZPixmap);
        if (image == nullptr) return 0;
        const unsigned long pixel = XGetPixel(image, 0, 0) & 0xFFFFFF;
        XDestroyImage(image);
        return pixel;
    }
    static int brightness(unsigned long pixel) {
        return static_cast<int>((pixel >> 16 & 0xFF) + (pixel >> 8 & 0xFF) + (pixel & 0xFF)) / 3;
    }
    /// The colour that the place has once it does not change any more.
    unsigned long settledPixelAt(Position place) {
        unsigned long last = pixelAt(place);
        int same = 0;
        waitUntil([&] {
            const unsigned long now = pixelAt(place);
            same = now == last ? same + 1 : 0;
            last = now;
            return same >= 100;
        });
        return last;
    }

    void press() { trackball().click(xButton(opener)); }
    void escape() { desktop().keyboard().keyStroke(client().keyCode(XK_Escape)); }
    /// Neither what the first painting showed nor what comes later is missed.
    std::vector<unsigned long> coloursOfOpening() {
        client().warpPointer(middle);
        std::vector<unsigned long> colours{pixelAt(onRing)};
        press();
        EXPECT_TRUE(waitUntil([&] {
            const unsigned long now = pixelAt(onRing);
            if (now != colours.back()) colours.push_back(now);
            return colours.size() > 1;
        }));
        int same = 0;
        waitUntil([&] {
            const unsigned long now = pixelAt(onRing);
            same = now == colours.back() ? same + 1 : 0;
            if (same == 0) colours.push_back(now);
            return same >= 100;
        });
        return colours;
    }

    /// A service that answers for the desktop's settings, which the program has asked when this returns.
    void startWith(FakeService& settings) {
        start(twoShortcuts());
        EXPECT_TRUE(settings.waitForCall(
            "/org/freedesktop/portal/desktop Read org.gnome.desktop.interface enable-animations"));
        // The answer is on its way: this call is answered after it on the same pipeline.
        passSentinel();
    }
};

TEST_F(SmartButtonSurroundingsTest, WithoutACompositor_TheWindowShowsTheDesktopsPicture) {
    start(twoShortcuts());
    const unsigned long before = pixelAt(besideRing);
    openAt(middle);
    XWindowAttributes attributes{};
    ASSERT_NE(XGetWindowAttributes(display(), overlay(), &attributes), 0);
    EXPECT_EQ(attributes.depth, DefaultDepth(display(), DefaultScreen(display())));
    // A little darker, and far from black.
    const unsigned long during = settledPixelAt(besideRing);
    EXPECT_LT(brightness(during), brightness(before));
    EXPECT_GT(brightness(during), brightness(before) / 2);
    escape();
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(waitUntil([&] { return pixelAt(besideRing) == before; }));
}

TEST_F(SmartButtonSurroundingsTest, WithACompositor_TheWindowIsTranslucent) {
    // Whoever owns this selection puts the windows together.
    const Atom compositor = client().connection().atom("_NET_WM_CM_S0");
    XSetSelectionOwner(display(), compositor, client().window(), CurrentTime);
    ASSERT_EQ(XGetSelectionOwner(display(), compositor), client().window());
    start(twoShortcuts());
    openAt(middle);
    XWindowAttributes attributes{};
    ASSERT_NE(XGetWindowAttributes(display(), overlay(), &attributes), 0);
    EXPECT_EQ(attributes.depth, 32);
    escape();
    EXPECT_TRUE(isClosed());
    XSetSelectionOwner(display(), compositor, None, CurrentTime);
}

TEST_F(SmartButtonSurroundingsTest, MenuFadesIn) {
    start(twoShortcuts());
    // On a busy machine a fade may pass between two looks.
    EXPECT_TRUE(waitUntil([&] {
        const bool wasSeen = coloursOfOpening().size() > 2;
        escape();
        EXPECT_TRUE(isClosed());
        return wasSeen;
    }));
}

TEST_F(SmartButtonSurroundingsTest, DesktopThatWantsNoAnimations_GetsTheMenuAtOnce) {
    FakeService settings(desktop(), portal, {"Read=false"});
    startWith(settings);
    for (int opening = 0; opening < 3; ++opening) {
        EXPECT_EQ(coloursOfOpening().size(), 2U);
        escape();
        EXPECT_TRUE(isClosed());
    }
}

TEST_F(SmartButtonSurroundingsTest, DesktopThatWantsDarkWindows_GetsADarkMenu) {
    start(twoShortcuts());
    openAt(middle);
    const int light = brightness(settledPixelAt(onRing));
    escape();
    EXPECT_TRUE(isClosed());
    DesktopTest::program().signal(SIGTERM);
    EXPECT_TRUE(DesktopTest::program().waitForEnd().has_value());
    FakeService settings(desktop(), portal, {"Read=number:1"});
    startWith(settings);
    openAt(middle);
    const int dark = brightness(settledPixelAt(onRing));
    EXPECT_GT(light, 200);
    EXPECT_LT(dark, 100);
}

TEST_F(SmartButtonSurroundingsTest, KeyThatChooses_LeavesNothingOfItselfToTheApplication) {
    start(Settings().map(opener, "Smart Button").menuApplication("Mine", program("mine")));
    openAt(middle);
    client().forget();
    const int one = client().keyCode(XK_1);
    desktop().keyboard().keyDown(one);
    // For so long that it repeats itself.
    waitUntil([] { return false; }, std::chrono::milliseconds{800});
    EXPECT_FALSE(std::filesystem::exists(witness("mine")));
    desktop().keyboard().keyUp(one);
    EXPECT_TRUE(hasRun("mine"));
    EXPECT_TRUE(isClosed());
    expectKeyboardFree();
    for (const ClientEvent& event : client().events()) EXPECT_NE(event.key, static_cast<KeySym>(XK_1));
}

TEST_F(SmartButtonSurroundingsTest, OtherProgramWithTheKeyboard_LeavesTheMenuToThePointer) {
    start(twoShortcuts());
    ASSERT_EQ(XGrabKeyboard(display(), client().window(), True, GrabModeAsync, GrabModeAsync, CurrentTime),
              GrabSuccess);
    client().warpPointer(middle);
    press();
    EXPECT_TRUE(isOpen());
    client().forget();
    clickAt(entry(middle, 0, 2));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_TRUE(isClosed());
    XUngrabKeyboard(display(), CurrentTime);
}

TEST_F(SmartButtonSurroundingsTest, OtherProgramWithThePointer_LeavesTheMenuToTheKeyboard) {
    start(twoShortcuts());
    ASSERT_EQ(XGrabPointer(display(), client().window(), False, ButtonPressMask, GrabModeAsync, GrabModeAsync,
                           None, None, CurrentTime),
              GrabSuccess);
    openAt(middle);
    escape();
    EXPECT_TRUE(isClosed());
    XUngrabPointer(display(), CurrentTime);
}

TEST_F(SmartButtonSurroundingsTest, KilledProgram_LeavesThePointerToTheApplications) {
    start(twoShortcuts());
    openAt(middle);
    DesktopTest::program().signal(SIGKILL);
    EXPECT_TRUE(DesktopTest::program().waitForEnd().has_value());
    EXPECT_TRUE(isClosed());
    client().warpPointer(client().middle());
    client().forget();
    trackball().click(1);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 1));
}

TEST_F(SmartButtonSurroundingsTest, ImageOfTheUser_IsShownInsteadOfTheApplicationsIcon) {
    const auto image = desktop().folder() / "red.png";
    ChildProcess convert(Launch{.arguments = {"/usr/bin/convert", "-size", "900x900", "xc:#ff0000", image},
                                .environment = desktop().environment(),
                                .directory = desktop().folder(),
                                .output = desktop().folder() / "convert.output",
                                .errors = {}});
    ASSERT_EQ(convert.waitForEnd(timeout), 0);
    start(Settings().map(opener, "Smart Button").menuApplication("Red", program("red"), image));
    openAt(middle);
    EXPECT_TRUE(waitUntil([&] { return pixelAt(entry(middle, 0, 1)) == 0xFF0000; }))
        << std::hex << pixelAt(entry(middle, 0, 1));
    escape();
    EXPECT_TRUE(isClosed());
}

/// The program's own memory in KiB, as the kernel counts it.
long residentMemory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    long memory = 0;
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") status >> memory;
    }
    return memory;
}

TEST_F(SmartButtonSurroundingsTest, MemoryOfTheMenu_IsGivenBack) {
    start(twoShortcuts());
    const auto openAndClose = [&](int times) {
        for (int count = 0; count < times; ++count) {
            client().warpPointer(middle);
            press();
            EXPECT_TRUE(isOpen());
            press();
            EXPECT_TRUE(isClosed());
            // No faster than a hand: what fires too often is stopped.
            waitUntil([] { return false; }, std::chrono::milliseconds{100});
        }
    };
    openAndClose(10);
    const long settled = residentMemory(DesktopTest::program().id());
    openAndClose(25);
    ASSERT_GT(settled, 0);
    // A picture of the screen alone has 5,000. The window is away a moment before its memory.
    EXPECT_TRUE(waitUntil([&] { return residentMemory(DesktopTest::program().id()) - settled < 3000; }))
        << settled << " KiB grew to " << residentMemory(DesktopTest::program().id());
}

/// Two real outputs of the graphics card, side by side.
class SmartButtonOutputsTest : public SmartButtonSurroundingsTest {
  protected:
    static constexpr int half = VirtualDesktop::width / 2;

    void SetUp() override {
        SmartButtonSurroundingsTest::SetUp();
        run({"--newmode", "half", "60", "720", "760", "830", "940", "900", "903", "909", "934"});
        run({"--addmode", "DUMMY0", "half"});
        run({"--addmode", "DUMMY1", "half"});
        run({"--output", "DUMMY0", "--mode", "half", "--pos", "0x0", "--primary", "--output", "DUMMY1",
             "--mode", "half", "--pos", "720x0"});
        int count = 0;
        XRRFreeMonitors(XRRGetMonitors(display(), client().connection().root(), True, &count));
        // How many outputs it has is up to the version of the dummy driver; older ones have a single one, and
        // then two monitors on it are all that can be tested.
        if (count != 2) GTEST_SKIP() << "the graphics driver has one output only";
    }
    void TearDown() override {
        run({"--output", "DUMMY1", "--off", "--output", "DUMMY0", "--mode", "1440x900"});
        run({"--delmode", "DUMMY0", "half"});
        run({"--delmode", "DUMMY1", "half"});
        run({"--rmmode", "half"});
        SmartButtonSurroundingsTest::TearDown();
    }
    void run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "/usr/bin/xrandr");
        ChildProcess xrandr(Launch{.arguments = std::move(arguments),
                                   .environment = desktop().environment(),
                                   .directory = desktop().folder(),
                                   .output = desktop().folder() / "xrandr.output",
                                   .errors = {}});
        EXPECT_EQ(xrandr.waitForEnd(timeout), 0) << readFile(desktop().folder() / "xrandr.output");
    }
    bool isOpenAt(int x) {
        return waitUntil([&] { return overlay(x, half) != 0; });
    }
    bool isClosedAt(int x) {
        return waitUntil([&] { return overlay(x, half) == 0; });
    }
};

TEST_F(SmartButtonOutputsTest, MenuOpensOnTheOutputUnderThePointer) {
    start(twoShortcuts());
    for (const int x : {0, half}) {
        client().warpPointer({x + 360, 440});
        press();
        EXPECT_TRUE(isOpenAt(x));
        client().forget();
        clickAt({x + 360, 440 - radius});
        EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
        EXPECT_TRUE(isClosedAt(x));
    }
}

TEST_F(SmartButtonOutputsTest, PointerInTheUppermostRow_IsOnItsOutput) {
    start(twoShortcuts());
    client().warpPointer({half + 360, 0});
    press();
    EXPECT_TRUE(isOpenAt(half));
    press();
    EXPECT_TRUE(isClosedAt(half));
}

TEST_F(SmartButtonOutputsTest, ClickOnTheOtherOutput_ClosesTheMenu) {
    start(twoShortcuts());
    client().warpPointer({half + 360, 440});
    press();
    EXPECT_TRUE(isOpenAt(half));
    clickAt({300, 440});
    EXPECT_TRUE(isClosedAt(half));
    expectKeyboardFree();
}

TEST_F(SmartButtonOutputsTest, OutputThatChanges_TakesItsMenuAway) {
    start(twoShortcuts());
    client().warpPointer({half + 360, 440});
    press();
    EXPECT_TRUE(isOpenAt(half));
    run({"--output", "DUMMY1", "--off"});
    EXPECT_TRUE(isClosedAt(half));
    expectKeyboardFree();
}

}  // namespace
}  // namespace trelvan::desktop
