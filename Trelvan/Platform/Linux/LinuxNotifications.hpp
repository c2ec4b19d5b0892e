#pragma once

#include "Platform/Notifications.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

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
    void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> onReply);
    void reportMissing(const QString& reason);
    [[nodiscard]] std::uint32_t shownAs(const std::string& identifier) const;
    void noteShown(const std::string& identifier, std::uint32_t number);

    QDBusConnection bus_;
    std::function<bool()> isFrontmost_;
    NotificationDelegate* delegate_ = nullptr;
    bool reported_ = false;
    /// The daemon's numbers of what was shown last, oldest first: an older one is hardly on the screen any
    /// more.
    std::deque<std::pair<std::string, std::uint32_t>> shown_;
    /// Ends what is still queued with this object.
    QObject context_;
    /// Answers that come after this object find it gone.
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trelvan
