#include "Platform/Linux/X11/KeyTable.hpp"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace trelvan {

namespace {

struct Pair {
    KeyCode keyCode;
    int evdev;
};

/// By virtual key code. Fn (63) has no counterpart: keyboards handle it themselves.
constexpr std::array pairs{
    Pair{0, KEY_A},
    Pair{1, KEY_S},
    Pair{2, KEY_D},
    Pair{3, KEY_F},
    Pair{4, KEY_H},
    Pair{5, KEY_G},
    Pair{6, KEY_Z},
    Pair{7, KEY_X},
    Pair{8, KEY_C},
    Pair{9, KEY_V},
    // The key between left Shift and Z, and the one above Tab.
    Pair{10, KEY_102ND},
    Pair{11, KEY_B},
    Pair{12, KEY_Q},
    Pair{13, KEY_W},
    Pair{14, KEY_E},
    Pair{15, KEY_R},
    Pair{16, KEY_Y},
    Pair{17, KEY_T},
    Pair{18, KEY_1},
    Pair{19, KEY_2},
    Pair{20, KEY_3},
    Pair{21, KEY_4},
    Pair{22, KEY_6},
    Pair{23, KEY_5},
    Pair{24, KEY_EQUAL},
    Pair{25, KEY_9},
    Pair{26, KEY_7},
    Pair{27, KEY_MINUS},
    Pair{28, KEY_8},
    Pair{29, KEY_0},
    Pair{30, KEY_RIGHTBRACE},
    Pair{31, KEY_O},
    Pair{32, KEY_U},
    Pair{33, KEY_LEFTBRACE},
    Pair{34, KEY_I},
    Pair{35, KEY_P},
    Pair{36, KEY_ENTER},
    Pair{37, KEY_L},
    Pair{38, KEY_J},
    Pair{39, KEY_APOSTROPHE},
    Pair{40, KEY_K},
    Pair{41, KEY_SEMICOLON},
    Pair{42, KEY_BACKSLASH},
    Pair{43, KEY_COMMA},
    Pair{44, KEY_SLASH},
    Pair{45, KEY_N},
    Pair{46, KEY_M},
    Pair{47, KEY_DOT},
    Pair{48, KEY_TAB},
    Pair{49, KEY_SPACE},
    Pair{50, KEY_GRAVE},
    Pair{51, KEY_BACKSPACE},
    Pair{53, KEY_ESC},
    Pair{54, KEY_RIGHTMETA},
    Pair{55, KEY_LEFTMETA},
    Pair{56, KEY_LEFTSHIFT},
    Pair{57, KEY_CAPSLOCK},
    Pair{58, KEY_LEFTALT},
    Pair{59, KEY_LEFTCTRL},
    Pair{60, KEY_RIGHTSHIFT},
    Pair{61, KEY_RIGHTALT},
    Pair{62, KEY_RIGHTCTRL},
    Pair{64, KEY_F17},
    Pair{65, KEY_KPDOT},
    Pair{67, KEY_KPASTERISK},
    Pair{69, KEY_KPPLUS},
    // Clear, where a PC keyboard has Num Lock.
    Pair{71, KEY_NUMLOCK},
    Pair{72, KEY_VOLUMEUP},
    Pair{73, KEY_VOLUMEDOWN},
    Pair{74, KEY_MUTE},
    Pair{75, KEY_KPSLASH},
    Pair{76, KEY_KPENTER},
    Pair{78, KEY_KPMINUS},
    Pair{79, KEY_F18},
    Pair{80, KEY_F19},
    Pair{81, KEY_KPEQUAL},
    Pair{82, KEY_KP0},
    Pair{83, KEY_KP1},
    Pair{84, KEY_KP2},
    Pair{85, KEY_KP3},
    Pair{86, KEY_KP4},
    Pair{87, KEY_KP5},
    Pair{88, KEY_KP6},
    Pair{89, KEY_KP7},
    Pair{90, KEY_F20},
    Pair{91, KEY_KP8},
    Pair{92, KEY_KP9},
    // The keys of a Japanese keyboard.
    Pair{93, KEY_YEN},
    Pair{94, KEY_RO},
    Pair{95, KEY_KPJPCOMMA},
    Pair{96, KEY_F5},
    Pair{97, KEY_F6},
    Pair{98, KEY_F7},
    Pair{99, KEY_F3},
    Pair{100, KEY_F8},
    Pair{101, KEY_F9},
    Pair{102, KEY_MUHENKAN},
    Pair{103, KEY_F11},
    Pair{104, KEY_HENKAN},
    // F13, F14 and F15 stand where a PC keyboard has Print Screen, Scroll Lock and Pause.
    Pair{105, KEY_SYSRQ},
    Pair{106, KEY_F16},
    Pair{107, KEY_SCROLLLOCK},
    Pair{109, KEY_F10},
    Pair{110, KEY_COMPOSE},
    Pair{111, KEY_F12},
    Pair{113, KEY_PAUSE},
    // Help, where a PC keyboard has Insert.
    Pair{114, KEY_INSERT},
    Pair{115, KEY_HOME},
    Pair{116, KEY_PAGEUP},
    Pair{117, KEY_DELETE},
    Pair{118, KEY_F4},
    Pair{119, KEY_END},
    Pair{120, KEY_F2},
    Pair{121, KEY_PAGEDOWN},
    Pair{122, KEY_F1},
    Pair{123, KEY_LEFT},
    Pair{124, KEY_RIGHT},
    Pair{125, KEY_DOWN},
    Pair{126, KEY_UP},
};

constexpr int xOffset = 8;
constexpr int highestXKeycode = 255;

}  // namespace

std::optional<int> KeyTable::evdevCode(KeyCode keyCode) {
    const auto* pair = std::ranges::lower_bound(pairs, keyCode, {}, &Pair::keyCode);
    if (pair == pairs.end() || pair->keyCode != keyCode) return std::nullopt;
    return pair->evdev;
}

std::optional<KeyCode> KeyTable::keyCode(int evdevCode) {
    const auto* pair = std::ranges::find(pairs, evdevCode, &Pair::evdev);
    if (pair == pairs.end()) return std::nullopt;
    return pair->keyCode;
}

std::optional<int> KeyTable::xKeycode(KeyCode keyCode) {
    const auto evdev = evdevCode(keyCode);
    if (!evdev || *evdev + xOffset > highestXKeycode) return std::nullopt;
    return *evdev + xOffset;
}

std::optional<KeyCode> KeyTable::keyCodeOfX(int xKeycode) {
    return keyCode(xKeycode - xOffset);
}

}  // namespace trelvan
