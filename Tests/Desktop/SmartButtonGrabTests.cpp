#include "Desktop/SmartButtonTest.hpp"

#include <csignal>
#include <functional>
#include <memory>

/// The radial menu holds nothing that another program may need: not the keyboard, not the pointer, and of the
/// keys only its own while it is shown.
namespace trelvan::desktop {
namespace {

constexpr Position middle{700, 440};
constexpr int copyButton = 4;
constexpr int returnButton = 6;
constexpr int keyReturn = 36;
/// The menu, the keys and the devices are away within about a second of the next input, on a machine that
/// others use too.
constexpr std::chrono::milliseconds soon{4000};
constexpr auto takenAgain = "EventTap reactivado tras deshabilitación del sistema";

class SmartButtonGrabTest : public SmartButtonTest {
  protected:
    Settings menuAndKeys() {
        return twoShortcuts()
            .map(copyButton, "Copiar")
            .map(returnButton, "Atajo Personalizado",
                 {{"shortcut", {{"keyCode", keyReturn}, {"modifiersRawValue", 0}, {"displayString", "↩"}}}});
    }
    void type(KeySym key) { desktop().keyboard().keyStroke(client().keyCode(key)); }
    void escape() {
        type(XK_Escape);
        EXPECT_TRUE(isClosed());
    }
    bool isGoneSoon() {
        return waitUntil([&] { return overlay() == 0; }, soon);
    }
    /// Switches a lock key on until the end of the block.
    class Lock {
      public:
        Lock(SmartButtonGrabTest& test, KeySym key) : press_([&test, key] { test.type(key); }) { press_(); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock() { press_(); }

      private:
        std::function<void()> press_;
    };
    /// The first monitor is the left half of the screen, the second the right one.
    void splitScreen(bool on) {
        const auto xrandr = [&](std::vector<std::string> arguments) {
            arguments.insert(arguments.begin(), "/usr/bin/xrandr");
            ChildProcess process(Launch{.arguments = std::move(arguments),
                                        .environment = desktop().environment(),
                                        .directory = desktop().folder(),
                                        .output = desktop().folder() / "xrandr.output",
                                        .errors = {}});
            EXPECT_EQ(process.waitForEnd(timeout), 0) << readFile(desktop().folder() / "xrandr.output");
        };
        if (on) {
            xrandr({"--setmonitor", "left", "720/190x900/240+0+0", "DUMMY0"});
            xrandr({"--setmonitor", "right", "720/190x900/240+720+0", "none"});
        } else {
            for (const char* name : {"left", "right"}) xrandr({"--delmonitor", name});
        }
    }
};

TEST_F(SmartButtonGrabTest, OtherProgramsMayTakeKeyboardAndPointerWhileTheMenuIsOpen) {
    start(menuAndKeys());
    openAt(middle);
    const XConnection locker(desktop().displayName());
    Display* display = locker.get();
    EXPECT_EQ(XGrabKeyboard(display, locker.root(), False, GrabModeAsync, GrabModeAsync, CurrentTime),
              GrabSuccess);
    EXPECT_EQ(XGrabPointer(display, locker.root(), False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None,
                           None, CurrentTime),
              GrabSuccess);
    // What is typed is now the other program's.
    type(XK_Escape);
    XUngrabKeyboard(display, CurrentTime);
    XUngrabPointer(display, CurrentTime);
    XSync(display, False);
    EXPECT_NE(overlay(), 0U);
    escape();
}

TEST_F(SmartButtonGrabTest, KeysThatAreNotTheMenusReachTheApplication) {
    start(menuAndKeys());
    openAt(middle);
    client().forget();
    type(XK_a);
    // There are two entries.
    type(XK_3);
    holdKey(XK_Control_L);
    type(XK_1);
    releaseKey(XK_Control_L);
    EXPECT_TRUE(client().waitForStroke({XK_1, ControlMask}, soon));
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_a, 0}, {XK_3, 0}, {XK_1, ControlMask}}));
    EXPECT_NE(overlay(), 0U);
    escape();
}

