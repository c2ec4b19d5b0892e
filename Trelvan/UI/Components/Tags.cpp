#include "UI/Components/Tags.hpp"

#include "UI/Components/Painting.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <utility>

namespace trelvan {

namespace {

constexpr int badgeHeight = 22;
constexpr int badgeSymbol = 12;
constexpr int pillHeight = 26;

}  // namespace

Badge::Badge(Look& look, UiText text, std::string symbol, ColorRole color, QWidget* parent)
    : QLabel(parent), look_(look), text_(std::move(text)), symbol_(std::move(symbol)), color_(color) {
    setTextFormat(Qt::PlainText);
    setFixedHeight(badgeHeight);
    follows_ = look_.follow([this] { apply(); });
}

void Badge::setText(UiText text) {
    text_ = std::move(text);
    apply();
}

void Badge::setSymbol(std::string symbol) {
    symbol_ = std::move(symbol);
    apply();
}

void Badge::setColor(ColorRole color) {
    color_ = color;
    apply();
}

void Badge::apply() {
    setFont(fontOf(TypeRole::body));
    QLabel::setText(shownText());
    updateGeometry();
    update();
}

QSize Badge::sizeHint() const {
    const int mark = symbol_.empty() ? 0 : badgeSymbol + 6;
    return {fontMetrics().horizontalAdvance(text()) + mark + 2, badgeHeight};
}

void Badge::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QColor color = look_.theme().color(color_);
    int left = 0;
    if (!symbol_.empty()) {
        symbols::draw(painter, symbol_, QRectF(0, (height() - badgeSymbol) / 2.0, badgeSymbol, badgeSymbol),
                      color);
        left = badgeSymbol + 6;
    }
    painter.setPen(color);
    painter.drawText(QRect(left, 0, width() - left, height()), Qt::AlignVCenter, text());
}

Pill::Pill(Look& look, UiText text, QWidget* parent) : QLabel(parent), look_(look), text_(std::move(text)) {
    setTextFormat(Qt::PlainText);
    setFixedHeight(pillHeight);
    follows_ = look_.follow([this] { apply(); });
}

void Pill::setText(UiText text) {
    text_ = std::move(text);
    apply();
}

void Pill::setLit(bool isLit) {
    if (std::exchange(isLit_, isLit) != isLit) update();
}

void Pill::apply() {
    setFont(fontOf(TypeRole::body));
    QLabel::setText(look_.text(text_));
    updateGeometry();
    update();
}

QSize Pill::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * space::medium, pillHeight};
}

void Pill::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Theme& theme = look_.theme();
    drawBox(painter, rect(), radius::pill, isLit_ ? theme.accent : theme.control,
            isLit_ ? QColor(Qt::transparent) : theme.controlEdge);
    painter.setPen(isLit_ ? theme.onAccent : theme.text);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace trelvan
