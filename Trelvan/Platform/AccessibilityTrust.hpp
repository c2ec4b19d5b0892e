#pragma once

namespace trelvan {

/// Whether the system lets this program tap and post events. Main thread.
class AccessibilityTrust {
  public:
    virtual ~AccessibilityTrust() = default;

    [[nodiscard]] virtual bool isTrusted() = 0;
    /// The same, and where it is not the system's prompt is shown. Does not wait for the user.
    [[nodiscard]] virtual bool requestTrust() = 0;
};

}  // namespace trelvan
