#pragma once

#include "UI/RadialTheme.hpp"

#include <QIcon>
#include <QPainterPath>
#include <QPushButton>
#include <QTextLayout>

namespace trelvan {

/// What the buttons of the radial menu have in common: they take no keyboard focus from anybody, and show
/// where the keyboard stands when they are told.
class RadialButton : public QPushButton {
  public:
    RadialButton(const QString& name, const RadialTheme& theme, QWidget* parent);

    /// Whether the keyboard's choice stands here.
    void setCurrent(bool current);
    [[nodiscard]] bool isCurrent() const { return isCurrent_; }

  protected:
    [[nodiscard]] const RadialTheme& theme() const { return theme_; }
    [[nodiscard]] bool isLit() const { return underMouse() || isCurrent_; }

  private:
    const RadialTheme& theme_;
    bool isCurrent_ = false;
};

/// An entry: its icon on a plate, in the corner the key that chooses it, and its name below in two lines at
/// most.
class RadialEntryButton final : public RadialButton {
  public:
    static constexpr int plateSize = 64;
    static constexpr int captionGap = 3;
    static constexpr int captionHeight = 30;

    /// Without an icon the symbol is drawn. `number` 1 to 8 is the key that chooses the entry.
    RadialEntryButton(const QString& name, QIcon icon, QPainterPath symbol, int number, int captionWidth,
                      const RadialTheme& theme, QWidget* parent);

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
    [[nodiscard]] QRectF plate() const;

    QIcon icon_;
    QPainterPath symbol_;
    int number_;
    QStringList lines_;
};

/// A round control with a symbol.
class RadialControl final : public RadialButton {
  public:
    RadialControl(const QString& name, QPainterPath symbol, int size, int symbolSize,
                  const RadialTheme& theme, QWidget* parent);

    void place(QPointF centre);

  protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

  private:
    QPainterPath symbol_;
    int symbolSize_;
};

/// The widest captions, in points and at most `RadialLayout::captionWidth`, with which none of this many
/// entries touches another's icon or caption.
[[nodiscard]] int captionWidth(std::size_t entryCount);

}  // namespace trelvan
