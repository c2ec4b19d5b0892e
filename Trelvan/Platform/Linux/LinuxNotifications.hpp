#pragma once

#include "Platform/Notifications.hpp"

#include <QDBusConnection>
#include <QObject>
#include <functional>

namespace trelvan {

/// Notifications through the desktop's notification daemon (org.freedesktop.Notifications), which may come
/// and go. Main thread.
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
    void show(const NotificationRequest& request, bool withSound);
    void send(const NotificationRequest& request, bool withSound, bool bodyHasMarkup);
    void reportMissing(const QString& reason);

    QDBusConnection bus_;
    std::function<bool()> isFrontmost_;
    NotificationDelegate* delegate_ = nullptr;
    bool reported_ = false;
    /// Replies that come after this object find nobody.
    QObject context_;
};

}  // namespace trelvan
