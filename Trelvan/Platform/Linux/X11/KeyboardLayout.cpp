#include "Platform/Linux/X11/KeyboardLayout.hpp"

#include "Platform/Linux/X11/KeyTable.hpp"
#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

namespace {

constexpr int lowestKeycode = 8;
constexpr int highestKeycode = 255;
constexpr int groups = 4;

}  // namespace

KeyboardLayout KeyboardLayout::inUse(_XDisplay* display) {
    XkbStateRec state{};
    XkbGetState(display, XkbUseCoreKbd, &state);
    return {[display](int keycode, int group, int level) {
                return XkbKeycodeToKeysym(display, static_cast<::KeyCode>(keycode), group, level);
            },
            state.group};
}

std::optional<KeyChord> KeyboardLayout::find(unsigned long keysym) const {
    if (keysym == 0) return std::nullopt;
    if (const auto key = findIn(group_, keysym)) return key;
    for (int group = 0; group < groups; ++group) {
        if (const auto key = findIn(group, keysym)) return key;
    }
    return std::nullopt;
}

std::optional<KeyChord> KeyboardLayout::findIn(int group, unsigned long keysym) const {
    for (const int level : {0, 1}) {
        for (int keycode = lowestKeycode; keycode <= highestKeycode; ++keycode) {
            if (symbols_(keycode, group, level) != keysym) continue;
            const auto key = KeyTable::keyCodeOfX(keycode);
            if (key) return KeyChord{.keyCode = *key, .flags = level == 1 ? flag::shift : 0};
        }
    }
    return std::nullopt;
}

unsigned long KeyboardLayout::keysym(char32_t character) {
    constexpr unsigned long unicode = 0x01000000;
    // Latin 1 has the keysyms of the same numbers.
    const bool isLatin = (character >= 0x20 && character < 0x7F) || (character >= 0xA0 && character < 0x100);
    return isLatin ? character : unicode | character;
}

}  // namespace trelvan
