#pragma once

#include "UI/Components/Popover.hpp"
#include "UI/Components/Sheet.hpp"
#include "UI/Models/EscapeChain.hpp"
#include "UI/Models/SettingsTab.hpp"
#include "UI/SettingsServices.hpp"

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace trelvan {

/// What the window does for the panels in it. It outlives them. Main thread.
class PanelHost {
  public:
    virtual ~PanelHost() = default;

    [[nodiscard]] virtual Look& look() = 0;
    [[nodiscard]] virtual const SettingsServices& services() const = 0;

    /// Says at the window's foot what has happened, with a button that takes it back; no button without an
    /// action.
    virtual void tell(UiText text, UiText action = {}, std::function<void()> onAction = {}) = 0;
    /// Opens a sheet, in the place of one that is open; it is gone once it is closed.
    virtual Sheet& ask(Sheet::Content content) = 0;
    /// Opens a menu under the widget, in the place of one that is open.
    virtual void openMenu(QWidget* anchor, UiText name, std::vector<Popover::Item> items) = 0;
    virtual void selectTab(SettingsTab tab) = 0;

    /// Keeps the window open when another one is activated, for as long as the subscription lives: while a
    /// recorder records, a file is chosen, something alerts or counts down.
    [[nodiscard]] virtual Subscription keepOpen() = 0;
    /// Wants the Escape key for as long as the subscription lives. While a recorder wants it, the window's
    /// own shortcuts do nothing.
    [[nodiscard]] virtual Subscription onEscape(EscapeLevel level, std::function<void()> handler) = 0;
    /// Told each time the window is closed.
    [[nodiscard]] virtual Subscription onClose(std::function<void()> handler) = 0;
};

/// Makes the panel of a tab when it is shown for the first time.
using PanelFactory = std::function<std::unique_ptr<QWidget>(PanelHost& host)>;
/// A tab without a factory says that its page is still missing.
using PanelFactories = std::map<SettingsTab, PanelFactory>;

/// The panels that there are.
[[nodiscard]] PanelFactories standardPanels();

}  // namespace trelvan
