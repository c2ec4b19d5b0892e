#pragma once

#include "Core/SmartButtonMenu.hpp"
#include "Core/SmartButtonPanels.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/Workspace.hpp"
#include "Utilities/LifetimeToken.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Published.hpp"
#include "Utilities/PublishedBy.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace trelvan {

/// The radial menu at the pointer: opens it, does what is chosen in it, and closes it. There is at most one.
/// Main thread.
class SmartButtonController final : public SmartButtonMenu {
  public:
    struct Ports {
        const Screens& screens;
        EventPoster& poster;
        Workspace& workspace;
        BackgroundQueue& background;
        MainQueue& mainQueue;
        const SessionState& session;
    };

    SmartButtonController(const Ports& ports, SmartButtonPanels& panels, Logger& logger);
    SmartButtonController(const SmartButtonController&) = delete;
    SmartButtonController& operator=(const SmartButtonController&) = delete;

    /// Opens the menu on the screen under the pointer, in the place of one that is open. A configuration
    /// without entries is named in the log and shows nothing; a session that is locked or not the active one
    /// shows no menu, and closes one that is open.
    void show(const SmartButtonConfiguration& configuration) override;

    /// Whether the menu is open.
    PublishedBy<bool, SmartButtonController> isShown;
    /// Counts the requests to see the Smart Button's page of the settings, once the editor is open.
    PublishedBy<std::uint64_t, SmartButtonController> openSmartButtonSettings;

    /// Makes the content of the editor's window; without one the editor does not open.
    SmartButtonPanels::ContentProvider editorContentProvider;

    /// Told of an application that was chosen and is not there, once the menu is closed.
    std::function<void(const SmartButtonApp& app)> onMissing;

  private:
    /// The screen that shows the menu; none when there is no screen at all.
    [[nodiscard]] std::optional<BottomLeftRect> screenUnder(BottomLeftPoint pointer) const;
    [[nodiscard]] SmartButtonRadialView viewOf(const SmartButtonConfiguration& configuration,
                                               BottomLeftPoint pointer, const BottomLeftRect& screen);
    void launch(const SmartButtonApp& app);
    void sendShortcut(const SmartButtonApp& app);
    void openApplications();
    void openEditor();
    void closePanel();

    Ports ports_;
    SmartButtonPanels& panels_;
    Logger& logger_;
    std::unique_ptr<SmartButtonPanels::Panel> panel_;
    /// Kept for the next time.
    std::unique_ptr<SmartButtonPanels::Editor> editorPanel_;
    Subscription sessionObserver_;
    /// Last, for the view's functions and what was put into the main queue.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
