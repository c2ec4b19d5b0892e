#include "UI/SmartButtonOverlay.hpp"

#include "UI/ShortcutText.hpp"
#include "UI/Symbols/Symbols.hpp"

#include <QAccessibleWidget>
#include <QElapsedTimer>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPropertyAnimation>
#include <QRadialGradient>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr int fadeMilliseconds = 140;
/// The first painting already shows the menu.
constexpr double firstOpacity = 0.35;
constexpr std::chrono::milliseconds iconPause{15};
constexpr int shadowWidth = 18;
constexpr int gridSize = 30;
constexpr int smallControlSize = 32;
constexpr int smallSymbolSize = 12;

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// To a screen reader the overlay is a menu and not a window.
QAccessibleInterface* accessibleMenu(const QString& /*kind*/, QObject* object) {
    auto* overlay = dynamic_cast<SmartButtonOverlay*>(object);
    return overlay != nullptr ? new QAccessibleWidget(overlay, QAccessible::PopupMenu) : nullptr;
}

void tellScreenReader(QObject* object, QAccessible::Event what) {
    QAccessibleEvent event(object, what);
    QAccessible::updateAccessibility(&event);
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
        // Around the ring only: under it, it would show through.
        QPainterPath around;
        around.addEllipse(centre, outer, outer);
        QPainterPath ring;
        ring.addEllipse(centre, radius_, radius_);
        painter.fillPath(around.subtracted(ring), shadow);
        painter.fillPath(ring, theme_.ring);
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
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(&accessibleMenu), true);
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
    watchScreen(screen);
    loadIcons(0);
}

SmartButtonOverlay::~SmartButtonOverlay() {
    vanish();
}

/// A screen of another size, or none, has another menu.
void SmartButtonOverlay::watchScreen(const QScreen* screen) {
    const auto dismiss = [this] { call(view_.onDismiss); };
    connect(screen, &QScreen::geometryChanged, this, dismiss);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [screen, dismiss](const QScreen* removed) {
        if (removed == screen) dismiss();
    });
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
        auto* button = new RadialEntryButton(QString::fromStdString(app.name),
                                             isShortcut ? symbols::keyboard() : symbols::window(),
                                             static_cast<int>(index) + 1, width, look_.theme, ring_);
        if (isShortcut) button->showCombination(shortcutText(app.shortcut));
        if (look_.isMissing && look_.isMissing(app))
            button->markMissing(text("Not found", "No se encuentra"));
        const Point centre = layout_.entries[index];
        button->place(QPointF(centre.x, centre.y) - origin);
        connect(button, &QPushButton::clicked, this, [this, index] { choose(index); });
        entries_.push_back(button);
        addButton(button);
    }
}

void SmartButtonOverlay::addButton(RadialButton* button) {
    // Keyboard and pointer do not both show a choice.
    button->onEnter = [this] { setCurrent(std::nullopt); };
    buttons_.push_back(button);
}

/// The icons that are there soon come with the menu, the others a moment later.
void SmartButtonOverlay::loadIcons(std::size_t from) {
    QElapsedTimer clock;
    clock.start();
    const qreal ratio = screen()->devicePixelRatio();
    for (std::size_t index = from; index < entries_.size(); ++index) {
        if (clock.hasExpired(iconTimeout.count())) {
            // Not at once: what is painted by now has to get to the screen first.
            QTimer::singleShot(iconPause, this, [this, index] { loadIcons(index); });
            return;
        }
        look_.loadIcon(view_.apps[index], RadialEntryButton::iconSide, ratio,
                       [entry = QPointer(entries_[index])](QPixmap icon) {
                           if (entry) entry->showIcon(std::move(icon));
                       });
    }
}

void SmartButtonOverlay::addControls() {
    const auto add = [this](const QString& name, const QPainterPath& symbol, int size, int symbolSize,
                            QPointF offset, const std::function<void()>& action) {
        auto* control = new RadialControl(name, symbol, size, symbolSize, look_.theme, ring_);
        control->place(QPointF(ring_->width() / 2.0, ring_->height() / 2.0) + offset);
        connect(control, &QPushButton::clicked, this, [this, action] { call(action); });
        controls_.push_back(control);
        addButton(control);
    };
    constexpr double aside = RadialLayout::centreSize / 2 * 0.78;
    add(text("Open Applications", "Abrir aplicaciones"), symbols::grid(),
        static_cast<int>(RadialLayout::centreSize), gridSize, {0, 0}, view_.onOpenApplications);
    add(text("Close Smart Button", "Cerrar Smart Button"), symbols::cross(), smallControlSize,
        smallSymbolSize, {-aside, aside}, view_.onDismiss);
    add(text("Edit Smart Button", "Editar Smart Button"), symbols::pencil(), smallControlSize,
        smallSymbolSize + 4, {aside, aside}, view_.onEdit);
    controls_[0]->makeRoomFor(*controls_[1]);
    controls_[0]->makeRoomFor(*controls_[2]);
}