TEST_F(SmartButtonGrabTest, KeysPostedWhileTheMenuIsOpenReachTheApplication) {
    start(menuAndKeys());
    openAt(middle);
    client().forget();
    trackball().click(xButton(copyButton));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}, soon));
    // One of the menu's own.
    for (int round = 0; round < 3; ++round) {
        client().forget();
        trackball().click(xButton(returnButton));
        EXPECT_TRUE(client().waitForStroke({XK_Return, 0}, soon));
        EXPECT_NE(overlay(), 0U);
    }
    EXPECT_TRUE(waitUntil([&] { return isTaken(XK_Return); }));
    client().forget();
    type(XK_Right);
    type(XK_Return);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}, soon));
    EXPECT_TRUE(isClosed());
}

TEST_F(SmartButtonGrabTest, KeyPostedWhileAKeyOfTheMenuIsHeldReachesTheApplication) {
    start(menuAndKeys());
    openAt(middle);
    client().forget();
    holdKey(XK_Right);
    trackball().click(xButton(copyButton));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}, soon));
    releaseKey(XK_Right);
    // A key with Control is none of the menu's.
    EXPECT_TRUE(waitUntil([&] { return isNoKeyDown(); }));
    escape();
}

TEST_F(SmartButtonGrabTest, KeysOfTheMenuWorkWithLocksOn) {
    start(menuAndKeys());
    const std::vector<std::vector<KeySym>> together{
        {XK_Caps_Lock}, {XK_Num_Lock}, {XK_Caps_Lock, XK_Num_Lock}};
    for (const auto& locks : together) {
        std::vector<std::unique_ptr<Lock>> on;
        for (const KeySym lock : locks) on.push_back(std::make_unique<Lock>(*this, lock));
        openAt(middle);
        client().forget();
        type(XK_2);
        EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}, soon));
        EXPECT_TRUE(isClosed());
        EXPECT_EQ(client().strokes().size(), 1U);
        openAt(middle);
        escape();
    }
}

TEST_F(SmartButtonGrabTest, KeypadIsDigitsWithNumLockAndArrowsWithout) {
    start(menuAndKeys());
    const int keypadRight = client().keyCode(XK_KP_Right);
    const int keypadTwo = client().keyCode(XK_KP_Down);
    {
        const Lock digits(*this, XK_Num_Lock);
        openAt(middle);
        client().forget();
        desktop().keyboard().keyStroke(keypadTwo);
        EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}, soon));
        EXPECT_TRUE(isClosed());
    }
    openAt(middle);
    client().forget();
    desktop().keyboard().keyStroke(keypadRight);
    desktop().keyboard().keyStroke(keypadTwo);
    desktop().keyboard().keyStroke(client().keyCode(XK_KP_Enter));
    EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}, soon));
    EXPECT_TRUE(isClosed());
}

TEST_F(SmartButtonGrabTest, ClosedMenuHoldsNoKey) {
    start(menuAndKeys());
    const std::vector<KeySym> keys{XK_1,   XK_2,      XK_Left,     XK_Right, XK_Up,     XK_Down,
                                   XK_Tab, XK_Return, XK_KP_Enter, XK_space, XK_Escape, XK_KP_Left};
    const std::vector<unsigned> locks{0, LockMask, Mod2Mask, LockMask | Mod2Mask};
    openAt(middle);
    for (const KeySym key : keys) {
        for (const unsigned lock : locks) {
            if (key == XK_KP_Left && (lock & Mod2Mask) != 0) continue;
            EXPECT_TRUE(isTaken(key, lock)) << XKeysymToString(key) << " " << lock;
        }
    }
    escape();
    for (const KeySym key : keys) {
        for (const unsigned lock : locks) {
            EXPECT_TRUE(waitUntil([&] { return !isTaken(key, lock); }))
                << XKeysymToString(key) << " " << lock;
        }
    }
}

