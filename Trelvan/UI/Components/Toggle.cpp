#include "UI/Components/Toggle.hpp"

#include "UI/Components/Painting.hpp"

#include <utility>

namespace trelvan {

namespace {

constexpr QSizeF track{38, 22};
constexpr double knobInset = 3;

}  // namespace

Toggle::Toggle(Look& look, UiText name, QWidget* parent)
    : QCheckBox(parent), look_(look), name_(std::move(name)) {
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(sizeHint());
    motion_.setDuration(motionMilliseconds);
    motion_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        knob_ = value.toDouble();
        update();
    });
    QObject::connect(this, &QCheckBox::toggled, this, [this] { slide(); });
    QObject::connect(this, &QCheckBox::clicked, this, [this](bool isOn) {
        if (const auto tell = onSwitch) tell(isOn);
    });
    follows_ = look_.follow([this] { apply(); });
}

void Toggle::setName(UiText name) {
    name_ = std::move(name);
    apply();
}

void Toggle::apply() {
    setAccessibleName(look_.text(name_));
    update();
}

void Toggle::slide() {
    motion_.stop();
    const double goal = isChecked() ? 1 : 0;
    if (!look_.isAnimated() || !isVisible()) {
        knob_ = goal;
        return update();
    }
    motion_.setStartValue(knob_);
    motion_.setEndValue(goal);
    motion_.start();
}

QSize Toggle::sizeHint() const {
    return {qRound(track.width()) + 6, space::target};
}

bool Toggle::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void Toggle::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Theme& theme = look_.theme();
    QRectF frame(QPointF(), track);
    frame.moveCenter(QRectF(rect()).center());
    const QColor lit = isEnabled() ? theme.accent : theme.disabledText;
    const bool isOn = isChecked();
    drawBox(painter, frame, radius::pill, isOn ? lit : theme.control,
            isOn          ? lit
            : isEnabled() ? theme.controlEdge
                          : theme.cardEdge);
    const double size = frame.height() - 2 * knobInset;
    const double way = frame.width() - 2 * knobInset - size;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isOn ? theme.onAccent : isEnabled() ? theme.controlEdge : theme.disabledText);
    painter.drawEllipse(QRectF(frame.left() + knobInset + way * knob_, frame.top() + knobInset, size, size));
    if (hasFocus()) drawFocusRing(painter, frame.adjusted(-3, -3, 3, 3), radius::pill, theme);
}

}  // namespace trelvan
