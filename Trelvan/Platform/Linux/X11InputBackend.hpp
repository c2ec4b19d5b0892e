#pragma once

#include "Platform/Linux/InputBackend.hpp"
#include "Platform/Linux/Poster/X11EventPoster.hpp"
#include "Platform/Linux/Poster/X11InputState.hpp"
#include "Platform/Linux/Poster/X11KeyMonitors.hpp"
#include "Platform/Linux/Tap/EscapeHold.hpp"
#include "Platform/Linux/Tap/MenuKeyGrabs.hpp"
#include "Platform/Linux/Tap/X11AccessibilityTrust.hpp"
#include "Platform/Linux/Tap/X11EventTap.hpp"
#include "Platform/Linux/Tap/X11MenuInput.hpp"
#include "Platform/Linux/X11/ActivityLog.hpp"
#include "Platform/Linux/X11/EventOrigin.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/XConnection.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/Linux/XTest/PressedState.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>

namespace trelvan {

/// Input by the X server: devices by XInput 2 grabs, output by XTEST, and the user's way out of both (Escape
/// held for five seconds).
class X11InputBackend final : public InputBackend {
  public:
    /// Runs a job on the queue on which keys are posted, ahead of what waits there.
    using InBackground = std::function<void(std::function<void()>)>;

    /// `posting` is the poster's own connection. The others, and what `inBackground` refers to, must outlive
    /// the backend; no job of its runs once it is being destroyed.
    X11InputBackend(XEventPump& pump, std::unique_ptr<XConnection> posting, PressedState& page,
                    const EventOrigin& origin, Timers& timers, InBackground inBackground);
    X11InputBackend(const X11InputBackend&) = delete;
    X11InputBackend& operator=(const X11InputBackend&) = delete;
    ~X11InputBackend() override = default;

    EventTap& eventTap() override { return tap_; }
    EventPoster& eventPoster() override { return poster_; }
    InputState& inputState() override { return inputState_; }
    KeyMonitors& keyMonitors() override { return keyMonitors_; }
    MenuInput& menuInput() override { return menuInput_; }
    AccessibilityTrust& accessibilityTrust() override { return trust_; }
    [[nodiscard]] const PointerSource& pointer() const override { return tap_; }
    [[nodiscard]] std::optional<KeyChord> keyFor(unsigned long keysym) override {
        return poster_.keyFor(keysym);
    }

  private:
    void escape();

    // In the order in which they need each other: the poster releases what it holds before the tap does.
    ActivityLog activity_;
    ModifierState modifiers_;
    X11EventTap tap_;
    MenuKeyGrabs menuKeys_;
    X11EventPoster poster_;
    X11InputState inputState_;
    EscapeHold escapeHold_;
    X11AccessibilityTrust trust_;
    X11KeyMonitors keyMonitors_;
    X11MenuInput menuInput_;
};

}  // namespace trelvan
