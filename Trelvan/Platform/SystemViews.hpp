#pragma once

#include <cstdint>

namespace trelvan {

/// The desktop's own views and moves that actions ask for.
enum class SystemView : std::uint8_t {
    missionControl,
    appExpose,
    launchpad,
    showDesktop,
    desktopLeft,
    desktopRight,
};

/// Shows a view or moves between desktops by the desktop's own protocol rather than by keys.
///
/// Asked when no symbolic hot key resolves. Where the answer is true nothing else is tried, which keeps
/// guessed keystrokes out of the user's document on desktops that can be asked directly. Any thread.
class SystemViews {
  public:
    virtual ~SystemViews() = default;

    /// True when this platform took charge of it (or said in the log why it cannot be done); false when only
    /// keys can do it.
    [[nodiscard]] virtual bool show(SystemView view) = 0;
};

}  // namespace trelvan
