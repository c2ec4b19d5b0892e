#include "UI/Components/SymbolIcon.hpp"

#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QPainter>
#include <utility>

namespace trelvan {

SymbolIcon::SymbolIcon(Look& look, std::string symbol, int side, ColorRole color, QWidget* parent)
    : QWidget(parent), look_(look), symbol_(std::move(symbol)), color_(color) {
    setFixedSize(side, side);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    follows_ = look_.follow([this] { update(); });
}

void SymbolIcon::setSymbol(std::string symbol) {
    symbol_ = std::move(symbol);
    update();
}

void SymbolIcon::setColor(ColorRole color) {
    color_ = color;
    update();
}

void SymbolIcon::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    symbols::draw(painter, symbol_, rect(), look_.theme().color(color_));
}

}  // namespace trelvan
