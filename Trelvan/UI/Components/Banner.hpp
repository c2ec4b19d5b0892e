#pragma once

#include "UI/Components/Buttons.hpp"
#include "UI/Components/Label.hpp"

#include <QWidget>
#include <functional>
#include <string>

namespace trelvan {

/// Something that is wrong with the whole program, with the button that leads out of it.
class Banner final : public QWidget, public AccessibleAs {
  public:
    Banner(Look& look, std::string symbol, UiText text, UiText action, std::function<void()> onAction,
           QWidget* parent = nullptr);

    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::AlertMessage; }
    [[nodiscard]] TextButton& button() { return *button_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    Look& look_;
    UiText text_;
    TextButton* button_;
    Subscription follows_;
};

}  // namespace trelvan
