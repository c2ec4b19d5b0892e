#pragma once

#include "UI/Components/Look.hpp"

#include <QCheckBox>
#include <QVariantAnimation>
#include <functional>

namespace trelvan {

/// A switch. Its accessible name is the label beside it.
class Toggle final : public QCheckBox {
  public:
    explicit Toggle(Look& look, UiText name = {}, QWidget* parent = nullptr);

    /// Told of what the user does, not of `setOn`.
    std::function<void(bool isOn)> onSwitch;

    /// Shows the value without telling anybody.
    void setOn(bool isOn) { setChecked(isOn); }

    void setName(UiText name);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

  private:
    void apply();
    void slide();

    Look& look_;
    UiText name_;
    /// Where the knob is, 0 off to 1 on.
    double knob_ = 0;
    QVariantAnimation motion_;
    Subscription follows_;
};

}  // namespace trelvan
