#include "Platform/Linux/Tap/MenuKeyTable.hpp"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <vector>

namespace trelvan {
namespace {

constexpr int somewhere = 60;

TEST(MenuKeyTableTest, KeysOfTheMenu_AreKnownOnBothPartsOfTheKeyboard) {
    EXPECT_EQ(menuKeyOf(somewhere, XK_Left, XK_Left), MenuKey::left);
    EXPECT_EQ(menuKeyOf(somewhere, XK_KP_Left, XK_KP_4), MenuKey::left);
    EXPECT_EQ(menuKeyOf(somewhere, XK_KP_4, XK_KP_Left), MenuKey::entry4);
    EXPECT_EQ(menuKeyOf(somewhere, XK_Right, XK_Right), MenuKey::right);
    EXPECT_EQ(menuKeyOf(somewhere, XK_KP_Up, XK_KP_8), MenuKey::up);
    EXPECT_EQ(menuKeyOf(somewhere, XK_Down, XK_Down), MenuKey::down);
    EXPECT_EQ(menuKeyOf(somewhere, XK_Tab, XK_ISO_Left_Tab), MenuKey::next);
    EXPECT_EQ(menuKeyOf(somewhere, XK_Escape, XK_Escape), MenuKey::leave);
    for (const unsigned long choosing : std::vector<unsigned long>{XK_Return, XK_KP_Enter, XK_space})
        EXPECT_EQ(menuKeyOf(somewhere, choosing, choosing), MenuKey::choose);
}

TEST(MenuKeyTableTest, Digits_AreTheirEntriesWithAndWithoutShift) {
    for (unsigned long digit = 0; digit < 8; ++digit) {
        EXPECT_EQ(entryOf(*menuKeyOf(somewhere, XK_1 + digit, XK_exclam)), digit);
        EXPECT_EQ(entryOf(*menuKeyOf(somewhere, XK_ampersand, XK_1 + digit)), digit);
        EXPECT_EQ(entryOf(*menuKeyOf(somewhere, XK_KP_1 + digit, XK_KP_End)), digit);
    }
    for (const unsigned long none : std::vector<unsigned long>{XK_0, XK_9}) {
        EXPECT_EQ(menuKeyOf(10, none, XK_parenleft), std::nullopt);
        EXPECT_EQ(menuKeyOf(10, XK_agrave, none), std::nullopt);
    }
}

TEST(MenuKeyTableTest, DigitsOfAnotherScript_GoByTheirPlace) {
    constexpr unsigned long devanagariOne = 0x1000967;
    EXPECT_EQ(menuKeyOf(10, devanagariOne, XK_exclam), MenuKey::entry1);
    EXPECT_EQ(menuKeyOf(17, devanagariOne + 7, XK_asterisk), MenuKey::entry8);
    EXPECT_EQ(menuKeyOf(18, devanagariOne + 8, XK_parenleft), std::nullopt);
}

TEST(MenuKeyTableTest, OtherKeys_AreNothingToAMenu) {
    for (const unsigned long other :
         std::vector<unsigned long>{XK_a, XK_A, XK_F1, XK_KP_Begin, XK_KP_End, XK_Shift_L, XK_Delete})
        EXPECT_EQ(menuKeyOf(somewhere, other, other), std::nullopt) << other;
    EXPECT_EQ(menuKeyOf(somewhere, XF86XK_AudioMute, 0), std::nullopt);
    EXPECT_EQ(menuKeyOf(somewhere, 0, 0), std::nullopt);
}

}  // namespace
}  // namespace trelvan
