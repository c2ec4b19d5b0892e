#pragma once

#include "Desktop/Harness/XConnection.hpp"

#include <string>
#include <vector>

namespace trelvan::desktop {

/// A panel's tray for programs that show their item as an X window: a strip at the screen's upper edge, into
/// which the windows are put as they ask. Main thread.
class XTray {
  public:
    static constexpr int iconSide = 24;
    static constexpr int left = 700;

    /// Takes the tray's selection and tells all programs. Throws std::runtime_error when somebody has it.
    explicit XTray(const std::string& displayName);
    ~XTray();
    XTray(const XTray&) = delete;
    XTray& operator=(const XTray&) = delete;

    /// Puts those in that have asked, and waits until there is one; 0 when none comes.
    Window waitForIcon();
    /// Whether the icon is on the screen.
    [[nodiscard]] bool isShown(Window icon) const;

  private:
    void readPending();

    XConnection server;
    Window strip = 0;
    std::vector<Window> icons;
};

}  // namespace trelvan::desktop
