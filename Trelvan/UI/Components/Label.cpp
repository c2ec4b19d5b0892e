#include "UI/Components/Label.hpp"

#include <QPainter>
#include <utility>

namespace trelvan {

Label::Label(Look& look, UiText text, TypeRole type, ColorRole color, Fit fit, QWidget* parent)
    : QLabel(parent), look_(look), text_(std::move(text)), type_(type), color_(color), fit_(fit) {
    // Names may hold what looks like mark-up.
    setTextFormat(Qt::PlainText);
    setWordWrap(fit_ == Fit::wraps);
    if (fit_ == Fit::wraps) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }
    follows_ = look_.follow([this] { apply(); });
}

void Label::setText(UiText text) {
    text_ = std::move(text);
    apply();
}

void Label::setColor(ColorRole color) {
    color_ = color;
    apply();
}

void Label::apply() {
    setFont(fontOf(type_));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, look_.theme().color(color_));
    colors.setColor(QPalette::Disabled, QPalette::WindowText, look_.theme().disabledText);
    setPalette(colors);
    QLabel::setText(shownText());
    updateTooltip();
}

int Label::wholeWidth() const {
    return fontMetrics().horizontalAdvance(shownText());
}

QSize Label::sizeHint() const {
    if (fit_ != Fit::elides) return QLabel::sizeHint();
    return {wholeWidth() + 1, fontMetrics().height()};
}

QSize Label::minimumSizeHint() const {
    constexpr int fewLetters = 40;
    if (fit_ == Fit::elides) return {qMin(wholeWidth() + 1, fewLetters), fontMetrics().height()};
    return QLabel::minimumSizeHint();
}

void Label::updateTooltip() {
    if (fit_ == Fit::elides) setToolTip(wholeWidth() > width() ? shownText() : QString());
}

void Label::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    updateTooltip();
}

void Label::paintEvent(QPaintEvent* event) {
    if (fit_ != Fit::elides) return QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment()),
                     fontMetrics().elidedText(shownText(), Qt::ElideMiddle, width()));
}

}  // namespace trelvan
