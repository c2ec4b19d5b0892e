#include "Platform/Linux/Session/LockServices.hpp"

#include "Platform/Linux/Session/BusCall.hpp"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <algorithm>
#include <array>
#include <utility>

namespace trelvan {

namespace {

struct Saver {
    const char* service;
    const char* path;
};

/// Each has an interface of its service's name.
constexpr std::array savers{
    Saver{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    Saver{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
    Saver{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    Saver{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"},
    Saver{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
};

constexpr const char* loginManager = "org.freedesktop.login1";
constexpr const char* loginPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
/// The caller's session, or the one that shows its user's desktop.
constexpr const char* ownSession = "/org/freedesktop/login1/session/auto";

QVariant unwrapped(const QVariant& value) {
    return value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
}

}  // namespace

LockServices::LockServices(QDBusConnection session, QDBusConnection system, Timers& timers,
                           std::function<void()> changed)
    : session_(std::move(session)),
      system_(std::move(system)),
      timers_(timers),
      changed_(std::move(changed)) {
    savers_.setConnection(session_);
    savers_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    login_.setConnection(system_);
    login_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    for (auto* watcher : {&savers_, &login_}) {
        connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString& service, const QString&, const QString& owner) {
                    ownerChanged(service, owner);
                });
    }
    for (const auto& [service, path] : savers) {
        savers_.addWatchedService(service);
        // KDE's says it on two paths.
        session_.connect(service, QString(), service, "ActiveChanged", this,
                         SLOT(saverChanged(QDBusMessage)));
        askSaver(service);
    }
    login_.addWatchedService(loginManager);
    findSession();
}

void LockServices::ownerChanged(const QString& service, const QString& owner) {
    if (service == loginManager) {
        isHinted_ = false;
        isActive_ = true;
        lockRequest_.reset();
        changed_();
        if (!owner.isEmpty()) findSession();
        return;
    }
    setSaver(service, false);
    if (!owner.isEmpty()) askSaver(service);
}

// Screen savers

void LockServices::askSaver(const QString& service) {
    const auto* saver =
        std::ranges::find_if(savers, [&](const Saver& one) { return service == one.service; });
    const auto call = QDBusMessage::createMethodCall(service, saver->path, service, "GetActive");
    callOverBus(session_, call, lifetime_.whileAlive([this, service](const BusAnswer& answer) {
        if (answer.status == BusAnswer::Status::done)
            setSaver(service, answer.reply.arguments().value(0).toBool());
    }));
}

void LockServices::saverChanged(const QDBusMessage& signal) {
    setSaver(signal.interface(), signal.arguments().value(0).toBool());
}

void LockServices::setSaver(const QString& service, bool on) {
    if (on) {
        saversOn_.insert(service);
    } else {
        saversOn_.erase(service);
    }
    changed_();
}

// The login manager

void LockServices::findSession() {
    // What belongs to no session, as a service of the user does, is in none by its process.
    const auto id = qEnvironmentVariable("XDG_SESSION_ID");
    const auto find = [this](const QString& known) {
        auto call = QDBusMessage::createMethodCall(loginManager, loginPath, managerInterface, "GetSession");
        call << known;
        callOverBus(system_, call, lifetime_.whileAlive([this](const BusAnswer& answer) {
            if (answer.status == BusAnswer::Status::done)
                followSession(answer.reply.arguments().value(0).value<QDBusObjectPath>().path());
        }));
    };
    if (!id.isEmpty()) return find(id);
    auto call = QDBusMessage::createMethodCall(loginManager, ownSession, propertiesInterface, "Get");
    call << sessionInterface << "Id";
    callOverBus(system_, call, lifetime_.whileAlive([find](const BusAnswer& answer) {
        if (answer.status == BusAnswer::Status::done)
            find(unwrapped(answer.reply.arguments().value(0)).toString());
    }));
}

void LockServices::followSession(const QString& path) {
    if (path.isEmpty()) return;
    // With a login manager that comes back the session is another object perhaps, and known already perhaps.
    if (path != path_) {
        path_ = path;
        system_.connect(loginManager, path, propertiesInterface, "PropertiesChanged", this,
                        SLOT(sessionChanged(QDBusMessage)));
        system_.connect(loginManager, path, sessionInterface, "Lock", this, SLOT(lockRequested()));
        system_.connect(loginManager, path, sessionInterface, "Unlock", this, SLOT(unlockRequested()));
    }
    askSession();
}

void LockServices::askSession() {
    auto call = QDBusMessage::createMethodCall(loginManager, path_, propertiesInterface, "GetAll");
    call << sessionInterface;
    callOverBus(system_, call, lifetime_.whileAlive([this](const BusAnswer& answer) {
        if (answer.status == BusAnswer::Status::done)
            note(qdbus_cast<QVariantMap>(answer.reply.arguments().value(0)));
    }));
}

void LockServices::sessionChanged(const QDBusMessage& signal) {
    if (signal.path() != path_ || signal.arguments().value(0).toString() != sessionInterface) return;
    note(qdbus_cast<QVariantMap>(signal.arguments().value(1)));
    if (!signal.arguments().value(2).toStringList().isEmpty()) askSession();
}

void LockServices::note(const QVariantMap& properties) {
    if (const auto type = properties.value("Type"); type.isValid())
        isGraphical_ = type.toString() == "x11" || type.toString() == "wayland";
    if (const auto hint = properties.value("LockedHint"); hint.isValid()) isHinted_ = hint.toBool();
    if (const auto active = properties.value("Active"); active.isValid())
        isActive_ = active.toBool() || !isGraphical_;
    changed_();
}

void LockServices::lockRequested() {
    lockRequest_ = timers_.once(lockTime, [this] {
        // The timer must not go while it calls.
        const auto timer = std::move(lockRequest_);
        changed_();
    });
    changed_();
}

void LockServices::unlockRequested() {
    lockRequest_.reset();
    changed_();
}

}  // namespace trelvan
