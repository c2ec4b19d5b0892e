#pragma once

#include "Platform/KeyChord.hpp"

#include <functional>
#include <optional>
#include <utility>

struct _XDisplay;

namespace trelvan {

/// Finds keys by what they type. Pure but for `inUse`.
class KeyboardLayout {
  public:
    /// The keysym of an X key code in a group (0 to 3) at a shift level; 0 where there is none.
    using Symbols = std::function<unsigned long(int keycode, int group, int level)>;

    KeyboardLayout(Symbols symbols, int group) : symbols_(std::move(symbols)), group_(group) {}

    /// The layout that the server has now, with the group that is active; asks the server.
    static KeyboardLayout inUse(_XDisplay* display);

    /// The key that types the keysym in the active group, else in the first group that has it, as a Cyrillic
    /// layout leaves Latin shortcuts to the layout beside it. With Shift where only that gives it.
    [[nodiscard]] std::optional<KeyChord> find(unsigned long keysym) const;

    /// The keysym of a character.
    [[nodiscard]] static unsigned long keysym(char32_t character);

  private:
    [[nodiscard]] std::optional<KeyChord> findIn(int group, unsigned long keysym) const;

    Symbols symbols_;
    int group_;
};

}  // namespace trelvan
