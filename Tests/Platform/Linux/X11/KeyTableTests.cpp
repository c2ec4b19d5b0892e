#include "Platform/Linux/X11/KeyTable.hpp"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <set>

namespace trelvan {
namespace {

TEST(KeyTable, EveryKeyCode_RoundTripsToAnEvdevCodeOfItsOwn) {
    std::set<int> seen;
    for (KeyCode keyCode = 0; keyCode < 512; ++keyCode) {
        const auto evdev = KeyTable::evdevCode(keyCode);
        if (!evdev) continue;
        EXPECT_TRUE(seen.insert(*evdev).second) << keyCode;
        EXPECT_EQ(KeyTable::keyCode(*evdev), keyCode);
        EXPECT_EQ(KeyTable::keyCodeOfX(*KeyTable::xKeycode(keyCode)), keyCode);
    }
    EXPECT_GE(seen.size(), 105U);
}

TEST(KeyTable, EveryKeyOfAFullKeyboard_HasAKeyCode) {
    // The codes 1 to 88 are the classic keyboard; three of them were never keys.
    for (int evdev = KEY_ESC; evdev <= KEY_F12; ++evdev) {
        if (evdev == 84 || evdev == KEY_ZENKAKUHANKAKU) continue;
        EXPECT_TRUE(KeyTable::keyCode(evdev).has_value()) << evdev;
    }
    for (const int evdev : {KEY_KPENTER, KEY_RIGHTCTRL, KEY_KPSLASH, KEY_SYSRQ, KEY_RIGHTALT, KEY_HOME,
                            KEY_UP, KEY_PAGEUP, KEY_LEFT, KEY_RIGHT, KEY_END, KEY_DOWN, KEY_PAGEDOWN,
                            KEY_INSERT, KEY_DELETE, KEY_PAUSE, KEY_LEFTMETA, KEY_RIGHTMETA, KEY_COMPOSE}) {
        EXPECT_TRUE(KeyTable::keyCode(evdev).has_value()) << evdev;
    }
}

TEST(KeyTable, MediaKeys_HaveTheirKernelCodes) {
    EXPECT_EQ(KeyTable::evdevCode(72), KEY_VOLUMEUP);
    EXPECT_EQ(KeyTable::evdevCode(73), KEY_VOLUMEDOWN);
    EXPECT_EQ(KeyTable::evdevCode(74), KEY_MUTE);
}

TEST(KeyTable, KeysOfTheCatalogue_LieWhereTheyAreExpected) {
    EXPECT_EQ(KeyTable::evdevCode(key::c), KEY_C);
    EXPECT_EQ(KeyTable::evdevCode(key::command), KEY_LEFTMETA);
    EXPECT_EQ(KeyTable::evdevCode(key::rightCommand), KEY_RIGHTMETA);
    EXPECT_EQ(KeyTable::evdevCode(key::option), KEY_LEFTALT);
    EXPECT_EQ(KeyTable::evdevCode(key::rightOption), KEY_RIGHTALT);
    EXPECT_EQ(KeyTable::evdevCode(key::control), KEY_LEFTCTRL);
    EXPECT_EQ(KeyTable::evdevCode(key::rightControl), KEY_RIGHTCTRL);
    EXPECT_EQ(KeyTable::evdevCode(key::f13), KEY_SYSRQ);
    EXPECT_EQ(KeyTable::xKeycode(key::c), 54);
}

TEST(KeyTable, FnAndUnknownCodes_HaveNoKey) {
    EXPECT_EQ(KeyTable::evdevCode(key::function), std::nullopt);
    EXPECT_EQ(KeyTable::evdevCode(0xFFFF), std::nullopt);
    EXPECT_EQ(KeyTable::keyCode(0), std::nullopt);
    EXPECT_EQ(KeyTable::keyCodeOfX(0), std::nullopt);
}

}  // namespace
}  // namespace trelvan
