#pragma once

#include "Platform/RunLoop.hpp"
#include "UI/Components/Buttons.hpp"
#include "UI/Components/Label.hpp"

#include <QWidget>
#include <functional>
#include <memory>

namespace trelvan {

/// Says at the window's foot what has just happened, and takes it back for as long as it is there. A further
/// one takes its place. It stays while the pointer or the keyboard is on it.
class Toast final : public QWidget, public AccessibleAs {
  public:
    static constexpr Seconds duration{8.0};

    Toast(Look& look, Timers& timers, QWidget* parent = nullptr);

    /// Shows the text; without an action there is no button.
    void tell(UiText text, UiText action = {}, std::function<void()> onAction = {});
    /// Does what its button does, if it is there with one.
    void act();

    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::StatusBar; }
    [[nodiscard]] TextButton& button() { return *button_; }
    [[nodiscard]] const QString& shownText() const { return label_->shownText(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void expire();

    Look& look_;
    Timers& timers_;
    UiText text_;
    Label* label_;
    TextButton* button_;
    std::function<void()> onAction_;
    std::unique_ptr<Timers::Timer> timer_;
    Subscription follows_;
};

}  // namespace trelvan
