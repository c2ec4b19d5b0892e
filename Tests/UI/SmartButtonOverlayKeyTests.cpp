#include "UI/SmartButtonOverlayTest.hpp"

/// What keys do.
namespace trelvan {
namespace {

using test::Names;
using test::numbered;
using test::SmartButtonOverlayTest;

TEST_F(SmartButtonOverlayTest, NumberKeysLaunchTheirEntries) {
    open(numbered(8));
    press(MenuKey::entry1);
    EXPECT_EQ(launched, Names{"Entry 1"});
    open(numbered(8));
    press(MenuKey::entry8);
    EXPECT_EQ(launched, (Names{"Entry 1", "Entry 8"}));
}

TEST_F(SmartButtonOverlayTest, NumberKeyWithoutAnEntryDoesNothing) {
    open(numbered(2));
    press(MenuKey::entry3);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, KeyThatChooses_DoesSoOnceItIsReleased) {
    open(numbered(2));
    input.keyDown(MenuKey::entry2);
    time.runFor(Seconds{10});
    EXPECT_EQ(launched, Names{});
    EXPECT_TRUE(overlay->entries()[1]->isDown());
    input.keyUp(MenuKey::entry2);
    EXPECT_EQ(launched, Names{});
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 2"});
    EXPECT_FALSE(overlay->entries()[1]->isDown());
}

TEST_F(SmartButtonOverlayTest, RepetitionOfAHeldKey_IsNoRelease) {
    open(numbered(2));
    input.keyDown(MenuKey::entry2);
    for (int count = 0; count < 20; ++count) {
        input.keyUp(MenuKey::entry2);
        time.runFor(Seconds{0.002});
        input.keyDown(MenuKey::entry2);
        time.runFor(Seconds{0.028});
    }
    EXPECT_EQ(launched, Names{});
    input.keyUp(MenuKey::entry2);
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 2"});
}

TEST_F(SmartButtonOverlayTest, ReleaseOfAKeyThatWasDownBefore_DoesNothing) {
    open(numbered(2));
    input.keyUp(MenuKey::leave);
    input.keyUp(MenuKey::entry1);
    time.runFor(releaseTime);
    EXPECT_EQ(dismissals, 0);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, AnotherKeyPressedMeanwhile_TakesTheFirstBack) {
    open(numbered(2));
    input.keyDown(MenuKey::entry1);
    input.keyDown(MenuKey::leave);
    EXPECT_FALSE(overlay->entries()[0]->isDown());
    input.keyUp(MenuKey::entry1);
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{});
    input.keyUp(MenuKey::leave);
    time.runFor(releaseTime);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(SmartButtonOverlayTest, AnotherKeyRightAfterTheRelease_FindsItDone) {
    open(numbered(2));
    input.keyDown(MenuKey::entry1);
    input.keyUp(MenuKey::entry1);
    input.keyDown(MenuKey::entry2);
    EXPECT_EQ(launched, Names{"Entry 1"});
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 1"});
}

TEST_F(SmartButtonOverlayTest, MenuThatGoesRightAfterARelease_ChoosesNothing) {
    open(numbered(1));
    input.keyDown(MenuKey::entry1);
    input.keyUp(MenuKey::entry1);
    overlay->vanish();
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{});
}

TEST_F(SmartButtonOverlayTest, ArrowsMoveTheChoiceAndReturnLaunchesIt) {
    open(numbered(4));
    press(MenuKey::choose);
    EXPECT_EQ(launched, Names{});
    press(MenuKey::right);
    EXPECT_EQ(overlay->current(), 1U);
    EXPECT_TRUE(overlay->entries()[1]->isCurrent());
    press(MenuKey::down);
    EXPECT_EQ(overlay->current(), 2U);
    EXPECT_FALSE(overlay->entries()[1]->isCurrent());
    // Nothing lies below.
    press(MenuKey::down);
    EXPECT_EQ(overlay->current(), 2U);
    press(MenuKey::choose);
    EXPECT_EQ(launched, Names{"Entry 3"});
}

TEST_F(SmartButtonOverlayTest, ArrowTowardsNothing_ChoosesTheFirstEntry) {
    open(numbered(1));
    press(MenuKey::down);
    EXPECT_EQ(overlay->current(), 0U);
}

TEST_F(SmartButtonOverlayTest, TabGoesThroughEntriesAndControls) {
    open(numbered(2));
    for (const std::size_t expected : {0U, 1U, 2U, 3U, 4U, 0U}) {
        press(MenuKey::next);
        EXPECT_EQ(overlay->current(), expected);
    }
    for (int count = 0; count < 4; ++count) press(MenuKey::next);
    EXPECT_EQ(overlay->current(), 4U);
    press(MenuKey::choose);
    EXPECT_EQ(edits, 1);
}

TEST_F(SmartButtonOverlayTest, KeyboardAndPointer_DoNotBothShowAChoice) {
    open(numbered(4));
    enter(overlay->entries()[2]);
    EXPECT_TRUE(overlay->entries()[2]->isHovered());
    press(MenuKey::up);
    EXPECT_FALSE(overlay->entries()[2]->isHovered());
    EXPECT_TRUE(overlay->entries()[0]->isCurrent());
    enter(overlay->entries()[3]);
    EXPECT_FALSE(overlay->entries()[0]->isCurrent());
    EXPECT_EQ(overlay->current(), std::nullopt);
}

TEST_F(SmartButtonOverlayTest, EscapeDismisses) {
    open(numbered(1));
    press(MenuKey::leave);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(SmartButtonOverlayTest, KeyWhoseReleaseWasLost_ChoosesWhenItIsPressedAgain) {
    open(numbered(2));
    input.keyDown(MenuKey::entry1);
    input.keyDown(MenuKey::entry1);
    input.keyUp(MenuKey::entry1);
    time.runFor(releaseTime);
    EXPECT_EQ(launched, Names{"Entry 1"});
}

TEST_F(SmartButtonOverlayTest, KeysAreGivenBackBeforeAnEntryIsLaunched) {
    open(numbered(2));
    bool wasOpen = true;
    onLaunch = [&] { wasOpen = input.isOpen(); };
    press(MenuKey::entry2);
    EXPECT_EQ(launched, Names{"Entry 2"});
    EXPECT_FALSE(wasOpen);
}

}  // namespace
}  // namespace trelvan
