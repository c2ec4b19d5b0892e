#pragma once

#include "Core/Model/SmartButton.hpp"
#include "Core/RadialLayout.hpp"
#include "Utilities/Geometry.hpp"

#include <functional>
#include <memory>
#include <vector>

namespace trelvan {

/// What the overlay of the radial menu shows, and whom it tells. The functions may be called after the menu's
/// owner is gone and do nothing then; each may let go of the panel that calls it.
struct SmartButtonRadialView {
    /// All that are configured; the first `RadialLayout::maxEntries` are shown.
    std::vector<SmartButtonApp> apps;
    /// Where the pointer was when the menu opened, and the screen that shows it.
    BottomLeftPoint pointerLocation;
    BottomLeftRect screenFrame;
    std::function<void(const SmartButtonApp& app)> onLaunch;
    std::function<void()> onEdit;
    std::function<void()> onOpenApplications;
    std::function<void()> onDismiss;
    double radius = RadialLayout::defaultRadius;
    double outerRingRadius = RadialLayout::defaultOuterRingRadius;

    [[nodiscard]] RadialLayout layout() const {
        return RadialLayout::make(pointerLocation, screenFrame, apps.size(), radius, outerRingRadius);
    }
};

/// The windows of the radial menu, made by whichever toolkit draws the interface. Main thread.
class SmartButtonPanels {
  public:
    /// A window on the screen; letting go of it takes it away at once and gives its memory back.
    class Panel {
      public:
        virtual ~Panel() = default;
    };

    /// The settings content in the editor window, as the toolkit has it.
    class Content {
      public:
        virtual ~Content() = default;
    };
    using ContentProvider = std::function<std::unique_ptr<Content>()>;

    /// The editor's window: titled "Trelvan — Smart Button", 900 by 960 points, at least 780 by 860. Closing
    /// it hides it.
    class Editor {
      public:
        virtual ~Editor() = default;
        virtual void setContent(std::unique_ptr<Content> content) = 0;
        /// In the middle of the screen, with the keyboard, in front.
        virtual void show() = 0;
    };

    virtual ~SmartButtonPanels() = default;

    /// Shows the overlay over the whole screen, ahead of every application, taking the focus from none.
    [[nodiscard]] virtual std::unique_ptr<Panel> showOverlay(SmartButtonRadialView view) = 0;
    /// Brings the program to the front, ahead of the other applications.
    virtual void activate() = 0;
    [[nodiscard]] virtual std::unique_ptr<Editor> makeEditor() = 0;
};

}  // namespace trelvan
