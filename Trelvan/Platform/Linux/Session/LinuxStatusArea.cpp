#include "Platform/Linux/Session/LinuxStatusArea.hpp"

#include "Platform/Linux/Session/BusCall.hpp"
#include "Platform/Linux/X11/X11.hpp"

#include <QDBusVariant>
#include <string>

namespace trelvan {

namespace {

constexpr const char* service = "org.kde.StatusNotifierWatcher";
constexpr const char* path = "/StatusNotifierWatcher";

}  // namespace

LinuxStatusArea::LinuxStatusArea(XConnection& connection, const QDBusConnection& session, Timers& timers)
    : connection_(connection),
      session_(session),
      watcher_(service, session, QDBusServiceWatcher::WatchForRegistration) {
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { askWatcher(); });
    // Panels register their host some time after the watcher.
    session_.connect(service, path, service, "StatusNotifierHostRegistered", this, SLOT(askWatcher()));
    timer_ = timers.every(interval, [this] { lookForTray(); });
    askWatcher();
}

void LinuxStatusArea::askWatcher() {
    if (isThere()) return;
    auto call = QDBusMessage::createMethodCall(service, path, "org.freedesktop.DBus.Properties", "Get");
    call << service << "IsStatusNotifierHostRegistered";
    callOverBus(session_, call, [this, weak = std::weak_ptr(alive_)](const BusAnswer& answer) {
        if (weak.expired()) return;
        const bool hasHost = answer.status == BusAnswer::Status::done &&
                             answer.reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
        if (!hasHost) return lookForTray();
        timer_.reset();
        found();
    });
}

void LinuxStatusArea::lookForTray() {
    if (isThere()) return;
    Display* display = connection_.display();
    const auto name = "_NET_SYSTEM_TRAY_S" + std::to_string(DefaultScreen(display));
    if (XGetSelectionOwner(display, connection_.atom(name.c_str())) == x11::none) return;
    timer_.reset();
    found();
}

}  // namespace trelvan
