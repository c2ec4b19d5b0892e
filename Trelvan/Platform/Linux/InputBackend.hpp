#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/InputState.hpp"
#include "Platform/KeyChord.hpp"
#include "Platform/KeyMonitors.hpp"
#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/MenuInput.hpp"

#include <optional>

namespace trelvan {

/// One way to the user's input devices: everything that reads them or stands in for them, made and owned
/// together, since these parts must know of each other. What is posted is neither the user's activity nor a
/// key of the menu, a tap that was refused is no trust, and a copy of an event goes out where its original
/// would have. The ports live as long as the backend; main thread, but for what a port says.
class InputBackend {
  public:
    /// Releases what is held through the poster and the tap.
    virtual ~InputBackend() = default;

    virtual EventTap& eventTap() = 0;
    virtual EventPoster& eventPoster() = 0;
    virtual InputState& inputState() = 0;
    virtual KeyMonitors& keyMonitors() = 0;
    virtual MenuInput& menuInput() = 0;
    virtual AccessibilityTrust& accessibilityTrust() = 0;

    /// Where the pointer is; inside the tap's callback, where its event is.
    [[nodiscard]] virtual const PointerSource& pointer() const = 0;

    /// The key that types a key symbol (XKB's numbers) in the keyboard layout in use; none where it has no
    /// such key. Any thread.
    [[nodiscard]] virtual std::optional<KeyChord> keyFor(unsigned long keysym) = 0;
};

}  // namespace trelvan
