#include "UI/RadialButtons.hpp"

#include "Core/RadialLayout.hpp"

#include <QAccessible>
#include <QFontMetricsF>
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr int captionPixels = 12;
constexpr int lineHeight = 14;
constexpr int badgePixels = 12;
/// How far the badge reaches beyond the plate's corner.
constexpr double badgeOverhang = 4;
constexpr int largestCombination = 24;
constexpr int smallestCombination = 10;
constexpr double faint = 0.38;
/// A part of a word that stands alone on its line has at least so many letters.
constexpr int shortestPart = 3;
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

/// Scripts without spaces between words go on in the next line without a sign.
bool takesHyphen(QChar last) {
    const auto script = last.script();
    return script != QChar::Script_Han && script != QChar::Script_Hiragana &&
           script != QChar::Script_Katakana && script != QChar::Script_Hangul && script != QChar::Script_Thai;
}

/// How much of the text goes onto a first line of that width, and whether a hyphen follows, where a word is
/// cut that is too long for a line of its own.
std::pair<qsizetype, bool> firstLine(const QString& text, const QFontMetricsF& metrics, double width) {
    if (metrics.horizontalAdvance(text) <= width) return {text.size(), false};
    const auto fits = [&](qsizetype length, const QString& end) {
        return metrics.horizontalAdvance(text.left(length).trimmed() + end) <= width;
    };
    qsizetype space = -1;
    for (qsizetype at = text.indexOf(' '); at >= 0 && fits(at, {}); at = text.indexOf(' ', at + 1))
        space = at;
    const qsizetype wordStart = space + 1;
    qsizetype wordEnd = text.indexOf(' ', wordStart);
    if (wordEnd < 0) wordEnd = text.size();
    const bool isWordLong = metrics.horizontalAdvance(text.mid(wordStart, wordEnd - wordStart)) > width;
    if (space > 0 && !isWordLong) return {space, false};
    qsizetype cut = wordEnd - shortestPart;
    // A letter of two code units is not torn.
    while (cut > wordStart && (!fits(cut, "-") || text[cut].isLowSurrogate() || text[cut].isMark())) --cut;
    if (space > 0 && cut - wordStart < shortestPart) return {space, false};
    cut = std::max<qsizetype>(cut, 1);
    return {cut, takesHyphen(text[cut - 1])};
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
    if (icon_->isNull() && !combination_.isEmpty()) return drawCombination(painter, centre);
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
    const QFontMetricsF metrics(captionFont());
    const QString text = name.simplified();
    if (text.isEmpty()) return;
    const auto [length, isCut] = firstLine(text, metrics, width());
    lines_ << text.left(length).trimmed() + (isCut ? "-" : "");
    const QString rest = text.mid(length).trimmed();
    if (!rest.isEmpty()) lines_ << metrics.elidedText(rest, Qt::ElideRight, width());
}

void RadialEntryButton::markMissing(const QString& hint) {
    isMissing_ = true;
    setAccessibleDescription(hint);
    setToolTip(hint);
}

void RadialEntryButton::drawCombination(QPainter& painter, QPointF centre) const {
    QFont font = captionFont();
    const double room = plateSize - 8;
    int size = largestCombination;
    for (; size > smallestCombination; --size) {
        font.setPixelSize(size);
        if (QFontMetricsF(font).horizontalAdvance(combination_) <= room) break;
    }
    font.setPixelSize(size);
    painter.setFont(font);
    painter.setPen(isLit() ? theme().accent : theme().text);
    const QRectF place(centre.x() - room / 2, centre.y() - room / 2, room, room);
    painter.drawText(place, Qt::AlignCenter,
                     QFontMetricsF(font).elidedText(combination_, Qt::ElideRight, room));
}

void RadialEntryButton::drawBadge(QPainter& painter, const QRectF& shape) const {
    const QRectF disc(shape.left() - badgeOverhang, shape.top() - badgeOverhang, badgeSize, badgeSize);
    painter.setPen(QPen(theme().ring, 1.5));
    painter.setBrush(isLit() ? theme().accent : theme().badge);
    painter.drawEllipse(disc);
    QFont digit = captionFont();
    digit.setPixelSize(badgePixels);
    digit.setWeight(QFont::Bold);
    painter.setFont(digit);
    painter.setPen(theme().badgeText);
    painter.drawText(disc, Qt::AlignCenter, QString::number(number_));
}

void RadialEntryButton::drawMissing(QPainter& painter, const QRectF& shape) const {
    const QRectF disc(shape.right() + badgeOverhang - badgeSize, shape.bottom() + badgeOverhang - badgeSize,
                      badgeSize, badgeSize);
    painter.setPen(QPen(theme().ring, 1.5));
    painter.setBrush(theme().warning);
    painter.drawEllipse(disc);
    QFont sign = captionFont();
    sign.setPixelSize(badgePixels);
    sign.setWeight(QFont::Bold);
    painter.setFont(sign);
    painter.setPen(theme().ring);
    painter.drawText(disc, Qt::AlignCenter, "!");
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

    painter.setOpacity(isMissing_ ? faint : 1.0);
    drawIcon(painter, shape.center());
    painter.setOpacity(1.0);
    drawBadge(painter, shape);
    if (isMissing_) drawMissing(painter, shape);

    painter.setFont(captionFont());
    painter.setPen(isMissing_ ? theme().secondaryText : theme().text);
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
