#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/Linux/LinuxEventTap.hpp"
#include "Platform/Linux/XConnection.hpp"

namespace trelvan {

/// On X a client may tap and post where the server shows it the extensions and lets it grab; there is nobody
/// to ask. Main thread.
class LinuxAccessibilityTrust : public AccessibilityTrust {
  public:
    LinuxAccessibilityTrust(XConnection& connection, const LinuxEventTap& tap)
        : connection_(connection), tap_(tap) {}

    [[nodiscard]] bool isTrusted() override;
    [[nodiscard]] bool requestTrust() override { return isTrusted(); }

  private:
    XConnection& connection_;
    const LinuxEventTap& tap_;
};

}  // namespace trelvan
