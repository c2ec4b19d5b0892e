#pragma once

#include "UI/RadialTheme.hpp"

#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QStringList>
#include <functional>
#include <optional>

namespace trelvan {

/// What the buttons of the radial menu have in common: they take no keyboard focus from anybody, and show
/// where the keyboard or the pointer stands.
class RadialButton : public QPushButton {
  public:
    RadialButton(const QString& name, const RadialTheme& theme, QWidget* parent);

    /// Whether the keyboard's choice stands here; a screen reader is told when it comes here.
    void setCurrent(bool current);
    [[nodiscard]] bool isCurrent() const { return isCurrent_; }
    /// Whether the button shows that the pointer is on it.
    void setHovered(bool hovered);
    [[nodiscard]] bool isHovered() const { return isHovered_; }

    /// The pointer came here.
    std::function<void()> onEnter;

  protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    [[nodiscard]] const RadialTheme& theme() const { return theme_; }
    [[nodiscard]] bool isLit() const { return isHovered_ || isCurrent_; }

  private:
    const RadialTheme& theme_;
    bool isCurrent_ = false;
    bool isHovered_ = false;
};

/// An entry: its icon or combination on a plate, at the corner the key that chooses it, and its name below in
/// two lines at most.
class RadialEntryButton final : public RadialButton {
  public:
    static constexpr int plateSize = 64;
    static constexpr int iconSide = 44;
    static constexpr int captionGap = 3;
    static constexpr int captionHeight = 28;
    static constexpr int badgeSize = 18;

    /// `number` 1 to 8 is the key that chooses the entry. The plate is empty until there is an icon.
    RadialEntryButton(const QString& name, const QPainterPath& symbol, int number, int captionWidth,
                      const RadialTheme& theme, QWidget* parent);

    /// A shortcut without an icon shows its combination rather than the symbol; an empty one changes nothing.
    void showCombination(const QString& combination) { combination_ = combination; }
    /// The entry's application is not there: it is drawn faintly, with a mark, and a screen reader hears
    /// `hint` after its name.
    void markMissing(const QString& hint);
    [[nodiscard]] bool isMissing() const { return isMissing_; }
    /// Shows the icon; for a null one the combination or the symbol.
    void showIcon(QPixmap icon);
    /// None before an icon was shown.
    [[nodiscard]] const std::optional<QPixmap>& icon() const { return icon_; }

    /// Puts the middle of the plate there.
    void place(QPointF centre);
    /// Where the caption's lines stand, in the parent's coordinates; empty for a name of nothing.
    [[nodiscard]] QRectF captionFrame() const;
    [[nodiscard]] QRectF plateFrame() const;
    /// The caption as it is shown.
    [[nodiscard]] const QStringList& captionLines() const { return lines_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

  private:
    void breakLines(const QString& name);
    void drawCombination(QPainter& painter, QPointF centre) const;
    void drawBadge(QPainter& painter, const QRectF& shape) const;
    void drawMissing(QPainter& painter, const QRectF& shape) const;
    void drawIcon(QPainter& painter, QPointF centre) const;
    [[nodiscard]] QRectF plate() const;

    std::optional<QPixmap> icon_;
    QPainterPath symbol_;
    QString combination_;
    bool isMissing_ = false;
    int number_;
    QStringList lines_;
};

/// A round control with a symbol.
class RadialControl final : public RadialButton {
  public:
    RadialControl(const QString& name, const QPainterPath& symbol, int size, int symbolSize,
                  const RadialTheme& theme, QWidget* parent);

    void place(QPointF centre);
    /// Leaves the place free that the other control, on the same parent, takes.
    void makeRoomFor(const RadialControl& other);

  protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

  private:
    QPainterPath symbol_;
    int symbolSize_;
    QPainterPath notches_;
};

/// The widest captions, in points and at most `RadialLayout::captionWidth`, with which none of this many
/// entries touches another's icon or caption.
[[nodiscard]] int captionWidth(std::size_t entryCount);

}  // namespace trelvan
