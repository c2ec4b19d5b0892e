#include "Platform/Linux/Session/X11Screens.hpp"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace trelvan {

namespace {

/// What happened to a window that can change where it is or whether it is seen.
bool changesWindows(QEvent::Type type) {
    switch (type) {
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Expose:
        case QEvent::Close:
        case QEvent::WindowStateChange:
        case QEvent::PlatformSurface:
            return true;
        default:
            return false;
    }
}

/// Qt divides sizes by the screen's scale and leaves the screen's origin alone; X and the tap count real
/// pixels.
PixelRect realFrame(const QRect& frame, const QScreen* screen) {
    const double scale = screen != nullptr ? screen->devicePixelRatio() : 1.0;
    const QPoint origin = screen != nullptr ? screen->geometry().topLeft() : QPoint();
    return {.x = origin.x() + qRound((frame.x() - origin.x()) * scale),
            .y = origin.y() + qRound((frame.y() - origin.y()) * scale),
            .width = qRound(frame.width() * scale),
            .height = qRound(frame.height() * scale)};
}

}  // namespace

X11Screens::X11Screens(XEventPump& pump, const PointerSource& pointer, EventOrigin& origin)
    : pointer_(pointer), origin_(origin), active_(pump) {
    QObject::connect(qApp, &QGuiApplication::screenAdded, this, [this] { watchScreens(); });
    QObject::connect(qApp, &QGuiApplication::screenRemoved, this, [this] { readScreens(); });
    QObject::connect(qApp, &QGuiApplication::primaryScreenChanged, this, [this] { readScreens(); });
    watchScreens();
    qApp->installEventFilter(this);
}

X11Screens::~X11Screens() = default;

void X11Screens::watchScreens() {
    for (QScreen* screen : QGuiApplication::screens()) {
        screen->disconnect(this);
        QObject::connect(screen, &QScreen::geometryChanged, this, [this] { readScreens(); });
    }
    readScreens();
}

void X11Screens::readScreens() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    std::vector<PixelRect> monitors;
    const auto add = [&](const QScreen* screen) {
        monitors.push_back(realFrame(screen->geometry(), screen));
    };
    if (primary != nullptr) add(primary);
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != primary) add(screen);
    }
    frames_ = screenFrames(monitors);
    if (!monitors.empty()) origin_.set({monitors.front().x, monitors.front().y});
    readWindows();
}

void X11Screens::readWindows() {
    windows_.clear();
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() == nullptr) continue;
        windows_.push_back({.frame = origin_.frame(realFrame(window->geometry(), window->screen())),
                            .visible = window->isVisible(),
                            .alpha = window->opacity()});
    }
}

bool X11Screens::eventFilter(QObject* object, QEvent* event) {
    if (object->isWindowType() && changesWindows(event->type()) && !readPending_) {
        // The window has changed only after its own handling of the event.
        readPending_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                readPending_ = false;
                readWindows();
            },
            Qt::QueuedConnection);
    }
    return false;
}

BottomLeftPoint X11Screens::pointerLocation() const {
    // The toolkit would round to its own points, which are larger than pixels on a scaled screen.
    return placeOfPixel(origin_.location(pointer_.pointer()), frames_.empty() ? 0.0 : frames_.front().height);
}

}  // namespace trelvan
