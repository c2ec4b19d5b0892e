#pragma once

#include "UI/SettingsView.hpp"

#include <QRect>
#include <memory>
#include <optional>

namespace trelvan {

/// The settings window under the menu-bar item: an ordinary window without a grab. It is built when it is
/// first opened, closes when another window is activated unless something keeps it open, and gives its memory
/// back when it has been closed for a minute. Main thread.
class SettingsWindow {
  public:
    static constexpr Seconds giveBackDelay{60.0};
    /// A click on the item takes the window the activation too; so soon after it is the click that closed it.
    static constexpr Seconds sameClick{0.4};

    explicit SettingsWindow(SettingsServices services, PanelFactories panels = standardPanels());
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;
    ~SettingsWindow();

    /// Opens it in front, at the place of the item where that is known, else in the middle of the screen.
    void open(const std::optional<QRect>& item = {});
    void close();
    /// A click on the item: opens the window, or closes the one that is open.
    void toggle(const QRect& item);
    [[nodiscard]] bool isOpen() const;
    /// Null while its memory is given back.
    [[nodiscard]] SettingsView* view() const;
    [[nodiscard]] QWidget* frame() const;

  private:
    class Frame;

    void deactivated();
    void closed();
    void place(const std::optional<QRect>& item);

    SettingsServices services_;
    PanelFactories panels_;
    SettingsViewState state_;
    std::unique_ptr<Frame> frame_;
    std::unique_ptr<Timers::Timer> giveBack_;
    std::optional<Seconds> deactivatedAt_;
    std::shared_ptr<SettingsWindow*> alive_;
};

/// Where a window of that outer size stands at the item: below one in the upper half of the screen, else
/// above, as far as possible in the middle of it, and on the screen.
[[nodiscard]] QPoint placeAtItem(const QRect& item, const QSize& window, const QRect& screen);

}  // namespace trelvan
