#include "UI/Components/EmptyState.hpp"

#include "UI/Components/SymbolIcon.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <utility>

namespace trelvan {

EmptyState::EmptyState(Look& look, std::string symbol, UiText sentence, UiText action,
                       std::function<void()> onAction, QWidget* parent)
    : QWidget(parent) {
    constexpr int symbolSide = 44;
    constexpr int sentenceWidth = 420;
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(space::huge, 2 * space::huge, space::huge, 2 * space::huge);
    column->setSpacing(space::large);
    column->addStretch(1);
    column->addWidget(new SymbolIcon(look, std::move(symbol), symbolSide), 0, Qt::AlignHCenter);
    auto* text =
        new Label(look, std::move(sentence), TypeRole::body, ColorRole::secondaryText, Label::Fit::wraps);
    text->setAlignment(Qt::AlignHCenter);
    text->setFixedWidth(sentenceWidth);
    // In a row of its own: a column would give a centred text the height of one line.
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(text);
    row->addStretch(1);
    column->addLayout(row);
    if (!action.isEmpty()) {
        auto* button = new TextButton(look, std::move(action));
        button->onClick = std::move(onAction);
        column->addWidget(button, 0, Qt::AlignHCenter);
    }
    column->addStretch(1);
}

}  // namespace trelvan
