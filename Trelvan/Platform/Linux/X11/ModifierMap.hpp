#pragma once

#include "Platform/Quartz.hpp"

#include <cstdint>
#include <vector>

struct _XDisplay;

namespace trelvan {

/// Which of the server's eight modifiers mean what, as the keyboard mapping has it now.
class ModifierMap {
  public:
    /// The server's eight modifiers.
    static constexpr unsigned all = 0xFF;

    /// Reads the mapping; asks the server.
    static ModifierMap read(_XDisplay* display);

    /// Quartz flags of a set of X modifiers, and the modifiers of a set of flags (Caps Lock left out).
    [[nodiscard]] EventFlags flags(unsigned modifiers) const;
    [[nodiscard]] unsigned modifiers(EventFlags flags) const;

    /// The modifiers that a key code sets, 0 when it is no modifier key.
    [[nodiscard]] unsigned modifiersOf(int keycode) const;
    /// All key codes that set one of the modifiers.
    [[nodiscard]] std::vector<int> keycodes(unsigned modifiers) const;

    /// The modifiers that Super and Alt are on; the usual ones where the mapping has no such key.
    unsigned super = 1U << 6;
    unsigned alt = 1U << 3;

  private:
    std::vector<std::uint8_t> byKeycode_ = std::vector<std::uint8_t>(256, 0);
};

}  // namespace trelvan
