#include "UI/Components/Overlay.hpp"

#include <QApplication>
#include <QEvent>

namespace trelvan {

Overlay::Overlay(Look& look, QWidget* covered) : QWidget(covered), look_(look) {
    hide();
    covered->installEventFilter(this);
}

Overlay::~Overlay() = default;

void Overlay::open(QWidget* first) {
    before_ = QApplication::focusWidget();
    isOpen_ = true;
    cover();
    show();
    raise();
    if (first != nullptr) first->setFocus(Qt::PopupFocusReason);
}

void Overlay::close() {
    if (!isOpen_) return;
    isOpen_ = false;
    const QWidget* focus = QApplication::focusWidget();
    const bool hadKeyboard = focus == nullptr || isAncestorOf(focus);
    hide();
    if (hadKeyboard && before_ != nullptr && before_->isVisible()) before_->setFocus(Qt::PopupFocusReason);
    if (const auto tell = onClosed) tell();
}

void Overlay::cover() {
    setGeometry(parentWidget()->rect());
    place();
}

bool Overlay::eventFilter(QObject* object, QEvent* event) {
    if (object == parentWidget() && event->type() == QEvent::Resize && isOpen_) cover();
    return QWidget::eventFilter(object, event);
}

QList<QWidget*> Overlay::focusable() const {
    QList<QWidget*> found;
    for (QWidget* widget : findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0)
            found << widget;
    }
    return found;
}

bool Overlay::focusNextPrevChild(bool next) {
    const auto widgets = focusable();
    if (widgets.isEmpty()) return true;
    const auto at = widgets.indexOf(QApplication::focusWidget());
    const auto count = widgets.size();
    const auto to = at < 0 ? 0 : (at + (next ? 1 : count - 1)) % count;
    widgets[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

}  // namespace trelvan
