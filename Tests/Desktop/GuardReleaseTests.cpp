#include "Desktop/GuardTest.hpp"

#include <csignal>

/// What the program had down when it was stopped or killed goes up.
namespace trelvan::desktop {
namespace {

TEST_F(GuardTest, ButtonsHeldWhenTheProgramStopsAreReleased) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {1, 9, highButton}) trackball().press(button);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    program().signal(SIGSTOP);
    moveUntilFree();
    for (const unsigned button : {1U, 9U, 12U}) {
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, button)) << button;
    }
    trackball().releaseAll();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    for (const int button : {9, 10, highButton}) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
    expectServed();
}

TEST_F(GuardTest, ShortcutInTheMiddleOfWhichTheProgramStopsIsReleased) {
    start(longShortcut());
    stopInTheMiddleOfAShortcut();
    moveUntilFree();
    expectNothingHeld();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    expectNothingHeld();
}

TEST_F(GuardTest, ProgramKilledWithButtonsHeldLeavesNothingHeld) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {1, 9, highButton}) trackball().press(button);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    // Back on the pointer, the trackball holds them itself until the user lets them go.
    trackball().releaseAll();
    for (const unsigned button : {1U, 9U, 12U}) {
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, button)) << button;
    }
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramKilledInTheMiddleOfAShortcutLeavesNothingHeld) {
    start(longShortcut());
    stopInTheMiddleOfAShortcut();
    program().signal(SIGKILL);
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramToldToEndInTheMiddleOfAShortcutLeavesNothingHeld) {
    start(longShortcut());
    trackball().click(extra);
    ASSERT_TRUE(client().waitFor([](const auto& all) { return !all.empty(); }));
    program().signal(SIGTERM);
    ASSERT_TRUE(program().waitForEnd().has_value());
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramKilledWithAKeyPutBackLeavesNothingHeld) {
    start(Settings().map(
        3, "Copiar", {{"functionSlots", 2}, {"secondaryTrigger1", "Shift"}, {"secondaryAction", "Pegar"}}));
    holdKey(XK_Shift_L);
    trackball().click(extra);
    ASSERT_TRUE(client().waitForStroke({XK_v, ControlMask}));
    passSentinel();
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    releaseKey(XK_Shift_L);
    expectNothingHeld();
    // On the XTEST device too: its next press would be none otherwise.
    start(Settings().map(
        3, "Atajo Personalizado",
        {{"shortcut", {{"keyCode", 40}, {"modifiersRawValue", 0x20000}, {"displayString", "⇧K"}}}}));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_k, ShiftMask}));
}

TEST_F(GuardTest, NextStartReleasesWhatAProgramKilledWithItsGuardLeft) {
    start(longShortcut());
    trackball().press(highButton);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    stopInTheMiddleOfAShortcut();
    ::kill(guard(), SIGKILL);
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    trackball().releaseAll();
    EXPECT_TRUE(client().isAnythingHeld());
    EXPECT_EQ(client().count(Kind::buttonRelease, highButton), 0);

    start(Settings().map(3, "Copiar"));
    expectNothingHeld();
    EXPECT_TRUE(program().waitForLine("Se soltó lo que una ejecución anterior dejó pulsado"));
    expectServed();
    for (const int button : {10, highButton}) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
}

}  // namespace
}  // namespace trelvan::desktop
