#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

namespace trelvan::desktop {
namespace {

/// The wheel's X buttons: 4 up, 5 down, 6 left, 7 right.
class ScrollTest : public DesktopTest {
  protected:
    using Buttons = std::vector<unsigned>;

    /// What the client receives for turns of the wheel by two up, one down, one left and one right.
    Buttons afterFourTurns() {
        trackball().scrollVertical(2);
        trackball().scrollVertical(-1);
        trackball().scrollHorizontal(1);
        trackball().scrollHorizontal(-1);
        passSentinel();
        return buttonsArrived();
    }
};

TEST_F(ScrollTest, WithPlainSettingsArrivesAsWithoutTheProgram) {
    start(Settings());
    EXPECT_EQ(afterFourTurns(), (Buttons{4, 4, 5, 6, 7}));
    for (const unsigned button : {4U, 5U, 6U, 7U}) {
        EXPECT_EQ(client().count(Kind::buttonPress, button), client().count(Kind::buttonRelease, button));
    }
}

TEST_F(ScrollTest, VerticalSpeedTwoDoublesTheVerticalWheelOnly) {
    start(Settings().set("trackball_scroll_speed_vertical", 2.0));
    EXPECT_EQ(afterFourTurns(), (Buttons{4, 4, 4, 4, 5, 5, 6, 7}));
}

TEST_F(ScrollTest, HorizontalSpeedTwoDoublesTheHorizontalWheelOnly) {
    start(Settings()
              .set("trackball_horizontal_scroll_enabled", true)
              .set("trackball_scroll_speed_horizontal", 2.0));
    EXPECT_EQ(afterFourTurns(), (Buttons{4, 4, 5, 6, 6, 7, 7}));
}

TEST_F(ScrollTest, HorizontalSpeedWithoutItsSwitchChangesNothing) {
    start(Settings().set("trackball_scroll_speed_horizontal", 3.0));
    EXPECT_EQ(afterFourTurns(), (Buttons{4, 4, 5, 6, 7}));
}

TEST_F(ScrollTest, SwappedDirectionTurnsBothAxesAround) {
    start(Settings().set("trackball_swap_scroll_direction", true));
    EXPECT_EQ(afterFourTurns(), (Buttons{5, 5, 4, 7, 6}));
}

TEST_F(ScrollTest, SlowWheelNeverVanishes) {
    start(Settings().set("trackball_scroll_speed_vertical", 0.2));
    EXPECT_EQ(afterFourTurns(), (Buttons{4, 4, 5, 6, 7}));
}

TEST_F(ScrollTest, SeveralNotchesInOneEventAreScaledTogether) {
    start(Settings().set("trackball_scroll_speed_vertical", 0.5));
    // 3 × 0.5 rounds away from zero to 2; -4 × 0.5 is -2.
    trackball().scrollVerticalAtOnce(3);
    trackball().scrollVerticalAtOnce(-4);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (Buttons{4, 4, 5, 5}));
}

TEST_F(ScrollTest, MappedWheelActsAndDoesNotScroll) {
    start(Settings().map(-100, "Deshacer").map(-101, "Copiar"));
    trackball().scrollVertical(1);
    EXPECT_TRUE(client().waitForStroke({XK_z, ControlMask}));
    trackball().scrollVertical(-1);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_z, ControlMask}, {XK_c, ControlMask}}));
    EXPECT_EQ(buttonsArrived(), Buttons{});
}

TEST_F(ScrollTest, QuickTurnOfAMappedWheelActsForEveryNotch) {
    start(Settings().map(-100, "Deshacer").map(-101, "Copiar"));
    trackball().scrollVertical(8);
    trackball().scrollVertical(-8);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() >= 16; }));
    passSentinel();
    std::vector<KeyStroke> expected(8, KeyStroke{XK_z, ControlMask});
    expected.insert(expected.end(), 8, KeyStroke{XK_c, ControlMask});
    EXPECT_EQ(client().strokes(), expected);
}

TEST_F(ScrollTest, OneMappedDirectionLeavesTheOtherScrolling) {
    start(Settings().map(-100, "Deshacer"));
    trackball().scrollVertical(-2);
    trackball().scrollVertical(1);
    EXPECT_TRUE(client().waitForStroke({XK_z, ControlMask}));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (Buttons{5, 5}));
}

}  // namespace
}  // namespace trelvan::desktop
