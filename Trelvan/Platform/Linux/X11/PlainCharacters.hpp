#pragma once

#include <string>

struct _XDisplay;

namespace trelvan {

/// What a key types in the active keyboard layout without any modifier, UTF-8; the digits of the number pad
/// whatever Num Lock says. Of a function key or one of the block beside the letters its short name, "F5",
/// "⌦". Empty for any other key that types nothing to be seen. Asks the server for the layout.
[[nodiscard]] std::string plainCharacters(_XDisplay* display, int keycode);

/// Whether a key only changes what other keys do. Asks the server for the layout.
[[nodiscard]] bool isModifierKey(_XDisplay* display, int keycode);

}  // namespace trelvan