void SmartButtonOverlay::appear() {
    if (look_.isAnimated) fadeIn();
    show();
    raise();
    input_ = look_.input.open(winId(), entries_.size(),
                              {.keyDown = [this](MenuKey key) { keyDown(key); },
                               .keyUp = [this](MenuKey key) { keyUp(key); },
                               .leave = [this] { call(view_.onDismiss); }});
    tellScreenReader(this, QAccessible::PopupMenuStart);
}

void SmartButtonOverlay::fadeIn() {
    auto* effect = new QGraphicsOpacityEffect(ring_);
    effect->setOpacity(firstOpacity);
    ring_->setGraphicsEffect(effect);
    auto* animation = new QPropertyAnimation(effect, "opacity", effect);
    animation->setDuration(fadeMilliseconds);
    animation->setStartValue(firstOpacity);
    animation->setEndValue(1.0);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    // Drawn without the effect afterwards, which would cost a picture of its own each time.
    connect(animation, &QPropertyAnimation::finished, ring_, [this] { ring_->setGraphicsEffect(nullptr); });
    animation->start();
}

void SmartButtonOverlay::vanish() {
    if (std::exchange(isGone_, true)) return;
    released_.reset();
    if (isVisible()) tellScreenReader(this, QAccessible::PopupMenuEnd);
    input_.reset();
    hide();
    behind_ = {};
}

void SmartButtonOverlay::call(const std::function<void()>& function) {
    if (isGone_ || !function) return;
    ++calls_;
    function();
    --calls_;
}

void SmartButtonOverlay::choose(std::size_t entry) {
    if (isGone_ || entry >= entries_.size()) return;
    // What is typed for the entry may be one of the menu's own keys.
    input_.reset();
    call([this, entry] { view_.onLaunch(view_.apps[entry]); });
}

// Keys

void SmartButtonOverlay::setCurrent(std::optional<std::size_t> index) {
    current_ = index;
    for (std::size_t each = 0; each < buttons_.size(); ++each) {
        if (index) buttons_[each]->setHovered(false);
        buttons_[each]->setCurrent(index == each);
    }
}

void SmartButtonOverlay::moveBy(Arrow arrow) {
    const auto from = current_ && *current_ < entries_.size() ? current_ : std::nullopt;
    auto next = nextPlace(layout_.entries, layout_.centre, from, arrow);
    if (!next && !from) next = 0;
    if (next) setCurrent(next);
}

void SmartButtonOverlay::stepOn() {
    setCurrent(current_ ? (*current_ + 1) % buttons_.size() : 0);
}

std::optional<std::size_t> SmartButtonOverlay::buttonOf(MenuKey key) const {
    if (const auto entry = entryOf(key)) return *entry < entries_.size() ? entry : std::nullopt;
    return key == MenuKey::choose ? current_ : std::nullopt;
}

void SmartButtonOverlay::keyDown(MenuKey key) {
    if (released_) {
        // It was never released, or another key came quickly after it.
        if (key == heldKey_) return released_.reset();
        finishKey();
    }
    if (isGone_) return;
    switch (key) {
        case MenuKey::left:
            return moveBy(Arrow::left);
        case MenuKey::right:
            return moveBy(Arrow::right);
        case MenuKey::up:
            return moveBy(Arrow::up);
        case MenuKey::down:
            return moveBy(Arrow::down);
        case MenuKey::next:
            return stepOn();
        default:
            break;
    }
    if (key == heldKey_) return;
    const auto button = buttonOf(key);
    if (!button && key != MenuKey::leave) return;
    heldKey_ = key;
    if (button) setCurrent(button);
    for (std::size_t each = 0; each < buttons_.size(); ++each) buttons_[each]->setDown(button == each);
}

void SmartButtonOverlay::keyUp(MenuKey key) {
    if (isGone_ || heldKey_ != key) return;
    released_ = look_.timers.once(releaseTime, [this] { finishKey(); });
}

void SmartButtonOverlay::finishKey() {
    const auto timer = std::move(released_);
    const auto key = std::exchange(heldKey_, std::nullopt);
    if (!key) return;
    if (key == MenuKey::leave) return call(view_.onDismiss);
    const auto button = buttonOf(*key);
    for (RadialButton* each : buttons_) each->setDown(false);
    if (button) buttons_[*button]->click();
}

// Pointer and drawing

void SmartButtonOverlay::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!behind_.isNull()) painter.drawPixmap(0, 0, behind_);
    painter.fillRect(rect(), look_.theme.scrim);
}

void SmartButtonOverlay::mousePressEvent(QMouseEvent* /*event*/) {
    isPressed_ = true;
}

void SmartButtonOverlay::mouseReleaseEvent(QMouseEvent* /*event*/) {
    // Only when the whole click was here, so that its release goes to no application behind.
    if (std::exchange(isPressed_, false)) call(view_.onDismiss);
}

}  // namespace trelvan
