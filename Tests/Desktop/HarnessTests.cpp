#include "Desktop/DesktopTest.hpp"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>

/// What the desktop does without the program: the ground that all other desktop tests stand on.
namespace trelvan::desktop {
namespace {

using HarnessTest = DesktopTest;

TEST_F(HarnessTest, ScreenHasItsKnownSize) {
    Display* display = client().connection().get();
    EXPECT_EQ(DisplayWidth(display, DefaultScreen(display)), VirtualDesktop::width);
    EXPECT_EQ(DisplayHeight(display, DefaultScreen(display)), VirtualDesktop::height);
}

TEST_F(HarnessTest, EveryButtonArrivesPressedAndReleased) {
    const std::vector<int> buttons{1, 2, 3, 8, 9, 10};
    for (const int button : buttons) {
        trackball().press(button);
        ASSERT_TRUE(client().waitForButton(Kind::buttonPress, static_cast<unsigned>(button)));
        EXPECT_EQ(client().count(Kind::buttonRelease, static_cast<unsigned>(button)), 0);
        trackball().release(button);
        ASSERT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
    EXPECT_EQ(client().buttonsPressed(), std::vector<unsigned>(buttons.begin(), buttons.end()));
}

TEST_F(HarnessTest, ButtonsOfBothPointersArriveAtAClientOfXInput2) {
    useClient(Protocol::xinput2);
    trackball().click(8);
    mouse().click(9);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{8, 9}));
}

TEST_F(HarnessTest, WheelNotchesArriveAsWheelButtons) {
    trackball().scrollVertical(2);
    trackball().scrollVertical(-3);
    trackball().scrollHorizontal(1);
    trackball().scrollHorizontal(-1);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{4, 4, 5, 5, 5, 6, 7}));
}

TEST_F(HarnessTest, MotionsAddUpToThePixel) {
    const Position from = client().pointer();
    const std::vector<Position> steps{{1, 0}, {-3, 2}, {17, -5}, {40, 40}, {0, -1}};
    Position to = from;
    for (const Position& step : steps) {
        trackball().move(step.x, step.y);
        to = {to.x + step.x, to.y + step.y};
    }
    EXPECT_EQ(passSentinel(), to);
    EXPECT_EQ(client().pointer(), to);
}

TEST_F(HarnessTest, KeysArriveWithTheHeldModifiers) {
    const std::vector<std::pair<KeySym, unsigned>> modifiers{
        {XK_Shift_L, ShiftMask}, {XK_Control_L, ControlMask}, {XK_Alt_L, Mod1Mask}, {XK_Super_L, Mod4Mask}};
    for (const auto& [key, mask] : modifiers) {
        client().forget();
        holdKey(key);
        desktop().keyboard().keyStroke(client().keyCode(XK_c));
        ASSERT_TRUE(client().waitForStroke({XK_c, mask}));
        releaseKey(key);
    }
}

TEST_F(HarnessTest, KeyboardHasTheMediaKeys) {
    for (const KeySym key :
         {XF86XK_AudioRaiseVolume, XF86XK_AudioLowerVolume, XF86XK_AudioMute, XF86XK_AudioPlay}) {
        EXPECT_NE(client().keyCode(key), 0);
    }
}

TEST_F(HarnessTest, ReleaseAllLetsHeldButtonsAndKeysGo) {
    trackball().press(8);
    holdKey(XK_Shift_L);
    EXPECT_TRUE(client().isAnythingHeld());
    desktop().reset();
    EXPECT_FALSE(client().isAnythingHeld());
}

TEST_F(HarnessTest, SecondDesktopGetsADisplayOfItsOwn) {
    std::filesystem::path folder;
    std::string lock;
    {
        VirtualDesktop second;
        folder = second.folder();
        lock = "/tmp/.X" + second.displayName().substr(1) + "-lock";
        EXPECT_NE(second.displayName(), desktop().displayName());
        EXPECT_TRUE(second.isAlive());
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_FALSE(std::filesystem::exists(lock));
    EXPECT_TRUE(desktop().isAlive());
}

}  // namespace
}  // namespace trelvan::desktop
