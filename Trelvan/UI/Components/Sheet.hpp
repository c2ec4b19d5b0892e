#pragma once

#include "UI/Components/Accessible.hpp"
#include "UI/Components/Buttons.hpp"
#include "UI/Components/Overlay.hpp"

#include <functional>

namespace trelvan {

/// A question inside the window. Return confirms, Escape cancels (by the window, which knows what else wants
/// that key).
class Sheet final : public Overlay, public AccessibleAs {
  public:
    struct Content {
        UiText title = {};
        /// Under the title; may be empty.
        UiText message = {};
        UiText cancel = {};
        UiText confirm = {};
        /// What is confirmed cannot be undone: the keyboard starts on the way out.
        bool isDangerous = false;
        /// Between message and buttons; null for none. The sheet takes it and starts with the keyboard there.
        QWidget* body = nullptr;
        /// Called when it is confirmed, before the sheet closes.
        std::function<void()> onConfirm = {};
    };

    Sheet(Look& look, QWidget* covered, Content content);

    void open();
    void confirm();

    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::Dialog; }
    [[nodiscard]] TextButton& cancelButton() { return *cancel_; }
    [[nodiscard]] TextButton& confirmButton() { return *confirm_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void place() override;

  private:
    class Panel;

    Content content_;
    Panel* panel_;
    TextButton* cancel_;
    TextButton* confirm_;
    Subscription follows_;
};

}  // namespace trelvan
