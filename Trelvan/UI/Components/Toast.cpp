#include "UI/Components/Toast.hpp"

#include "UI/Components/Painting.hpp"

#include <QHBoxLayout>
#include <utility>

namespace trelvan {

Toast::Toast(Look& look, Timers& timers, QWidget* parent) : QWidget(parent), look_(look), timers_(timers) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(space::large, space::small, space::small, space::small);
    row->setSpacing(space::medium);
    label_ = new Label(look, {}, TypeRole::body, ColorRole::text, Label::Fit::wraps);
    row->addWidget(label_, 1);
    button_ = new TextButton(look, {});
    button_->onClick = [this] { act(); };
    row->addWidget(button_);
    setMinimumHeight(48);
    hide();
    follows_ = look_.follow([this] {
        setAccessibleName(look_.text(text_));
        update();
    });
}

void Toast::tell(UiText text, UiText action, std::function<void()> onAction) {
    text_ = text;
    label_->setText(std::move(text));
    setAccessibleName(look_.text(text_));
    button_->setVisible(!action.isEmpty());
    button_->setText(std::move(action));
    onAction_ = std::move(onAction);
    timer_ = timers_.once(duration, [this] { expire(); });
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Toast::act() {
    if (!isVisible()) return;
    timer_.reset();
    hide();
    if (const auto call = std::exchange(onAction_, nullptr)) call();
}

void Toast::expire() {
    if (underMouse() || button_->hasFocus()) {
        timer_ = timers_.once(duration, [this] { expire(); });
        return;
    }
    timer_.reset();
    onAction_ = nullptr;
    hide();
}

void Toast::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBox(painter, rect(), radius::card, look_.theme().sheet, look_.theme().controlEdge);
}

}  // namespace trelvan
