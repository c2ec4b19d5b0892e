#pragma once

#include "Platform/RunLoop.hpp"
#include "Utilities/LifetimeToken.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <set>

namespace trelvan {

/// What the services of the desktop and of the system say about the session: the screen savers (GNOME's,
/// Cinnamon's, MATE's, XFCE's, and the common name, KDE's) whether they are on, the login manager whether the
/// session is locked and the active one. Main thread; nothing waits.
///
/// A service that goes away takes what it said with it, and is asked when it comes (back): a screen saver
/// that died must not lock Trelvan out for ever. The login manager's Lock signal only asks somebody to lock;
/// it counts for the few seconds that a locker needs to come up, after which the locker has to be seen
/// otherwise.
class LockServices final : public QObject {
    Q_OBJECT

  public:
    /// How long a request to lock counts.
    static constexpr Seconds lockTime{3.0};

    /// `changed` is called each time one of the answers may have changed.
    LockServices(QDBusConnection session, QDBusConnection system, Timers& timers,
                 std::function<void()> changed);

    [[nodiscard]] bool isLocked() const { return !saversOn_.empty() || isHinted_ || lockRequest_ != nullptr; }
    /// True where nobody says otherwise.
    [[nodiscard]] bool isActive() const { return isActive_; }

  private slots:
    void saverChanged(const QDBusMessage& signal);
    void sessionChanged(const QDBusMessage& signal);
    void lockRequested();
    void unlockRequested();

  private:
    void askSaver(const QString& service);
    void setSaver(const QString& service, bool on);
    void ownerChanged(const QString& service, const QString& owner);
    void findSession();
    void followSession(const QString& path);
    void askSession();
    void note(const QVariantMap& properties);

    QDBusConnection session_;
    QDBusConnection system_;
    Timers& timers_;
    std::function<void()> changed_;
    QDBusServiceWatcher savers_;
    QDBusServiceWatcher login_;
    std::set<QString> saversOn_;
    /// The session's object; empty until it is known.
    QString path_;
    /// A session of text has no screen of its own, and is not active beside the one that has.
    bool isGraphical_ = false;
    bool isHinted_ = false;
    bool isActive_ = true;
    std::unique_ptr<Timers::Timer> lockRequest_;
    /// Answers that come after this object find it gone.
    /// Last, for answers that come late.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
