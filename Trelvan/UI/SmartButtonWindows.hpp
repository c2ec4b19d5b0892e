#pragma once

#include "Core/SmartButtonPanels.hpp"
#include "Platform/Appearance.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"
#include "UI/EntryIcons.hpp"
#include "UI/SmartButtonOverlay.hpp"

#include <QWidget>
#include <memory>

namespace trelvan {

/// The radial menu's windows in Qt Widgets. Main thread.
class SmartButtonWindows final : public SmartButtonPanels {
  public:
    struct Ports {
        const Screens& screens;
        const Appearance& appearance;
        const Workspace& workspace;
        const UserDefaults& defaults;
        Timers& timers;
    };

    /// The settings content, as a widget without a parent.
    class WidgetContent final : public Content {
      public:
        explicit WidgetContent(std::unique_ptr<QWidget> content) : widget(std::move(content)) {}
        std::unique_ptr<QWidget> widget;
    };

    explicit SmartButtonWindows(const Ports& ports) : ports_(ports), icons_(ports.workspace) {}

    [[nodiscard]] std::unique_ptr<Panel> showOverlay(SmartButtonRadialView view) override;
    void activate() override;
    [[nodiscard]] std::unique_ptr<Editor> makeEditor() override;

  private:
    [[nodiscard]] SmartButtonOverlay::Look look();
    /// The toolkit's screen that shows the frame.
    [[nodiscard]] QScreen* screenOf(const BottomLeftRect& frame) const;

    Ports ports_;
    EntryIcons icons_;
};

}  // namespace trelvan
