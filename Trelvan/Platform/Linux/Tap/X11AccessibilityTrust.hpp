#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/Linux/Tap/X11EventTap.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

namespace trelvan {

/// On X a client may tap and post where the server shows it the extensions and lets it grab; there is nobody
/// to ask. Main thread.
class X11AccessibilityTrust : public AccessibilityTrust {
  public:
    X11AccessibilityTrust(XConnection& connection, const X11EventTap& tap)
        : connection_(connection), tap_(tap) {}

    [[nodiscard]] bool isTrusted() override;
    [[nodiscard]] bool requestTrust() override { return isTrusted(); }
    [[nodiscard]] std::optional<Advice> advice() const override;

  private:
    XConnection& connection_;
    const X11EventTap& tap_;
};

}  // namespace trelvan
