#pragma once

#include "Platform/Notifications.hpp"
#include "Utilities/LifetimeToken.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>

namespace trelvan {

/// Notifications through the desktop's notification daemon (org.freedesktop.Notifications), which may come
/// and go. They go out one after the other, so that each knows the daemon's number of the one that it
/// replaces: the last of the same kind. Main thread.
class LinuxNotifications final : public Notifications {
  public:
    /// `isFrontmost` says whether one of the program's windows has the keyboard.
    LinuxNotifications(QDBusConnection bus, std::function<bool()> isFrontmost);

    void setDelegate(NotificationDelegate* delegate) override { delegate_ = delegate; }
    /// Desktops ask nobody.
    void requestAuthorization(std::uint32_t /*options*/) override {}
    void getAuthorization(std::function<void(Authorization)> answer) override;
    void add(const NotificationRequest& request) override;

  private:
    struct Posted {
        NotificationRequest request;
        bool withSound = true;
    };
    /// The daemon's number of a notification that was shown.
    struct Shown {
        std::string identifier;
        std::string kind;
        std::uint32_t number = 0;
    };

    void show(const NotificationRequest& request, bool withSound);
    void sendNext();
    void send(const Posted& posted, const QDBusMessage& capabilities);
    void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> onReply);
    void reportMissing(const QString& reason);
    [[nodiscard]] std::uint32_t replacedBy(const NotificationRequest& request) const;
    void noteShown(const NotificationRequest& request, std::uint32_t number);

    QDBusConnection bus_;
    std::function<bool()> isFrontmost_;
    NotificationDelegate* delegate_ = nullptr;
    bool reported_ = false;
    /// What waits for its turn.
    std::deque<Posted> waiting_;
    bool isSending_ = false;
    /// The daemon that `shown_` is of, by its unique name on the bus: another one numbers anew, and an old
    /// number would replace somebody else's notification.
    QString daemon_;
    /// What was shown last, oldest first: an older one is hardly on the screen any more. A number stays good
    /// when its notification was closed, for the daemon gives it to no other.
    std::deque<Shown> shown_;
    /// Ends what is still queued with this object.
    QObject context_;
    /// Answers that come after this object find it gone.
    /// Last, for answers that come late.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
