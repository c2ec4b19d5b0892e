#include "Platform/Linux/Tap/MenuKeyTable.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

namespace {

constexpr int maxEntries = 8;
/// The kernel's key of the digit 1 in the X server's numbering; the others follow it.
constexpr int firstDigitPlace = 10;

MenuKey entryKey(unsigned long index) {
    return static_cast<MenuKey>(static_cast<unsigned long>(MenuKey::entry1) + index);
}

std::optional<MenuKey> digit(unsigned long symbol, unsigned long one) {
    if (symbol < one || symbol >= one + maxEntries) return std::nullopt;
    return entryKey(symbol - one);
}

bool isDigit(unsigned long symbol) {
    return symbol >= XK_0 && symbol <= XK_9;
}

}  // namespace

std::optional<MenuKey> menuKeyOf(int keycode, unsigned long plain, unsigned long shifted) {
    switch (plain) {
        case XK_Left:
        case XK_KP_Left:
            return MenuKey::left;
        case XK_Right:
        case XK_KP_Right:
            return MenuKey::right;
        case XK_Up:
        case XK_KP_Up:
            return MenuKey::up;
        case XK_Down:
        case XK_KP_Down:
            return MenuKey::down;
        case XK_Tab:
        case XK_KP_Tab:
            return MenuKey::next;
        case XK_Return:
        case XK_KP_Enter:
        case XK_ISO_Enter:
        case XK_space:
        case XK_KP_Space:
            return MenuKey::choose;
        case XK_Escape:
            return MenuKey::leave;
        default:
            break;
    }
    if (isDigit(plain)) return digit(plain, XK_1);
    if (const auto keypad = digit(plain, XK_KP_1)) return keypad;
    // Some layouts have the digits on the same keys, but with Shift.
    if (isDigit(shifted)) return digit(shifted, XK_1);
    if (keycode < firstDigitPlace || keycode >= firstDigitPlace + maxEntries) return std::nullopt;
    return entryKey(static_cast<unsigned long>(keycode - firstDigitPlace));
}

}  // namespace trelvan
