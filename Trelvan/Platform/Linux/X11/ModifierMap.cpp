#include "Platform/Linux/X11/ModifierMap.hpp"

#include "Platform/Linux/X11/X11.hpp"

#include <memory>

namespace trelvan {

ModifierMap ModifierMap::read(_XDisplay* display) {
    ModifierMap map;
    const std::unique_ptr<XModifierKeymap, decltype(&XFreeModifiermap)> keys(XGetModifierMapping(display),
                                                                             &XFreeModifiermap);
    if (!keys) return map;
    unsigned super = 0;
    unsigned alt = 0;
    for (int modifier = 0; modifier < 8; ++modifier) {
        for (int slot = 0; slot < keys->max_keypermod; ++slot) {
            const auto keycode = keys->modifiermap[modifier * keys->max_keypermod + slot];
            if (keycode == 0) continue;
            const unsigned bit = 1U << static_cast<unsigned>(modifier);
            map.byKeycode_[keycode] = static_cast<std::uint8_t>(map.byKeycode_[keycode] | bit);
            const KeySym symbol = XkbKeycodeToKeysym(display, keycode, 0, 0);
            if (symbol == XK_Super_L || symbol == XK_Super_R) super |= bit;
            if (symbol == XK_Alt_L || symbol == XK_Alt_R) alt |= bit;
        }
    }
    if (super != 0) map.super = super;
    if (alt != 0) map.alt = alt;
    return map;
}

EventFlags ModifierMap::flags(unsigned modifiers) const {
    EventFlags result = 0;
    if (modifiers & ShiftMask) result |= flag::shift;
    if (modifiers & LockMask) result |= flag::alphaShift;
    if (modifiers & ControlMask) result |= flag::control;
    if (modifiers & alt) result |= flag::option;
    if (modifiers & super) result |= flag::command;
    return result;
}

unsigned ModifierMap::modifiers(EventFlags flags) const {
    unsigned result = 0;
    if (flags & flag::shift) result |= ShiftMask;
    if (flags & flag::control) result |= ControlMask;
    if (flags & flag::option) result |= alt;
    if (flags & flag::command) result |= super;
    return result;
}

unsigned ModifierMap::modifiersOf(int keycode) const {
    return byKeycode_[static_cast<std::size_t>(keycode)];
}

std::vector<int> ModifierMap::keycodes(unsigned modifiers) const {
    std::vector<int> result;
    for (int keycode = 8; keycode < 256; ++keycode) {
        if (modifiersOf(keycode) & modifiers) result.push_back(keycode);
    }
    return result;
}

}  // namespace trelvan
