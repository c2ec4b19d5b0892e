#pragma once

#include "UI/Components/Look.hpp"

#include <QWidget>
#include <string>

namespace trelvan {

/// A symbol of the catalogue in a colour of the theme. It is decoration: what it means is said by the text
/// beside it.
class SymbolIcon final : public QWidget {
  public:
    SymbolIcon(Look& look, std::string symbol, int side = 16, ColorRole color = ColorRole::secondaryText,
               QWidget* parent = nullptr);

    void setSymbol(std::string symbol);
    void setColor(ColorRole color);
    [[nodiscard]] const std::string& symbol() const { return symbol_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Look& look_;
    std::string symbol_;
    ColorRole color_;
    Subscription follows_;
};

}  // namespace trelvan
