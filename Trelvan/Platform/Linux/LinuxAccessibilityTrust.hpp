#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/Linux/XConnection.hpp"

namespace trelvan {

/// On X every client may tap and post where the server has the extensions; there is nobody to ask. Main
/// thread.
class LinuxAccessibilityTrust : public AccessibilityTrust {
  public:
    explicit LinuxAccessibilityTrust(XConnection& connection) : connection_(connection) {}

    [[nodiscard]] bool isTrusted() override;
    [[nodiscard]] bool requestTrust() override { return isTrusted(); }

  private:
    XConnection& connection_;
};

}  // namespace trelvan
