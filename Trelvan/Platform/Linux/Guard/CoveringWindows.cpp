#include "Platform/Linux/Guard/CoveringWindows.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace trelvan {

namespace {

/// An icon in an X tray lies in a panel's window: it covers nothing, and would not come back by itself.
bool isTrayIcon(const QWindow& window) {
    return window.objectName() == "QSystemTrayIconSysWindow";
}

bool isUnmanaged(const QWindow& window) {
    if (isTrayIcon(window)) return false;
    return window.type() == Qt::Popup || window.type() == Qt::ToolTip ||
           window.flags().testFlag(Qt::BypassWindowManagerHint);
}

}  // namespace

CoveringWindows::CoveringWindows(Guard& guard) : guard_(guard) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool CoveringWindows::eventFilter(QObject* object, QEvent* event) {
    if (!object->isWindowType()) return false;
    auto& window = static_cast<QWindow&>(*object);
    switch (event->type()) {
        case QEvent::Show:
            // Before the window is on the screen.
            note(window, true);
            break;
        case QEvent::Hide:
            note(window, false);
            break;
        case QEvent::PlatformSurface: {
            const auto type = static_cast<const QPlatformSurfaceEvent&>(*event).surfaceEventType();
            if (type == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) note(window, false);
            break;
        }
        default:
            break;
    }
    return false;
}

void CoveringWindows::note(QWindow& window, bool isShown) {
    if (window.handle() == nullptr || !isUnmanaged(window)) return;
    const auto id = static_cast<std::uint32_t>(window.winId());
    if (isShown) {
        guard_.page().covering.add(id);
    } else {
        guard_.page().covering.remove(id);
    }
    guard_.wake();
}

}  // namespace trelvan
