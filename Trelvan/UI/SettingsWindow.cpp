#include "UI/SettingsWindow.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

namespace trelvan {

namespace {

constexpr int gapToItem = 6;
/// The window manager's title bar, until it has told its own.
constexpr int assumedTitleBar = 30;

QScreen* screenAt(const QPoint& place) {
    QScreen* found = QGuiApplication::screenAt(place);
    return found != nullptr ? found : QGuiApplication::primaryScreen();
}

}  // namespace

QPoint placeAtItem(const QRect& item, const QSize& window, const QRect& screen) {
    const bool isItemAbove = item.center().y() < screen.center().y();
    const int x = item.center().x() - window.width() / 2;
    const int y = isItemAbove ? item.bottom() + 1 + gapToItem : item.top() - gapToItem - window.height();
    // The title bar stays in reach on a screen that is too small.
    const QPoint corner = screen.topLeft();
    return {qMax(corner.x(), qMin(x, screen.right() + 1 - window.width())),
            qMax(corner.y(), qMin(y, screen.bottom() + 1 - window.height()))};
}

class SettingsWindow::Frame final : public QWidget {
  public:
    Frame(SettingsWindow& owner, const SettingsServices& services, SettingsViewState& state,
          const PanelFactories& panels)
        : owner_(owner) {
        setWindowTitle("Trelvan");
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        view = new SettingsView(services, state, panels, true, this);
        whole->addWidget(view);
    }

    SettingsView* view;

  protected:
    bool event(QEvent* event) override {
        const bool isHandled = QWidget::event(event);
        if (event->type() == QEvent::WindowDeactivate) owner_.deactivated();
        return isHandled;
    }
    void closeEvent(QCloseEvent* event) override {
        QWidget::closeEvent(event);
        owner_.closed();
    }

  private:
    SettingsWindow& owner_;
};

SettingsWindow::SettingsWindow(SettingsServices services, PanelFactories panels)
    : services_(std::move(services)),
      panels_(std::move(panels)),
      alive_(std::make_shared<SettingsWindow*>(this)) {}

SettingsWindow::~SettingsWindow() = default;

bool SettingsWindow::isOpen() const {
    return frame_ && frame_->isVisible();
}

SettingsView* SettingsWindow::view() const {
    return frame_ ? frame_->view : nullptr;
}

QWidget* SettingsWindow::frame() const {
    return frame_.get();
}

void SettingsWindow::open(const std::optional<QRect>& item) {
    giveBack_.reset();
    if (!frame_) frame_ = std::make_unique<Frame>(*this, services_, state_, panels_);
    if (!frame_->isVisible()) {
        frame_->view->configureWindowResizing();
        place(item);
    }
    frame_->show();
    if (frame_->isMinimized()) frame_->showNormal();
    frame_->raise();
    frame_->activateWindow();
    // Keys that nothing in particular wants are for the view, which knows the shortcuts.
    if (frame_->focusWidget() == nullptr) frame_->view->setFocus(Qt::OtherFocusReason);
}

void SettingsWindow::place(const std::optional<QRect>& item) {
    const QRect anchor = item && item->isValid() ? *item : QRect(QCursor::pos(), QSize(1, 1));
    const QRect screen = screenAt(anchor.center())->availableGeometry();
    const QSize outer = frame_->size() + QSize(0, assumedTitleBar);
    if (item) {
        frame_->move(placeAtItem(anchor, outer, screen));
        return;
    }
    const QPoint middle = screen.center() - QRect(QPoint(), outer).center();
    frame_->move(qMax(middle.x(), screen.left()), qMax(middle.y(), screen.top()));
}

void SettingsWindow::toggle(const QRect& item) {
    if (isOpen()) return close();
    const auto now = services_.clock.uptime();
    const bool isSameClick = deactivatedAt_ && now - *deactivatedAt_ < sameClick;
    deactivatedAt_.reset();
    if (!isSameClick) open(item);
}

void SettingsWindow::close() {
    if (frame_) frame_->close();
}

void SettingsWindow::deactivated() {
    // Another of the program's own windows may be about to take over, such as one that chooses a file.
    services_.mainQueue.async([weak = std::weak_ptr(alive_)] {
        const auto alive = weak.lock();
        if (!alive) return;
        SettingsWindow& window = **alive;
        if (!window.isOpen() || QApplication::activeWindow() != nullptr || window.view()->isHeldOpen())
            return;
        window.deactivatedAt_ = window.services_.clock.uptime();
        window.close();
    });
}

void SettingsWindow::closed() {
    giveBack_ = services_.timers.once(giveBackDelay, [this] {
        giveBack_.reset();
        frame_.reset();
    });
}

}  // namespace trelvan
