#include "UI/RadialButtons.hpp"

#include "Core/RadialLayout.hpp"

#include <QAccessible>
#include <QPainter>
#include <QTextLayout>
#include <QTransform>
#include <utility>

namespace trelvan {

namespace {

constexpr int captionPixels = 12;
constexpr int lineHeight = 14;
constexpr int digitInset = 6;
constexpr double plateCorner = 16;
/// Between a small control and the large one that has a notch for it.
constexpr double notchGap = 2;
/// How far a drawn state reaches beyond a button's own shape.
constexpr int halo = 4;

QFont captionFont() {
    QFont font;
    font.setPixelSize(captionPixels);
    font.setWeight(QFont::Medium);
    return font;
}

/// The symbol in a square of that size around the centre.
void drawSymbol(QPainter& painter, const QPainterPath& symbol, QPointF centre, double size,
                const QColor& color) {
    QTransform transform;
    transform.translate(centre.x() - size / 2, centre.y() - size / 2);
    transform.scale(size, size);
    painter.fillPath(transform.map(symbol), color);
}

QRectF around(Point centre, double width, double top, double height) {
    return {centre.x - width / 2, centre.y + top, width, height};
}

}  // namespace

int captionWidth(std::size_t entryCount) {
    constexpr double side = RadialEntryButton::plateSize;
    const BottomLeftRect wide{0, 0, 2000, 2000};
    const auto entries = RadialLayout::make({1000, 1000}, wide, entryCount).entries;
    for (int width = static_cast<int>(RadialLayout::captionWidth); width > 0; width -= 2) {
        const auto caption = [width](Point centre) {
            return around(centre, width, side / 2 + RadialEntryButton::captionGap,
                          RadialEntryButton::captionHeight);
        };
        bool isFree = true;
        for (std::size_t one = 0; one < entries.size(); ++one) {
            for (std::size_t other = 0; other < entries.size(); ++other) {
                if (one == other) continue;
                isFree = isFree && !caption(entries[one]).intersects(caption(entries[other])) &&
                         !caption(entries[one]).intersects(around(entries[other], side, -side / 2, side));
            }
        }
        if (isFree) return width;
    }
    return 0;
}

// RadialButton

RadialButton::RadialButton(const QString& name, const RadialTheme& theme, QWidget* parent)
    : QPushButton(parent), theme_(theme) {
    setAccessibleName(name);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

void RadialButton::setCurrent(bool current) {
    if (std::exchange(isCurrent_, current) == current) return;
    update();
    if (!current) return;
    QAccessibleEvent event(this, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void RadialButton::setHovered(bool hovered) {
    if (std::exchange(isHovered_, hovered) != hovered) update();
}

void RadialButton::enterEvent(QEnterEvent* event) {
    QPushButton::enterEvent(event);
    setHovered(true);
    if (onEnter) onEnter();
}

void RadialButton::leaveEvent(QEvent* event) {
    QPushButton::leaveEvent(event);
    setHovered(false);
}

// RadialEntryButton

RadialEntryButton::RadialEntryButton(const QString& name, const QPainterPath& symbol, int number,
                                     int captionWidth, const RadialTheme& theme, QWidget* parent)
    : RadialButton(name, theme, parent), symbol_(symbol), number_(number) {
    setFixedSize(qMax(captionWidth, plateSize + 2 * halo), halo + plateSize + captionGap + captionHeight);
    breakLines(name);
}

void RadialEntryButton::showIcon(QPixmap icon) {
    icon_ = std::move(icon);
    update();
}

void RadialEntryButton::drawIcon(QPainter& painter, QPointF centre) const {
    if (!icon_) return;
    if (icon_->isNull()) {
        drawSymbol(painter, symbol_, centre, iconSide * 0.8,
                   isLit() ? theme().accent : theme().secondaryText);
        return;
    }
    const QSizeF size = icon_->deviceIndependentSize();
    painter.drawPixmap(QPointF(qRound(centre.x() - size.width() / 2), qRound(centre.y() - size.height() / 2)),
                       *icon_);
}

void RadialEntryButton::breakLines(const QString& name) {
    const QFont font = captionFont();
    const QFontMetricsF metrics(font);
    QTextLayout layout(name.simplified(), font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid() && !layout.text().isEmpty()) {
        line.setLineWidth(width());
        const QString text = layout.text();
        lines_ << text.left(line.textLength()).trimmed();
        const QString rest = text.mid(line.textLength()).trimmed();
        if (!rest.isEmpty()) lines_ << metrics.elidedText(rest, Qt::ElideRight, width());
    }
    layout.endLayout();
}

void RadialEntryButton::place(QPointF centre) {
    move(qRound(centre.x() - width() / 2.0), qRound(centre.y() - plateSize / 2.0 - halo));
}

QRectF RadialEntryButton::plate() const {
    return {(width() - plateSize) / 2.0, halo, plateSize, plateSize};
}

QRectF RadialEntryButton::plateFrame() const {
    return plate().translated(pos());
}

QRectF RadialEntryButton::captionFrame() const {
    if (lines_.isEmpty()) return {};
    const double height = lineHeight * static_cast<double>(lines_.size());
    return QRectF(0, halo + plateSize + captionGap, width(), height).translated(pos());
}

bool RadialEntryButton::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void RadialEntryButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF shape = plate();
    if (isDown()) shape.adjust(2, 2, -2, -2);
    painter.setPen(isLit() ? QPen(theme().accent, 2) : QPen(theme().plateEdge, 1));
    painter.setBrush(isLit() ? theme().plateHovered : theme().plate);
    painter.drawRoundedRect(shape.adjusted(0.5, 0.5, -0.5, -0.5), plateCorner, plateCorner);

    drawIcon(painter, shape.center());

    QFont digit = captionFont();
    digit.setPixelSize(captionPixels - 2);
    painter.setFont(digit);
    painter.setPen(isLit() ? theme().accent : theme().secondaryText);
    painter.drawText(shape.adjusted(digitInset, digitInset / 2.0, 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     QString::number(number_));

    painter.setFont(captionFont());
    painter.setPen(theme().text);
    double top = halo + plateSize + captionGap;
    for (const QString& line : lines_) {
        painter.drawText(QRectF(0, top, width(), lineHeight), Qt::AlignHCenter | Qt::AlignVCenter, line);
        top += lineHeight;
    }
}

// RadialControl

RadialControl::RadialControl(const QString& name, const QPainterPath& symbol, int size, int symbolSize,
                             const RadialTheme& theme, QWidget* parent)
    : RadialButton(name, theme, parent), symbol_(symbol), symbolSize_(symbolSize) {
    setFixedSize(size, size);
    setToolTip(name);
}

void RadialControl::makeRoomFor(const RadialControl& other) {
    notches_.addEllipse(
        QRectF(other.geometry()).translated(-pos()).adjusted(-notchGap, -notchGap, notchGap, notchGap));
}

void RadialControl::place(QPointF centre) {
    move(qRound(centre.x() - width() / 2.0), qRound(centre.y() - height() / 2.0));
}

bool RadialControl::hitButton(const QPoint& position) const {
    const QPointF offset = QPointF(position) - QRectF(rect()).center();
    return QPointF::dotProduct(offset, offset) <= width() * width() / 4.0;
}

void RadialControl::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = isDown() ? 2.5 : 1.5;
    QPainterPath disc;
    disc.addEllipse(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    painter.setPen(isLit() ? QPen(theme().accent, 2) : QPen(theme().plateEdge, 1));
    painter.setBrush(isLit() ? theme().plateHovered : theme().plate);
    painter.drawPath(disc.subtracted(notches_));
    drawSymbol(painter, symbol_, QRectF(rect()).center(), symbolSize_,
               isLit() ? theme().accent : theme().text);
}

}  // namespace trelvan
