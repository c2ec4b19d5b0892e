#include "Platform/Linux/ShellViews.hpp"

#include "Utilities/Logger.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusVariant>
#include <functional>
#include <utility>

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

void reportRefusal(const QString& error) {
    AppLogger.warning(ShortText("El escritorio rechazó mostrar la vista: ", error.toStdString()));
}

/// Sends a call without waiting; `onError` gets the error's description if there is one.
void call(const QDBusMessage& message, std::function<void(const QString&)> onError) {
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, onError = std::move(onError)] {
                         if (watcher->isError()) onError(watcher->error().message());
                         watcher->deleteLater();
                     });
}

void setGnomeOverview(bool shown) {
    auto set =
        QDBusMessage::createMethodCall(gnomeShell, gnomePath, "org.freedesktop.DBus.Properties", "Set");
    set << gnomeShell << "OverviewActive" << QVariant::fromValue(QDBusVariant(shown));
    call(set, [](const QString& error) { reportRefusal(error); });
}

void toggleGnomeOverview() {
    auto get =
        QDBusMessage::createMethodCall(gnomeShell, gnomePath, "org.freedesktop.DBus.Properties", "Get");
    get << gnomeShell << "OverviewActive";
    const QDBusReply<QDBusVariant> isActive =
        QDBusConnection::sessionBus().call(get, QDBus::Block, patienceMilliseconds);
    setGnomeOverview(!isActive.isValid() || !isActive.value().variant().toBool());
}

void showGnomeApplications() {
    // Some versions let only their own programs ask for the grid; the overview is one step from it.
    call(QDBusMessage::createMethodCall(gnomeShell, gnomePath, gnomeShell, "ShowApplications"),
         [](const QString&) { setGnomeOverview(true); });
}

void invokeKde(const char* component, const char* shortcut) {
    auto invoke = QDBusMessage::createMethodCall(kdeShortcuts, QString("/component/%1").arg(component),
                                                 "org.kde.kglobalaccel.Component", "invokeShortcut");
    invoke << shortcut;
    call(invoke, [](const QString& error) { reportRefusal(error); });
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
