#pragma once

#include "UI/Components/Accessible.hpp"
#include "UI/Components/Overlay.hpp"

#include <functional>
#include <string>
#include <vector>

namespace trelvan {

class ComponentButton;

/// A menu inside the window, under the button that opened it. A click beside it closes it, and so does Escape
/// (by the window). It grabs nothing, unlike the toolkit's menus.
class Popover final : public Overlay {
  public:
    struct Item {
        UiText text = {};
        std::string symbol = {};
        bool isEnabled = true;
        bool isDangerous = false;
        /// Whether it stands apart from those above.
        bool beginsGroup = false;
        std::function<void()> onChoose = {};
    };

    /// Both outlive it.
    Popover(Look& look, QWidget* covered, QWidget* anchor);

    void open(UiText name, std::vector<Item> items);
    /// Its items, in order.
    [[nodiscard]] const std::vector<ComponentButton*>& items() const { return rows_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void place() override;

  private:
    class Panel;
    class Row;

    void step(int by);
    void choose(std::size_t index);

    QWidget* anchor_;
    Panel* panel_ = nullptr;
    std::vector<Item> choices_;
    std::vector<ComponentButton*> rows_;
};

}  // namespace trelvan
