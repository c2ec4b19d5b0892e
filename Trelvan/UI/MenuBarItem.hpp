#pragma once

#include "UI/Models/MenuBarModel.hpp"

#include <QRect>
#include <functional>
#include <memory>
#include <vector>

class QIcon;

namespace trelvan {

/// The item in the desktop's status area, with its menu. Main thread.
class MenuBarItem {
  public:
    MenuBarItem();
    MenuBarItem(const MenuBarItem&) = delete;
    MenuBarItem& operator=(const MenuBarItem&) = delete;
    ~MenuBarItem();

    /// Told of a click, with the item's place on the screen, or the pointer's where the desktop keeps the
    /// item's to itself.
    std::function<void(const QRect& place)> onClick;
    std::function<void(const MenuEntry& entry)> onChoose;

    void show(const MenuBarLabel& label);
    void setMenu(const std::vector<MenuEntry>& entries, AppLanguage language);
    /// Closes the menu if it is open: it grabs keyboard and pointer while it is.
    void closeMenu();

  private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

/// The item's symbol for a panel whose colour is not known: light, with a dark edge.
[[nodiscard]] QIcon menuBarIcon(std::string_view symbol);

}  // namespace trelvan
