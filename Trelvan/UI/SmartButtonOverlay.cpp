#include "UI/SmartButtonOverlay.hpp"

#include "UI/Symbols/Symbols.hpp"

#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QRadialGradient>
#include <QScreen>
#include <QWindow>
#include <utility>

namespace trelvan {

namespace {

constexpr int fadeMilliseconds = 140;
constexpr int shadowWidth = 18;
constexpr int gridSize = 30;
constexpr int smallControlSize = 32;
constexpr int smallSymbolSize = 12;

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

/// The ring and everything on it, so that they fade together.
class SmartButtonOverlay::Ring final : public QWidget {
  public:
    Ring(double radius, const RadialTheme& theme, QWidget* parent)
        : QWidget(parent), radius_(radius), theme_(theme) {
        const int size = 2 * (qRound(radius) + shadowWidth);
        setFixedSize(size, size);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPointF centre = QRectF(rect()).center();
        const double outer = radius_ + shadowWidth;
        QRadialGradient shadow(centre, outer);
        QColor clear = theme_.shadow;
        clear.setAlpha(0);
        shadow.setColorAt((radius_ - shadowWidth) / outer, theme_.shadow);
        shadow.setColorAt(1, clear);
        painter.setPen(Qt::NoPen);
        painter.setBrush(shadow);
        painter.drawEllipse(centre, outer, outer);
        // What is under the ring would show through it.
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setBrush(theme_.ring);
        painter.drawEllipse(centre, radius_, radius_);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(QPen(theme_.ringEdge, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, radius_ - 0.5, radius_ - 0.5);
    }

  private:
    double radius_;
    const RadialTheme& theme_;
};

SmartButtonOverlay::SmartButtonOverlay(SmartButtonRadialView view, const RadialLayout& layout,
                                       QScreen* screen, Look look)
    : view_(std::move(view)),
      layout_(layout),
      look_(std::move(look)),
      ring_(new Ring(view_.outerRingRadius, look_.theme, this)) {
    // No window manager places it, lists it or gives it the focus.
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground, look_.isComposited);
    setWindowTitle("Smart Button");
    setAccessibleName("Smart Button");
    setScreen(screen);
    setGeometry(screen->geometry());
    if (!look_.isComposited) behind_ = screen->grabWindow(0);
    ring_->move(qRound(layout_.centre.x - ring_->width() / 2.0),
                qRound(layout_.centre.y - ring_->height() / 2.0));
    addEntries();
    addControls();
}

SmartButtonOverlay::~SmartButtonOverlay() {
    vanish();
}

QString SmartButtonOverlay::text(std::string_view english, std::string_view spanish) const {
    return qtText(localized(look_.language, english, spanish));
}

void SmartButtonOverlay::addEntries() {
    const int width = captionWidth(layout_.entries.size());
    const QPointF origin = ring_->pos();
    for (std::size_t index = 0; index < layout_.entries.size(); ++index) {
        const SmartButtonApp& app = view_.apps[index];
        const bool isShortcut = app.kind == SmartButtonItemKind::shortcut;
        auto* button = new RadialEntryButton(QString::fromStdString(app.name), look_.icon(app),
                                             isShortcut ? symbols::keyboard() : symbols::window(),
                                             static_cast<int>(index) + 1, width, look_.theme, ring_);
        const Point centre = layout_.entries[index];
        button->place(QPointF(centre.x, centre.y) - origin);
        connect(button, &QPushButton::clicked, this, [this, index] { choose(index); });
        entries_.push_back(button);
    }
}

void SmartButtonOverlay::addControls() {
    const auto add = [this](const QString& name, const QPainterPath& symbol, int size, int symbolSize,
                            QPointF offset, const std::function<void()>& action) {
        auto* control = new RadialControl(name, symbol, size, symbolSize, look_.theme, ring_);
        control->place(QPointF(ring_->width() / 2.0, ring_->height() / 2.0) + offset);
        connect(control, &QPushButton::clicked, this, [this, action] { call(action); });
        controls_.push_back(control);
    };
    constexpr double aside = RadialLayout::centreSize / 2 * 0.78;
    add(text("Open Applications", "Abrir aplicaciones"), symbols::grid(),
        static_cast<int>(RadialLayout::centreSize), gridSize, {0, 0}, view_.onOpenApplications);
    add(text("Close Smart Button", "Cerrar Smart Button"), symbols::cross(), smallControlSize,
        smallSymbolSize, {-aside, aside}, view_.onDismiss);
    add(text("Edit Smart Button", "Editar Smart Button"), symbols::pencil(), smallControlSize,
        smallSymbolSize + 4, {aside, aside}, view_.onEdit);
}

void SmartButtonOverlay::appear() {
    if (look_.isAnimated) fadeIn();
    show();
    raise();
    grabKeyboard();
}

void SmartButtonOverlay::fadeIn() {
    auto* effect = new QGraphicsOpacityEffect(ring_);
    effect->setOpacity(0);
    ring_->setGraphicsEffect(effect);
    auto* animation = new QPropertyAnimation(effect, "opacity", effect);
    animation->setDuration(fadeMilliseconds);
    animation->setStartValue(0.0);
    animation->setEndValue(1.0);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    // Drawn without the effect afterwards, which would cost a picture of its own each time.
    connect(animation, &QPropertyAnimation::finished, ring_, [this] { ring_->setGraphicsEffect(nullptr); });
    animation->start();
}

void SmartButtonOverlay::vanish() {
    if (std::exchange(isGone_, true)) return;
    releaseKeyboard();
    hide();
}

void SmartButtonOverlay::giveKeyboardBack() {
    releaseKeyboard();
    QGuiApplication::sync();
}

void SmartButtonOverlay::call(const std::function<void()>& function) {
    if (isGone_) return;
    // A copy: the function may take the view away that it belongs to.
    const auto kept = function;
    kept();
}

void SmartButtonOverlay::choose(std::size_t index) {
    if (isGone_ || index >= entries_.size()) return;
    giveKeyboardBack();
    const SmartButtonApp app = view_.apps[index];
    const auto launch = view_.onLaunch;
    launch(app);
}

void SmartButtonOverlay::setCurrent(int index) {
    current_ = index;
    for (std::size_t each = 0; each < entries_.size(); ++each)
        entries_[each]->setCurrent(static_cast<int>(each) == index);
}

void SmartButtonOverlay::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!behind_.isNull()) painter.drawPixmap(rect(), behind_);
    painter.fillRect(rect(), look_.theme.scrim);
}

void SmartButtonOverlay::keyPressEvent(QKeyEvent* event) {
    const int count = static_cast<int>(entries_.size());
    const int key = event->key();
    if (key >= Qt::Key_1 && key <= Qt::Key_8) return choose(static_cast<std::size_t>(key - Qt::Key_1));
    switch (key) {
        case Qt::Key_Escape:
            return call(view_.onDismiss);
        case Qt::Key_Right:
        case Qt::Key_Down:
        case Qt::Key_Tab:
            return setCurrent((current_ + 1) % count);
        case Qt::Key_Left:
        case Qt::Key_Up:
        case Qt::Key_Backtab:
            return setCurrent(current_ <= 0 ? count - 1 : current_ - 1);
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (current_ >= 0) choose(static_cast<std::size_t>(current_));
            return;
        default:
            return;
    }
}

void SmartButtonOverlay::mousePressEvent(QMouseEvent* /*event*/) {
    isPressed_ = true;
}

void SmartButtonOverlay::mouseReleaseEvent(QMouseEvent* /*event*/) {
    // Only when the whole click was here, so that its release goes to no application behind.
    if (isPressed_) call(view_.onDismiss);
}

}  // namespace trelvan
