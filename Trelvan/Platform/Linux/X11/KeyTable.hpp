#pragma once

#include "Platform/Quartz.hpp"

#include <optional>

namespace trelvan {

/// The same key in macOS virtual key codes and in the kernel's, for every key of a full keyboard.
class KeyTable {
  public:
    /// The kernel's code (KEY_… in linux/input-event-codes.h); none for a key that Linux does not have.
    [[nodiscard]] static std::optional<int> evdevCode(KeyCode keyCode);
    [[nodiscard]] static std::optional<KeyCode> keyCode(int evdevCode);

    /// The same in X key codes, which lie 8 above the kernel's.
    [[nodiscard]] static std::optional<int> xKeycode(KeyCode keyCode);
    [[nodiscard]] static std::optional<KeyCode> keyCodeOfX(int xKeycode);
};

}  // namespace trelvan
