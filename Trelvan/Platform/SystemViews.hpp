#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace trelvan {

/// What an action may ask the desktop itself for: its views, moves between its desktops, its tools.
enum class SystemView : std::uint8_t {
    missionControl,
    appExpose,
    launchpad,
    showDesktop,
    desktopLeft,
    desktopRight,
    screenshotArea,
    screenshotFull,
    screenshotTool,
    emojiPanel,
    lockScreen,
};

/// Which way a move between desktops goes.
enum class DesktopDirection : std::uint8_t { left, right };

/// The view by which a move is known where views are listed.
constexpr SystemView viewOf(DesktopDirection direction) {
    return direction == DesktopDirection::left ? SystemView::desktopLeft : SystemView::desktopRight;
}

/// A view that was asked for and that nothing here shows.
struct MissingView {
    SystemView view = SystemView::missionControl;
    /// What shows it once it is installed; empty when nothing is known to.
    std::string_view program = {};
};

/// Asks the desktop by its own protocols rather than by keys, which keeps guessed keystrokes out of the
/// user's document. Any thread; never waits for the desktop.
class SystemViews {
  public:
    /// Presses the keys that are known for the view; false when none are. Any thread.
    using ByKeys = std::function<bool()>;

    using MissingObserver = std::function<void(const MissingView&)>;

    virtual ~SystemViews() = default;

    /// Tells the observer, on the main thread, of each view that neither the desktop nor known keys can show,
    /// at least once. None: nobody is told. Main thread.
    virtual void setMissingObserver(MissingObserver observer) = 0;

    /// Shows any view but a desktop move. True when this platform took charge: the desktop is asked and,
    /// where it cannot be, `byKeys` called; when neither helps, the log says so. False when only keys can do
    /// it, known or guessed: it is the caller's then.
    [[nodiscard]] virtual bool show(SystemView view, ByKeys byKeys) = 0;

    /// Moves to the desktop beside the present one. True when this platform makes such moves itself, by the
    /// desktop's own protocol or, where it has none, by `byKeys`; where there is no desktop on that side
    /// nothing happens. Whatever comes of it, the caller presses nothing then. False when only keys can do
    /// it, known or guessed: it is the caller's then.
    [[nodiscard]] virtual bool moveDesktop(DesktopDirection direction, ByKeys byKeys) = 0;

    /// The views that the desktop itself shows when it is asked, as far as can be told without showing them;
    /// a recording says so. Main thread; may ask other programs and wait for their answer.
    [[nodiscard]] virtual std::vector<SystemView> offered() const { return {}; }
};

}  // namespace trelvan
