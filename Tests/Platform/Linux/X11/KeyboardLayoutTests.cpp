#include "Platform/Linux/X11/KeyTable.hpp"
#include "Platform/Linux/X11/KeyboardLayout.hpp"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <map>
#include <tuple>

namespace trelvan {
namespace {

/// A keyboard with a few keys, filled by the test.
class Keyboard {
  public:
    Keyboard& key(int evdev, int group, unsigned long plain, unsigned long shifted) {
        symbols_[{evdev + 8, group, 0}] = plain;
        symbols_[{evdev + 8, group, 1}] = shifted;
        return *this;
    }
    KeyboardLayout with(int group) const {
        return {[symbols = symbols_](int keycode, int inGroup, int level) {
                    const auto found = symbols.find({keycode, inGroup, level});
                    return found != symbols.end() ? found->second : 0;
                },
                group};
    }

  private:
    std::map<std::tuple<int, int, int>, unsigned long> symbols_;
};

std::optional<KeyChord> at(int evdev, EventFlags flags = 0) {
    return KeyChord{.keyCode = *KeyTable::keyCode(evdev), .flags = flags};
}

TEST(KeyboardLayout, LetterOnAnotherKey_IsFoundWhereTheLayoutHasIt) {
    const auto german = Keyboard().key(KEY_Y, 0, XK_z, XK_Z).key(KEY_Z, 0, XK_y, XK_Y).with(0);
    EXPECT_EQ(german.find(XK_z), at(KEY_Y));
    EXPECT_EQ(german.find(XK_y), at(KEY_Z));
}

TEST(KeyboardLayout, SignThatTakesShift_ComesWithShift) {
    const auto french = Keyboard().key(KEY_COMMA, 0, XK_semicolon, XK_period).with(0);
    EXPECT_EQ(french.find(XK_period), at(KEY_COMMA, flag::shift));
}

TEST(KeyboardLayout, SignOnTwoKeys_IsTakenWhereItNeedsNoShift) {
    const auto layout =
        Keyboard().key(KEY_COMMA, 0, XK_semicolon, XK_period).key(KEY_KPDOT, 0, XK_period, XK_period).with(0);
    EXPECT_EQ(layout.find(XK_period), at(KEY_KPDOT));
}

TEST(KeyboardLayout, ActiveGroup_GoesFirst) {
    Keyboard keyboard;
    keyboard.key(KEY_Z, 0, XK_z, XK_Z).key(KEY_Y, 1, XK_z, XK_Z);
    EXPECT_EQ(keyboard.with(0).find(XK_z), at(KEY_Z));
    EXPECT_EQ(keyboard.with(1).find(XK_z), at(KEY_Y));
}

TEST(KeyboardLayout, LetterThatTheActiveGroupLacks_IsTakenFromTheFirstGroupThatHasIt) {
    Keyboard keyboard;
    keyboard.key(KEY_C, 0, XK_Cyrillic_es, XK_Cyrillic_ES)
        .key(KEY_C, 1, XK_c, XK_C)
        .key(KEY_J, 2, XK_c, XK_C);
    EXPECT_EQ(keyboard.with(0).find(XK_c), at(KEY_C));
}

TEST(KeyboardLayout, LetterThatNoGroupHas_IsNone) {
    const auto russian = Keyboard().key(KEY_C, 0, XK_Cyrillic_es, XK_Cyrillic_ES).with(0);
    EXPECT_EQ(russian.find(XK_c), std::nullopt);
    EXPECT_EQ(russian.find(0), std::nullopt);
}

TEST(KeyboardLayout, KeyWithoutAVirtualKeyCode_DoesNotCount) {
    const auto layout = Keyboard().key(KEY_CALC, 0, XK_c, XK_C).key(KEY_C, 0, XK_c, XK_C).with(0);
    EXPECT_EQ(layout.find(XK_c), at(KEY_C));
}

TEST(KeyboardLayout, Characters_HaveTheirKeysyms) {
    EXPECT_EQ(KeyboardLayout::keysym(U'c'), static_cast<unsigned long>(XK_c));
    EXPECT_EQ(KeyboardLayout::keysym(U'ñ'), static_cast<unsigned long>(XK_ntilde));
    EXPECT_EQ(KeyboardLayout::keysym(U'ş'), 0x0100015FUL);
}

}  // namespace
}  // namespace trelvan
