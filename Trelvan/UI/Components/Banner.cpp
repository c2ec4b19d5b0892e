#include "UI/Components/Banner.hpp"

#include "UI/Components/Painting.hpp"
#include "UI/Components/SymbolIcon.hpp"

#include <QHBoxLayout>
#include <utility>

namespace trelvan {

Banner::Banner(Look& look, std::string symbol, UiText text, UiText action, std::function<void()> onAction,
               QWidget* parent)
    : QWidget(parent), look_(look), text_(std::move(text)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(space::large, space::small, space::small, space::small);
    row->setSpacing(space::medium);
    row->addWidget(new SymbolIcon(look, std::move(symbol), 20, ColorRole::warning));
    row->addWidget(new Label(look, text_, TypeRole::body, ColorRole::text, Label::Fit::wraps), 1);
    button_ = new TextButton(look, std::move(action));
    button_->onClick = std::move(onAction);
    row->addWidget(button_);
    follows_ = look_.follow([this] {
        setAccessibleName(look_.text(text_));
        update();
    });
}

void Banner::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Banner::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QColor tint = look_.theme().warning;
    tint.setAlphaF(0.12F);
    QColor edge = look_.theme().warning;
    edge.setAlphaF(0.55F);
    drawBox(painter, rect(), radius::card, tint, edge);
}

}  // namespace trelvan
