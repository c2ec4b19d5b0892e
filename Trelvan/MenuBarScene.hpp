#pragma once

#include "Platform/Platform.hpp"
#include "TrelvanApp.hpp"
#include "UI/MenuBarItem.hpp"
#include "UI/Models/InterfaceSettings.hpp"
#include "UI/SettingsWindow.hpp"

#include <functional>
#include <memory>
#include <vector>

namespace trelvan {

/// The only scene: the menu-bar item, whose click opens the settings window, and the ways to that window
/// where the desktop has no place for the item. Main thread.
class MenuBarScene {
  public:
    /// How long "pause for an hour" pauses.
    static constexpr Seconds pauseLength{3600.0};

    /// All outlive the scene. `quit` ends the program.
    MenuBarScene(TrelvanApp& app, Platform& platform, std::function<void()> quit);
    MenuBarScene(const MenuBarScene&) = delete;
    MenuBarScene& operator=(const MenuBarScene&) = delete;
    ~MenuBarScene();

    /// Shows the item once the desktop has a place for it, and lets the application appear, whether it has or
    /// not. Whether a further start of the program can reach this one.
    SingleInstance::Reach start();
    /// Opens the window without the item.
    void showWindow() { window_.open(); }

    [[nodiscard]] SettingsWindow& window() { return window_; }
    /// Null while the desktop has no place for it.
    [[nodiscard]] MenuBarItem* item() const { return item_.get(); }
    [[nodiscard]] MenuState menuState() const;
    void choose(const MenuEntry& entry);

  private:
    [[nodiscard]] SettingsServices services();
    void showItem();
    void refresh();

    TrelvanApp& app_;
    Platform& platform_;
    std::function<void()> quit_;
    InterfaceSettings settings_;
    SettingsWindow window_;
    /// Of the view in the radial menu's editor.
    SettingsViewState editorState_;
    std::unique_ptr<MenuBarItem> item_;
    std::unique_ptr<MainQueue::CoalescedTask> refreshTask_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace trelvan
