#pragma once

#include "Platform/Quartz.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace trelvan {

/// A key with the modifiers that go with it.
struct KeyChord {
    KeyCode keyCode = 0;
    EventFlags flags = 0;
    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

/// One entry of the symbolic hot-key table, as the system stores it. A platform that keeps shortcuts in
/// another form offers them as {0, key code, modifier flags}.
struct HotKeyEntry {
    bool enabled = false;
    /// The array "parameters"; no value for an element that is not a whole number.
    std::vector<std::optional<std::int64_t>> parameters;
};

/// The shortcuts that the user gave the desktop's own functions, under the system's symbolic identifiers.
/// Any thread; read afresh at each call.
class HotKeyTable {
  public:
    virtual ~HotKeyTable() = default;

    /// None when there is no such entry or it has another shape.
    [[nodiscard]] virtual std::optional<HotKeyEntry> entry(int id) const = 0;
};

}  // namespace trelvan
