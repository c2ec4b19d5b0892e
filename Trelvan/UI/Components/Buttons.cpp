#include "UI/Components/Buttons.hpp"

#include "UI/Components/Painting.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <utility>

namespace trelvan {

namespace {

constexpr int buttonHeight = 32;
constexpr int symbolSide = 16;
constexpr int trailingSide = 10;
constexpr int chipHeight = 28;
constexpr int chipSymbol = 12;

}  // namespace

// ComponentButton

ComponentButton::ComponentButton(Look& look, UiText text, std::string symbol, QWidget* parent)
    : QPushButton(parent), look_(look), text_(std::move(text)), symbol_(std::move(symbol)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    QObject::connect(this, &QPushButton::clicked, this, [this] {
        // The function may take this button away.
        if (const auto call = onClick) call();
    });
    // The look of a plain one at first; a button of another kind follows with its own.
    follows_ = look_.follow([this] { apply(); });  // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall)
}

void ComponentButton::setText(UiText text) {
    text_ = std::move(text);
    apply();
    updateGeometry();
}

void ComponentButton::setSymbol(std::string symbol) {
    symbol_ = std::move(symbol);
    update();
}

void ComponentButton::apply() {
    setAccessibleName(shownText());
    update();
}

void ComponentButton::enterEvent(QEnterEvent* event) {
    QPushButton::enterEvent(event);
    isHovered_ = true;
    update();
}

void ComponentButton::leaveEvent(QEvent* event) {
    QPushButton::leaveEvent(event);
    isHovered_ = false;
    update();
}

void ComponentButton::focusInEvent(QFocusEvent* event) {
    // A click needs no ring to show where it went.
    const auto reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason) isRinged_ = reason != Qt::MouseFocusReason;
    QPushButton::focusInEvent(event);
}

void ComponentButton::keyPressEvent(QKeyEvent* event) {
    isRinged_ = true;
    // The toolkit leaves Return to a dialogue's default button.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return click();
    QPushButton::keyPressEvent(event);
}

// TextButton

TextButton::TextButton(Look& look, UiText text, Kind kind, std::string symbol, QWidget* parent)
    : ComponentButton(look, std::move(text), std::move(symbol), parent), kind_(kind) {
    setFixedHeight(buttonHeight);
    apply();
}

void TextButton::apply() {
    ComponentButton::apply();
    setFont(fontOf(TypeRole::body));
    const bool isCut = fontMetrics().horizontalAdvance(shownText()) > longestText_;
    setToolTip(isCut ? shownText() : QString());
    updateGeometry();
}

int TextButton::textWidth() const {
    return qMin(fontMetrics().horizontalAdvance(shownText()), longestText_);
}

QSize TextButton::sizeHint() const {
    int width = textWidth() + 2 * space::medium + 2;
    if (!symbol().empty()) width += symbolSide + space::small;
    if (!trailing_.empty()) width += trailingSide + space::small;
    return {qMax(width, 2 * buttonHeight), buttonHeight};
}

QColor TextButton::ground() const {
    const Theme& colors = theme();
    if (!isEnabled()) return kind_ == Kind::plain ? QColor(Qt::transparent) : colors.card;
    QColor base = kind_ == Kind::primary  ? colors.accent
                  : kind_ == Kind::danger ? colors.danger
                  : kind_ == Kind::plain  ? QColor(Qt::transparent)
                                          : colors.control;
    if (!isDown() && !isHovered()) return base;
    if (kind_ == Kind::plain) return colors.hover;
    return over(colors.hover, base);
}

QColor TextButton::textColor() const {
    const Theme& colors = theme();
    if (!isEnabled()) return colors.disabledText;
    if (kind_ == Kind::primary) return colors.onAccent;
    if (kind_ == Kind::danger)
        return contrast(Qt::white, colors.danger) >= 4.5 ? QColor(Qt::white) : QColor(Qt::black);
    return colors.text;
}

void TextButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const bool hasEdge = kind_ == Kind::normal || (!isEnabled() && kind_ != Kind::plain);
    QColor edge = hasEdge ? theme().controlEdge : QColor(Qt::transparent);
    if (!isEnabled() && hasEdge) edge = theme().cardEdge;
    drawBox(painter, rect(), radius::control, ground(), edge);
    int left = space::medium;
    int right = width() - space::medium;
    if (!symbol().empty()) {
        symbols::draw(painter, symbol(), QRectF(left, (height() - symbolSide) / 2.0, symbolSide, symbolSide),
                      textColor());
        left += symbolSide + space::small;
    }
    if (!trailing_.empty()) {
        right -= trailingSide;
        symbols::draw(painter, trailing_,
                      QRectF(right, (height() - trailingSide) / 2.0, trailingSide, trailingSide),
                      theme().secondaryText);
        right -= space::small;
    }
    painter.setPen(textColor());
    const bool isCentred = symbol().empty() && trailing_.empty();
    const Qt::Alignment alignment = Qt::AlignVCenter | (isCentred ? Qt::AlignHCenter : Qt::AlignLeft);
    painter.drawText(QRect(left, 0, right - left, height()), static_cast<int>(alignment.toInt()),
                     fontMetrics().elidedText(shownText(), Qt::ElideMiddle, right - left));
    if (isRinged()) drawFocusRing(painter, rect(), radius::control, theme());
}

// IconButton

IconButton::IconButton(Look& look, UiText text, std::string symbol, QWidget* parent)
    : ComponentButton(look, std::move(text), std::move(symbol), parent) {
    setFixedSize(buttonHeight, buttonHeight);
    apply();
}

void IconButton::apply() {
    ComponentButton::apply();
    setToolTip(shownText());
}

void IconButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (isHovered() || isDown())
        drawBox(painter, rect(), radius::control, theme().hover, QColor(Qt::transparent));
    QRectF place(0, 0, symbolSide, symbolSide);
    place.moveCenter(QRectF(rect()).center());
    const QColor color = !isEnabled()  ? theme().disabledText
                         : isChecked() ? theme().accentText
                                       : theme().secondaryText;
    symbols::draw(painter, symbol(), place, color);
    if (isRinged()) drawFocusRing(painter, rect(), radius::control, theme());
}

// Chip

Chip::Chip(Look& look, UiText text, std::string symbol, QWidget* parent)
    : ComponentButton(look, std::move(text), std::move(symbol), parent) {
    setFixedHeight(chipHeight);
    apply();
}

void Chip::apply() {
    ComponentButton::apply();
    setFont(fontOf(TypeRole::body));
    updateGeometry();
}

QSize Chip::sizeHint() const {
    int width = fontMetrics().horizontalAdvance(shownText()) + 2 * space::medium + 2;
    if (!symbol().empty()) width += chipSymbol + 6;
    return {width, chipHeight};
}

void Chip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Theme& colors = theme();
    QColor ground = isChecked() ? colors.accent : colors.control;
    if (isHovered() || isDown()) ground = over(colors.hover, ground);
    const QColor text = !isEnabled() ? colors.disabledText : isChecked() ? colors.onAccent : colors.text;
    drawBox(painter, rect(), radius::pill, ground,
            isChecked()   ? QColor(Qt::transparent)
            : isEnabled() ? colors.controlEdge
                          : colors.cardEdge);
    int left = space::medium;
    if (!symbol().empty()) {
        symbols::draw(painter, symbol(), QRectF(left, (height() - chipSymbol) / 2.0, chipSymbol, chipSymbol),
                      text);
        left += chipSymbol + 6;
    }
    painter.setPen(text);
    painter.drawText(QRect(left, 0, width() - left - space::medium + 1, height()), Qt::AlignVCenter,
                     shownText());
    if (isRinged()) drawFocusRing(painter, rect(), radius::pill, colors);
}

}  // namespace trelvan
