#pragma once

#include "UI/Components/Look.hpp"

#include <QLabel>

namespace trelvan {

/// A text that follows language and theme. One that wraps takes as many lines as it needs; one that elides
/// leaves out its middle and has the whole as its tooltip.
class Label final : public QLabel {
  public:
    enum class Fit { whole, wraps, elides };

    Label(Look& look, UiText text, TypeRole type = TypeRole::body, ColorRole color = ColorRole::text,
          Fit fit = Fit::whole, QWidget* parent = nullptr);

    void setText(UiText text);
    void setColor(ColorRole color);
    [[nodiscard]] const QString& shownText() const { return look_.text(text_); }

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void apply();
    void updateTooltip();
    [[nodiscard]] int wholeWidth() const;

    Look& look_;
    UiText text_;
    TypeRole type_;
    ColorRole color_;
    Fit fit_;
    Subscription follows_;
};

}  // namespace trelvan
