#include "Platform/Linux/X11/PlainCharacters.hpp"

#include "Platform/Linux/X11/X11.hpp"

#include <xkbcommon/xkbcommon.h>

#include <array>

namespace trelvan {

namespace {

KeySym symbolOf(Display* display, int keycode, int level) {
    XkbStateRec state{};
    XkbGetState(display, XkbUseCoreKbd, &state);
    const auto code = static_cast<::KeyCode>(keycode);
    const KeySym inGroup = XkbKeycodeToKeysym(display, code, state.group, level);
    // Keys that are the same in all layouts are in the first group only.
    return inGroup != NoSymbol ? inGroup : XkbKeycodeToKeysym(display, code, 0, level);
}

/// The short name of a key that types nothing; empty for one without.
std::string nameOf(KeySym symbol) {
    if (symbol >= XK_F1 && symbol <= XK_F35) return "F" + std::to_string(symbol - XK_F1 + 1);
    switch (symbol) {
        case XK_Home:
            return "↖";
        case XK_End:
            return "↘";
        case XK_Prior:
            return "⇞";
        case XK_Next:
            return "⇟";
        case XK_Delete:
            return "⌦";
        default:
            return {};
    }
}

}  // namespace

std::string plainCharacters(_XDisplay* display, int keycode) {
    KeySym symbol = symbolOf(display, keycode, 0);
    if (IsKeypadKey(symbol)) symbol = symbolOf(display, keycode, 1);
    if (auto name = nameOf(symbol); !name.empty()) return name;
    std::array<char, 8> text{};
    // The size that it says counts the final zero.
    const int size = xkb_keysym_to_utf8(static_cast<xkb_keysym_t>(symbol), text.data(), text.size());
    if (size < 2) return {};
    const auto first = static_cast<unsigned char>(text.front());
    constexpr unsigned char firstPrinted = 0x20;
    constexpr unsigned char deleted = 0x7F;
    if (first < firstPrinted || first == deleted) return {};
    return {text.data(), static_cast<std::size_t>(size) - 1};
}

bool isModifierKey(_XDisplay* display, int keycode) {
    return IsModifierKey(symbolOf(display, keycode, 0));
}

}  // namespace trelvan
