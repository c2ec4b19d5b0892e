#include "Platform/Linux/LinuxScreens.hpp"

#include "Platform/Linux/PixelPlace.hpp"

#include <QApplication>
#include <QCursor>
#include <QEvent>
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
Rect realFrame(const QRect& frame, const QScreen* screen) {
    const double scale = screen != nullptr ? screen->devicePixelRatio() : 1.0;
    const QPoint origin = screen != nullptr ? screen->geometry().topLeft() : QPoint();
    return {.x = origin.x() + (frame.x() - origin.x()) * scale,
            .y = origin.y() + (frame.y() - origin.y()) * scale,
            .width = frame.width() * scale,
            .height = frame.height() * scale};
}

double bottomOfMainScreen() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? realFrame(primary->geometry(), primary).maxY() : 0;
}

}  // namespace

LinuxScreens::LinuxScreens(XEventPump& pump) : pump_(pump), active_(pump) {
    QObject::connect(qApp, &QGuiApplication::screenAdded, this, [this] { watchScreens(); });
    QObject::connect(qApp, &QGuiApplication::screenRemoved, this, [this] { readScreens(); });
    QObject::connect(qApp, &QGuiApplication::primaryScreenChanged, this, [this] { readScreens(); });
    watchScreens();
    qApp->installEventFilter(this);
    readWindows();
}

LinuxScreens::~LinuxScreens() = default;

void LinuxScreens::watchScreens() {
    for (QScreen* screen : QGuiApplication::screens()) {
        screen->disconnect(this);
        QObject::connect(screen, &QScreen::geometryChanged, this, [this] { readScreens(); });
    }
    readScreens();
}

void LinuxScreens::readScreens() {
    frames_.clear();
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (primary == nullptr) return;
    const double mainBottom = bottomOfMainScreen();
    const auto add = [&](const QScreen* screen) {
        Rect frame = realFrame(screen->geometry(), screen);
        frame.y = mainBottom - frame.maxY();
        frames_.push_back(frame);
    };
    add(primary);
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != primary) add(screen);
    }
}

void LinuxScreens::readWindows() {
    windows_.clear();
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() == nullptr) continue;
        windows_.push_back({.frame = realFrame(window->geometry(), window->screen()),
                            .visible = window->isVisible(),
                            .alpha = window->opacity()});
    }
}

bool LinuxScreens::eventFilter(QObject* object, QEvent* event) {
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

Point LinuxScreens::pointerLocation() const {
    const QPoint position = QCursor::pos();
    const Rect spot = realFrame(QRect(position, QSize(0, 0)), QGuiApplication::screenAt(position));
    return placeOfPixel({spot.x, spot.y}, bottomOfMainScreen());
}

}  // namespace trelvan
