#include "Platform/Linux/Poster/MediaKeycodes.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Quartz.hpp"
#include "Utilities/Logger.hpp"

#include <X11/XF86keysym.h>

#include <cstddef>
#include <memory>

namespace trelvan {

namespace {

KeySym keysymOf(std::int64_t mediaKey) {
    switch (static_cast<MediaKey>(mediaKey)) {
        case MediaKey::volumeUp:
            return XF86XK_AudioRaiseVolume;
        case MediaKey::volumeDown:
            return XF86XK_AudioLowerVolume;
        case MediaKey::mute:
            return XF86XK_AudioMute;
        case MediaKey::playPause:
            return XF86XK_AudioPlay;
    }
    return NoSymbol;
}

}  // namespace

MediaKeycodes::~MediaKeycodes() {
    for (const int keycode : bound_) {
        KeySym nothing = NoSymbol;
        XChangeKeyboardMapping(display_, keycode, 1, &nothing, 1);
    }
    if (!bound_.empty()) XSync(display_, x11::no);
}

std::optional<int> MediaKeycodes::keycode(std::int64_t mediaKey) {
    const KeySym keysym = keysymOf(mediaKey);
    if (keysym == NoSymbol) return std::nullopt;
    const auto keycode = XKeysymToKeycode(display_, keysym);
    return keycode != 0 ? std::optional<int>(keycode) : bind(keysym);
}

std::optional<int> MediaKeycodes::bind(unsigned long keysym) {
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(display_, &lowest, &highest);
    int perKey = 0;
    const std::unique_ptr<KeySym, decltype(&XFree)> symbols(
        XGetKeyboardMapping(display_, static_cast<::KeyCode>(lowest), highest - lowest + 1, &perKey), &XFree);
    // From the top: the low codes belong to real keys.
    for (int keycode = highest; symbols && keycode >= lowest; --keycode) {
        const KeySym* own = symbols.get() + std::ptrdiff_t{keycode - lowest} * perKey;
        bool isFree = true;
        for (int index = 0; index < perKey; ++index) isFree = isFree && own[index] == NoSymbol;
        if (!isFree) continue;
        XChangeKeyboardMapping(display_, keycode, 1, &keysym, 1);
        XSync(display_, x11::no);
        bound_.push_back(keycode);
        return keycode;
    }
    AppLogger.warning("El teclado no tiene tecla multimedia ni código libre para ella");
    return std::nullopt;
}

}  // namespace trelvan
