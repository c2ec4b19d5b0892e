#include "UI/Components/Segmented.hpp"

#include "UI/Components/Painting.hpp"

#include <QHBoxLayout>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr int segmentHeight = 28;
constexpr int inset = 2;

}  // namespace

class Segmented::Segment final : public QRadioButton {
  public:
    Segment(Look& look, UiText text, QWidget* parent)
        : QRadioButton(parent), look_(look), text_(std::move(text)) {
        setFocusPolicy(Qt::StrongFocus);
        setFixedHeight(segmentHeight);
        follows_ = look_.follow([this] {
            setFont(fontOf(TypeRole::body));
            setText(look_.text(text_));
            setAccessibleName(look_.text(text_));
            updateGeometry();
            update();
        });
    }

    [[nodiscard]] QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()) + 2 * space::large, segmentHeight};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const Theme& theme = look_.theme();
        if (isChecked())
            drawBox(painter, rect(), radius::control - inset, theme.accent, QColor(Qt::transparent));
        else if (underMouse())
            drawBox(painter, rect(), radius::control - inset, theme.hover, QColor(Qt::transparent));
        painter.setPen(!isEnabled() ? theme.disabledText : isChecked() ? theme.onAccent : theme.text);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (!hasFocus()) return;
        // On its own accent the ring would not be seen.
        if (isChecked()) {
            painter.setPen(QPen(theme.onAccent, 1.5));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), 4, 4);
        } else {
            drawFocusRing(painter, rect(), radius::control - inset, theme);
        }
    }

  private:
    Look& look_;
    UiText text_;
    Subscription follows_;
};

Segmented::Segmented(Look& look, UiText name, const std::vector<UiText>& choices, QWidget* parent)
    : QWidget(parent), look_(look), name_(std::move(name)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(inset + 1, inset + 1, inset + 1, inset + 1);
    row->setSpacing(inset);
    for (const UiText& choice : choices) {
        auto* segment = new Segment(look, choice, this);
        const int index = static_cast<int>(segments_.size());
        // The arrow keys choose without a click.
        QObject::connect(segment, &QRadioButton::toggled, this, [this, index](bool isOn) {
            if (!isOn || signalsBlocked()) return;
            if (const auto tell = onSelect) tell(index);
        });
        row->addWidget(segment);
        segments_.push_back(segment);
    }
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    follows_ = look_.follow([this] {
        setAccessibleName(look_.text(name_));
        update();
    });
}

void Segmented::select(int choice) {
    const bool wasBlocked = blockSignals(true);
    for (std::size_t index = 0; index < segments_.size(); ++index) {
        QRadioButton* segment = segments_[index];
        // By itself a group of these always keeps one.
        segment->setAutoExclusive(false);
        segment->setChecked(static_cast<int>(index) == choice);
        segment->setAutoExclusive(true);
    }
    blockSignals(wasBlocked);
}

int Segmented::selected() const {
    const auto found = std::ranges::find_if(segments_, [](const auto* each) { return each->isChecked(); });
    return found == segments_.end() ? -1 : static_cast<int>(found - segments_.begin());
}

void Segmented::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBox(painter, rect(), radius::control + 1, look_.theme().control, look_.theme().controlEdge);
}

}  // namespace trelvan
