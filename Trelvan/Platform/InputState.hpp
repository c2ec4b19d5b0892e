#pragma once

#include "Platform/Quartz.hpp"

namespace trelvan {

/// What the input devices hold at this moment. Main thread; a read of the modifiers takes nanoseconds, since
/// each press asks for it.
class InputState {
  public:
    virtual ~InputState() = default;

    /// The modifier flags held now, Caps Lock (`flag::alphaShift`) included.
    [[nodiscard]] virtual EventFlags flags(EventSourceState source) const = 0;

    /// Seconds since the last event of the type in the combined session; very large when there was none.
    /// Whether pointer events count that the program posts itself is the system's own matter: they do on
    /// macOS and do not under X.
    [[nodiscard]] virtual double secondsSinceLast(EventType type) const = 0;
};

}  // namespace trelvan
