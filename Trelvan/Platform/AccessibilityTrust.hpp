#pragma once

#include <optional>
#include <string_view>

namespace trelvan {

/// Whether the system lets this program tap and post events. Main thread.
class AccessibilityTrust {
  public:
    virtual ~AccessibilityTrust() = default;

    [[nodiscard]] virtual bool isTrusted() = 0;
    /// The same, and where it is not the system's prompt is shown. Does not wait for the user.
    [[nodiscard]] virtual bool requestTrust() = 0;

    /// One sentence for the user, in each language.
    struct Advice {
        std::string_view english;
        std::string_view spanish;
    };
    /// What to do about missing trust where the system has no settings pane that grants it; none where it has
    /// one.
    [[nodiscard]] virtual std::optional<Advice> advice() const { return std::nullopt; }
};

}  // namespace trelvan