TEST_F(SmartButtonGrabTest, ClickOnTheOtherMonitorClosesTheMenuAndIsTheApplications) {
    splitScreen(true);
    start(menuAndKeys());
    client().warpPointer({1000, 440});
    trackball().click(xButton(opener));
    EXPECT_TRUE(waitUntil([&] { return overlay(720, 720) != 0; }));
    client().forget();
    // The wheel is no click.
    const Position place = client().middle();
    client().warpPointer({std::min(place.x, 600), place.y});
    trackball().click(4);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 4));
    EXPECT_NE(overlay(720, 720), 0U);
    trackball().click(1);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 1));
    EXPECT_TRUE(waitUntil([&] { return overlay(720, 720) == 0; }));
    splitScreen(false);
}

TEST_F(SmartButtonGrabTest, ProgramStoppedWithTheMenuOpenLosesMenuKeysAndDevicesAfterAClick) {
    start(menuAndKeys());
    openAt(middle);
    DesktopTest::program().signal(SIGSTOP);
    trackball().click(1);
    EXPECT_TRUE(isGoneSoon());
    EXPECT_TRUE(
        waitUntil([&] { return !isTaken(XK_Escape) && !isTaken(XK_1) && !isTaken(XK_Return); }, soon));
    client().warpPointer(client().middle());
    client().forget();
    trackball().click(1);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 1, 1, soon));
    for (const KeySym key : std::vector<KeySym>{XK_1, XK_Return, XK_Escape, XK_a}) {
        type(key);
        EXPECT_TRUE(client().waitForStroke({key, 0}, soon));
    }
    client().forget();
    DesktopTest::program().signal(SIGCONT);
    EXPECT_TRUE(DesktopTest::program().waitForLine(takenAgain));
    passSentinel();
    EXPECT_TRUE(isClosed());
    type(XK_1);
    EXPECT_TRUE(client().waitForStroke({XK_1, 0}, soon));
    // It opens again, keys and all.
    openAt(middle);
    client().forget();
    type(XK_2);
    EXPECT_TRUE(client().waitForStroke({XK_v, ControlMask}, soon));
    EXPECT_TRUE(isClosed());
}

TEST_F(SmartButtonGrabTest, ProgramStoppedWithTheMenuOpenLosesItAfterAKey) {
    start(menuAndKeys());
    for (const KeySym key : std::vector<KeySym>{XK_a, XK_Escape}) {
        openAt(middle);
        // Whatever the guard asked for the click has been answered.
        waitUntil([] { return false; }, std::chrono::milliseconds{1200});
        DesktopTest::program().signal(SIGSTOP);
        type(key);
        EXPECT_TRUE(isGoneSoon());
        EXPECT_TRUE(waitUntil([&] { return !isTaken(XK_1); }, soon));
        client().forget();
        type(XK_1);
        EXPECT_TRUE(client().waitForStroke({XK_1, 0}, soon));
        DesktopTest::program().signal(SIGCONT);
        EXPECT_TRUE(DesktopTest::program().waitForLine(takenAgain));
        EXPECT_TRUE(waitUntil([&] {
            client().forget();
            trackball().click(xButton(copyButton));
            return client().waitForStroke({XK_c, ControlMask}, std::chrono::milliseconds{100});
        }));
    }
}

TEST_F(SmartButtonGrabTest, ProgramStoppedWhileAButtonIsHeldOnTheMenuLeavesThePointerToOthers) {
    start(menuAndKeys());
    openAt(middle);
    trackball().press(1);
    // The press is the menu's once it has come back through the server.
    EXPECT_TRUE(waitUntil([&] { return client().isAnythingHeld(); }));
    DesktopTest::program().signal(SIGSTOP);
    trackball().move(1, 0);
    EXPECT_TRUE(isGoneSoon());
    trackball().release(1);
    const XConnection other(desktop().displayName());
    EXPECT_TRUE(waitUntil(
        [&] {
            return XGrabPointer(other.get(), other.root(), False, ButtonPressMask, GrabModeAsync,
                                GrabModeAsync, None, None, CurrentTime) == GrabSuccess;
        },
        soon));
    XUngrabPointer(other.get(), CurrentTime);
    XSync(other.get(), False);
    DesktopTest::program().signal(SIGCONT);
    EXPECT_TRUE(DesktopTest::program().waitForLine(takenAgain));
}

}  // namespace
}  // namespace trelvan::desktop
