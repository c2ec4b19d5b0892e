#pragma once

#include "UI/Components/Look.hpp"

#include <QLabel>
#include <string>

namespace trelvan {

/// A short mark in a colour beside something: what it is, or how it stands.
class Badge final : public QLabel {
  public:
    Badge(Look& look, UiText text, std::string symbol = {}, ColorRole color = ColorRole::secondaryText,
          QWidget* parent = nullptr);

    void setText(UiText text);
    void setSymbol(std::string symbol);
    void setColor(ColorRole color);
    [[nodiscard]] const QString& shownText() const { return look_.text(text_); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void apply();

    Look& look_;
    UiText text_;
    std::string symbol_;
    ColorRole color_;
    Subscription follows_;
};

/// A round-ended sign that lights up, such as one for each button that is held.
class Pill final : public QLabel {
  public:
    Pill(Look& look, UiText text, QWidget* parent = nullptr);

    void setText(UiText text);
    void setLit(bool isLit);
    [[nodiscard]] bool isLit() const { return isLit_; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void apply();

    Look& look_;
    UiText text_;
    bool isLit_ = false;
    Subscription follows_;
};

}  // namespace trelvan
