#include "UI/Components/Popover.hpp"

#include "UI/Components/Buttons.hpp"
#include "UI/Components/Painting.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr int rowHeight = 32;
constexpr int symbolSide = 14;
constexpr int symbolColumn = 28;
constexpr int panelInset = 6;
constexpr int groupGap = 9;
constexpr int smallestWidth = 200;
constexpr int largestWidth = 360;
constexpr int gapToAnchor = 4;

}  // namespace

class Popover::Panel final : public QScrollArea, public AccessibleAs {
  public:
    Panel(Look& look, QWidget* parent) : QScrollArea(parent), look_(look) {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
        viewport()->setAutoFillBackground(false);
        auto* content = new QWidget;
        column_ = new QVBoxLayout(content);
        column_->setContentsMargins(panelInset, panelInset, panelInset, panelInset);
        column_->setSpacing(0);
        setWidget(content);
        content->setAutoFillBackground(false);
    }
    [[nodiscard]] QVBoxLayout& column() { return *column_; }
    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::PopupMenu; }

  protected:
    bool viewportEvent(QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            QPainter painter(viewport());
            drawBox(painter, viewport()->rect(), radius::card, look_.theme().sheet,
                    look_.theme().controlEdge);
        }
        return QScrollArea::viewportEvent(event);
    }

  private:
    Look& look_;
    QVBoxLayout* column_;
};

class Popover::Row final : public ComponentButton {
  public:
    Row(Look& look, const Item& item, QWidget* parent)
        : ComponentButton(look, item.text, item.symbol, parent), isDangerous_(item.isDangerous) {
        setFont(fontOf(TypeRole::body));
        setFixedHeight(rowHeight);
        setEnabled(item.isEnabled);
    }
    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::MenuItem; }
    [[nodiscard]] QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(shownText()) + symbolColumn + 2 * space::medium, rowHeight};
    }
    [[nodiscard]] QSize minimumSizeHint() const override {
        return {smallestWidth - 2 * panelInset, rowHeight};
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const bool isLit = hasFocus() || isHovered();
        if (isLit) drawBox(painter, rect(), radius::control, theme().hover, QColor(Qt::transparent));
        const QColor color = !isEnabled()   ? theme().disabledText
                             : isDangerous_ ? theme().danger
                                            : theme().text;
        if (!symbol().empty())
            symbols::draw(painter, symbol(),
                          QRectF(space::small, (height() - symbolSide) / 2.0, symbolSide, symbolSide), color);
        painter.setPen(color);
        const QRect place = rect().adjusted(symbolColumn, 0, -space::small, 0);
        painter.drawText(place, Qt::AlignVCenter,
                         fontMetrics().elidedText(shownText(), Qt::ElideMiddle, place.width()));
        if (isRinged()) drawFocusRing(painter, rect(), radius::control, theme());
    }

  private:
    bool isDangerous_;
};

Popover::Popover(Look& look, QWidget* covered, QWidget* anchor) : Overlay(look, covered), anchor_(anchor) {}

void Popover::open(UiText name, std::vector<Item> items) {
    delete panel_;
    rows_.clear();
    choices_ = std::move(items);
    panel_ = new Panel(look(), this);
    panel_->setAccessibleName(look().text(name));
    for (std::size_t index = 0; index < choices_.size(); ++index) {
        auto* row = new Row(look(), choices_[index], panel_->widget());
        row->onClick = [this, index] { choose(index); };
        if (choices_[index].beginsGroup && index > 0) panel_->column().addSpacing(groupGap);
        panel_->column().addWidget(row);
        rows_.push_back(row);
    }
    panel_->column().addStretch(1);
    panel_->show();
    const auto first = std::ranges::find_if(rows_, [](const auto* row) { return row->isEnabled(); });
    Overlay::open(first != rows_.end() ? *first : nullptr);
}

void Popover::choose(std::size_t index) {
    const auto call = choices_[index].onChoose;
    close();
    if (call) call();
}

void Popover::place() {
    if (panel_ == nullptr) return;
    int wide = smallestWidth;
    for (const auto* row : rows_) wide = qMax(wide, row->sizeHint().width() + 2 * panelInset);
    wide = qMin(wide, largestWidth);
    const QRect from(anchor_->mapTo(parentWidget(), QPoint()), anchor_->size());
    const int top = from.bottom() + 1 + gapToAnchor;
    const int tall = qMin(panel_->widget()->sizeHint().height(), height() - top - space::small);
    // It hangs from the anchor's nearer edge.
    const int left = from.center().x() < width() / 2 ? from.left() : from.right() + 1 - wide;
    panel_->setGeometry(qBound(space::small, left, width() - wide - space::small), top, wide, tall);
}

void Popover::step(int by) {
    const auto count = static_cast<int>(rows_.size());
    if (count == 0) return;
    const auto found = std::ranges::find(rows_, QApplication::focusWidget());
    int at = found == rows_.end() ? (by > 0 ? -1 : count) : static_cast<int>(found - rows_.begin());
    for (int tries = 0; tries < count; ++tries) {
        at = (at + by + count) % count;
        QWidget* row = rows_[static_cast<std::size_t>(at)];
        if (!row->isEnabled()) continue;
        row->setFocus(Qt::OtherFocusReason);
        panel_->ensureWidgetVisible(row, 0, panelInset);
        return;
    }
}

void Popover::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Down:
            return step(1);
        case Qt::Key_Up:
            return step(-1);
        default:
            Overlay::keyPressEvent(event);
    }
}

void Popover::mousePressEvent(QMouseEvent* event) {
    event->accept();
    close();
}

}  // namespace trelvan
