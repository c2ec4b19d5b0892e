#include "UI/Components/Sheet.hpp"

#include "UI/Components/Label.hpp"
#include "UI/Components/Painting.hpp"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <utility>

namespace trelvan {

namespace {

constexpr int sheetWidth = 420;
constexpr int sheetTop = 96;

}  // namespace

class Sheet::Panel final : public QWidget {
  public:
    Panel(Look& look, QWidget* parent) : QWidget(parent), look_(look) {}

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        drawBox(painter, rect(), radius::card, look_.theme().sheet, look_.theme().cardEdge);
    }

  private:
    Look& look_;
};

Sheet::Sheet(Look& look, QWidget* covered, Content content)
    : Overlay(look, covered), content_(std::move(content)) {
    panel_ = new Panel(look, this);
    auto* column = new QVBoxLayout(panel_);
    column->setContentsMargins(space::huge, space::huge, space::huge, space::large);
    column->setSpacing(space::medium);
    column->addWidget(
        new Label(look, content_.title, TypeRole::cardTitle, ColorRole::text, Label::Fit::wraps));
    if (!content_.message.isEmpty())
        column->addWidget(
            new Label(look, content_.message, TypeRole::body, ColorRole::secondaryText, Label::Fit::wraps));
    if (content_.body != nullptr) column->addWidget(content_.body);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, space::small, 0, 0);
    buttons->setSpacing(space::small);
    cancel_ = new TextButton(look, content_.cancel);
    cancel_->onClick = [this] { close(); };
    confirm_ = new TextButton(look, content_.confirm,
                              content_.isDangerous ? TextButton::Kind::danger : TextButton::Kind::primary);
    confirm_->onClick = [this] { confirm(); };
    buttons->addStretch(1);
    buttons->addWidget(cancel_);
    buttons->addWidget(confirm_);
    column->addLayout(buttons);
    follows_ = look.follow([this] {
        setAccessibleName(this->look().text(content_.title));
        setAccessibleDescription(this->look().text(content_.message));
        place();
        update();
    });
}

void Sheet::open() {
    Overlay::open(content_.body != nullptr ? content_.body : content_.isDangerous ? cancel_ : confirm_);
}

void Sheet::confirm() {
    if (!isOpen() || !confirm_->isEnabled()) return;
    if (const auto call = content_.onConfirm) call();
    close();
}

void Sheet::place() {
    const int wide = qMin(sheetWidth, width() - 2 * space::huge);
    const int height = panel_->layout()->hasHeightForWidth() ? panel_->layout()->heightForWidth(wide)
                                                             : panel_->layout()->sizeHint().height();
    panel_->setGeometry((width() - wide) / 2, sheetTop, wide, height);
}

void Sheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return confirm();
    Overlay::keyPressEvent(event);
}

void Sheet::mousePressEvent(QMouseEvent* event) {
    // What lies beneath is out of reach meanwhile.
    event->accept();
}

void Sheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), look().theme().scrim);
}

}  // namespace trelvan
