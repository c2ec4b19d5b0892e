#pragma once

#include "Platform/Quartz.hpp"

namespace trelvan {

/// A key with the modifiers that go with it.
struct KeyChord {
    KeyCode keyCode = 0;
    EventFlags flags = 0;
    /// What the key types, where that makes it the key and not its place; 0 where the place does. `keyCode`
    /// then only serves layouts that have no such key.
    char32_t character = 0;
    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

}  // namespace trelvan
