#include "UI/Components/TextField.hpp"

#include "UI/Components/Painting.hpp"

#include <utility>

namespace trelvan {

TextField::TextField(Look& look, UiText name, UiText placeholder, QWidget* parent)
    : QLineEdit(parent), look_(look), name_(std::move(name)), placeholder_(std::move(placeholder)) {
    constexpr int fieldHeight = 34;
    setFrame(false);
    setFixedHeight(fieldHeight);
    setTextMargins(space::small, 0, space::small, 0);
    follows_ = look_.follow([this] {
        setFont(fontOf(TypeRole::body));
        setAccessibleName(look_.text(name_));
        setPlaceholderText(look_.text(placeholder_));
        QPalette colors = look_.theme().palette();
        // The ground is drawn with its round corners.
        colors.setColor(QPalette::Base, Qt::transparent);
        setPalette(colors);
    });
}

void TextField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        drawBox(painter, rect(), radius::control, look_.theme().control, look_.theme().controlEdge);
    }
    QLineEdit::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    drawFocusRing(painter, rect(), radius::control, look_.theme());
}

}  // namespace trelvan
