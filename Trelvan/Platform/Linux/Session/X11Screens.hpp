#pragma once

#include "Platform/Linux/X11/ActiveApplication.hpp"
#include "Platform/Linux/X11/EventOrigin.hpp"
#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/Screens.hpp"

#include <QObject>
#include <vector>

namespace trelvan {

/// Screens and own windows as Qt reports them, gathered when they change and not when they are asked for. The
/// pointer's place is exact to the pixel; inside the tap's callback it is that of the event, and the server
/// is not asked. Main thread.
class X11Screens : public QObject, public Screens {
  public:
    /// Keeps the origin where the main monitor begins. All outlive it.
    X11Screens(XEventPump& pump, const PointerSource& pointer, EventOrigin& origin);
    ~X11Screens() override;

    [[nodiscard]] std::span<const BottomLeftRect> frames() const override { return frames_; }
    [[nodiscard]] std::span<const OwnWindow> ownWindows() const override { return windows_; }
    [[nodiscard]] BottomLeftPoint pointerLocation() const override;
    [[nodiscard]] std::string_view frontmostApplication() const override { return active_.name(); }

    /// Sees the program's own windows change.
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void watchScreens();
    void readScreens();
    void readWindows();

    const PointerSource& pointer_;
    EventOrigin& origin_;
    ActiveApplication active_;
    std::vector<BottomLeftRect> frames_;
    std::vector<OwnWindow> windows_;
    bool readPending_ = false;
};

}  // namespace trelvan
