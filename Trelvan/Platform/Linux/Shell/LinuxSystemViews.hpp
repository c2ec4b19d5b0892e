#pragma once

#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/CurrentDesktop.hpp"
#include "Platform/Linux/X11/RootProperties.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/SystemViews.hpp"

#include <set>
#include <utility>
#include <vector>

namespace trelvan {

/// The desktop's views by the window manager's protocol, the shells' own interfaces and, where neither
/// serves, the shortcuts that are known. Any thread: the work is handed to the main thread.
class LinuxSystemViews : public SystemViews {
  public:
    LinuxSystemViews(XConnection& connection, MainQueue& mainQueue, DesktopKind desktop,
                     const HotKeyTable& hotKeys)
        : properties_(connection), mainQueue_(mainQueue), desktop_(desktop), hotKeys_(hotKeys) {}

    [[nodiscard]] bool show(SystemView view, ByKeys byKeys) override;
    [[nodiscard]] bool moveDesktop(DesktopDirection direction, ByKeys byKeys) override;
    void setMissingObserver(MissingObserver observer) override { missingObserver_ = std::move(observer); }
    [[nodiscard]] std::vector<SystemView> offered() const override;

  private:
    void showNow(SystemView view, const ByKeys& byKeys);
    /// By the shell's own interface, else by keys, else by a program.
    void showByShell(SystemView view, const ByKeys& byKeys);
    void showByKeys(SystemView view, const ByKeys& byKeys);
    [[nodiscard]] bool takeScreenshot(SystemView view) const;
    [[nodiscard]] bool toggleShowDesktop();
    /// False where the window manager's protocol has no desktops.
    [[nodiscard]] bool goToNeighbour(DesktopDirection direction);
    void reportMissing(SystemView view);

    RootProperties properties_;
    MainQueue& mainQueue_;
    DesktopKind desktop_;
    const HotKeyTable& hotKeys_;
    MissingObserver missingObserver_;
    std::set<SystemView> reported_;
};

}  // namespace trelvan
