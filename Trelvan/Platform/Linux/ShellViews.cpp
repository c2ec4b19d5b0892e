#include "Platform/Linux/ShellViews.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace trelvan {

namespace {

constexpr const char* gnomeShell = "org.gnome.Shell";
constexpr const char* gnomePath = "/org/gnome/Shell";
constexpr const char* kdeShortcuts = "org.kde.kglobalaccel";

/// A shell that hangs must not hang the main thread for long.
constexpr int patienceMilliseconds = 250;

bool isRunning(const char* service) {
    auto* bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr && bus->isServiceRegistered(service).value();
}

void toggleGnomeOverview() {
    auto bus = QDBusConnection::sessionBus();
    auto get =
        QDBusMessage::createMethodCall(gnomeShell, gnomePath, "org.freedesktop.DBus.Properties", "Get");
    get << gnomeShell << "OverviewActive";
    const QDBusReply<QDBusVariant> isActive = bus.call(get, QDBus::Block, patienceMilliseconds);
    const bool wanted = !isActive.isValid() || !isActive.value().variant().toBool();
    auto set =
        QDBusMessage::createMethodCall(gnomeShell, gnomePath, "org.freedesktop.DBus.Properties", "Set");
    set << gnomeShell << "OverviewActive" << QVariant::fromValue(QDBusVariant(wanted));
    bus.asyncCall(set);
}

void showGnomeApplications() {
    QDBusConnection::sessionBus().asyncCall(
        QDBusMessage::createMethodCall(gnomeShell, gnomePath, gnomeShell, "ShowApplications"));
}

void invokeKde(const char* component, const char* shortcut) {
    auto call = QDBusMessage::createMethodCall(kdeShortcuts, QString("/component/%1").arg(component),
                                               "org.kde.kglobalaccel.Component", "invokeShortcut");
    call << shortcut;
    QDBusConnection::sessionBus().asyncCall(call);
}

bool showOnGnome(SystemView view) {
    switch (view) {
        // GNOME has one overview for both.
        case SystemView::missionControl:
        case SystemView::appExpose:
            toggleGnomeOverview();
            return true;
        case SystemView::launchpad:
            showGnomeApplications();
            return true;
        default:
            return false;
    }
}

bool showOnKde(SystemView view) {
    switch (view) {
        case SystemView::missionControl:
            invokeKde("kwin", "Overview");
            return true;
        case SystemView::appExpose:
            invokeKde("kwin", "ExposeClass");
            return true;
        case SystemView::launchpad:
            invokeKde("plasmashell", "activate application launcher");
            return true;
        default:
            return false;
    }
}

}  // namespace

bool ShellViews::show(SystemView view) {
    if (isRunning(gnomeShell)) return showOnGnome(view);
    return isRunning(kdeShortcuts) && showOnKde(view);
}

}  // namespace trelvan
