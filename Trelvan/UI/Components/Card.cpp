#include "UI/Components/Card.hpp"

#include "UI/Components/Painting.hpp"

#include <QHBoxLayout>
#include <utility>

namespace trelvan {

Card::Card(Look& look, UiText title, std::string symbol, QWidget* parent)
    : QWidget(parent), look_(look), title_(std::move(title)) {
    rows_ = new QVBoxLayout(this);
    rows_->setContentsMargins(space::large, space::medium, space::large, space::medium);
    rows_->setSpacing(space::small);
    auto* head = new QHBoxLayout;
    head->setSpacing(space::small);
    head->addWidget(new SymbolIcon(look, std::move(symbol), 18));
    head->addWidget(new Label(look, title_, TypeRole::cardTitle), 1);
    rows_->addLayout(head);
    follows_ = look_.follow([this] {
        setAccessibleName(look_.text(title_));
        update();
    });
}

void Card::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBox(painter, rect(), radius::card, look_.theme().card, look_.theme().cardEdge);
}

FormRow::FormRow(Look& look, UiText label, UiText help, QWidget* control, int labelWidth, QWidget* parent)
    : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(space::medium);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    auto* name = new Label(look, std::move(label), TypeRole::body, ColorRole::text, Label::Fit::wraps);
    name->setBuddy(control);
    texts->addStretch(1);
    texts->addWidget(name);
    if (!help.isEmpty())
        texts->addWidget(
            new Label(look, std::move(help), TypeRole::caption, ColorRole::secondaryText, Label::Fit::wraps));
    texts->addStretch(1);
    setMinimumHeight(space::rowHeight);
    if (labelWidth > 0) {
        name->setFixedWidth(labelWidth);
        row->addLayout(texts);
        row->addWidget(control);
        row->addStretch(1);
    } else {
        row->addLayout(texts, 1);
        row->addWidget(control);
    }
}

}  // namespace trelvan
