#include "Platform/Linux/Session/LinuxNotifications.hpp"

#include "Platform/Linux/Session/BusCall.hpp"
#include "Utilities/Logger.hpp"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";

constexpr std::size_t maxRemembered = 16;

/// The daemon's own choice of how long.
constexpr int defaultExpiry = -1;

/// How long a daemon may take to start.
constexpr std::chrono::seconds startTimeout{15};

/// Most desktops keep a critical notification on the screen until the user closes it, which news of a key
/// press must not do; so only what the system itself calls critical becomes it.
uchar urgency(InterruptionLevel level) {
    switch (level) {
        case InterruptionLevel::passive:
            return 0;
        case InterruptionLevel::active:
        case InterruptionLevel::timeSensitive:
            return 1;
        case InterruptionLevel::critical:
            return 2;
    }
    return 1;
}

}  // namespace

LinuxNotifications::LinuxNotifications(QDBusConnection bus, std::function<bool()> isFrontmost)
    : bus_(std::move(bus)), isFrontmost_(std::move(isFrontmost)) {}

void LinuxNotifications::getAuthorization(std::function<void(Authorization)> answer) {
    QMetaObject::invokeMethod(
        &context_, [answer = std::move(answer)] { answer(Authorization::authorized); }, Qt::QueuedConnection);
}

void LinuxNotifications::add(const NotificationRequest& request) {
    if (!isFrontmost_() || delegate_ == nullptr) return show(request, true);
    delegate_->willPresent(request, [this, request](std::uint32_t options) {
        // Daemons do not tell a banner from an entry in the list.
        if ((options & (presentationOption::banner | presentationOption::list)) == 0) return;
        show(request, (options & presentationOption::sound) != 0);
    });
}

void LinuxNotifications::show(const NotificationRequest& request, bool withSound) {
    // What still waits would be replaced as soon as it is shown.
    if (!request.kind.empty())
        std::erase_if(waiting_, [&](const auto& one) { return one.request.kind == request.kind; });
    waiting_.push_back({request, withSound});
    sendNext();
}

void LinuxNotifications::sendNext() {
    if (isSending_ || waiting_.empty()) return;
    isSending_ = true;
    const auto posted = std::move(waiting_.front());
    waiting_.pop_front();
    // Asked anew each time, since the next daemon may be another one.
    call(QDBusMessage::createMethodCall(service, path, service, "GetCapabilities"),
         [this, posted](const QDBusMessage& reply) {
             if (reply.service() != daemon_) shown_.clear();
             daemon_ = reply.service();
             send(posted, reply);
         });
}

void LinuxNotifications::send(const Posted& posted, const QDBusMessage& capabilities) {
    const auto& request = posted.request;
    const bool bodyHasMarkup = capabilities.arguments().value(0).toStringList().contains("body-markup");
    const auto body = QString::fromStdString(request.body);
    QVariantMap hints{{"urgency", QVariant::fromValue(urgency(request.level))}, {"desktop-entry", "trelvan"}};
    if (posted.withSound) {
        hints.insert("sound-name", "message-new-instant");
    } else {
        hints.insert("suppress-sound", true);
    }
    auto notify = QDBusMessage::createMethodCall(service, path, service, "Notify");
    notify << "Trelvan" << replacedBy(request) << "input-mouse" << QString::fromStdString(request.title)
           << (bodyHasMarkup ? body.toHtmlEscaped() : body) << QStringList() << hints << defaultExpiry;
    call(notify, [this, request](const QDBusMessage& reply) {
        noteShown(request, reply.arguments().value(0).toUInt());
        isSending_ = false;
        sendNext();
    });
}

std::uint32_t LinuxNotifications::replacedBy(const NotificationRequest& request) const {
    constexpr std::uint32_t replacesNone = 0;
    const auto isReplaced = [&](const Shown& one) {
        return one.identifier == request.identifier || (!one.kind.empty() && one.kind == request.kind);
    };
    const auto newest = std::find_if(shown_.rbegin(), shown_.rend(), isReplaced);
    return newest == shown_.rend() ? replacesNone : newest->number;
}

void LinuxNotifications::noteShown(const NotificationRequest& request, std::uint32_t number) {
    std::erase_if(shown_, [&](const auto& known) { return known.number == number; });
    shown_.push_back({request.identifier, request.kind, number});
    if (shown_.size() > maxRemembered) shown_.pop_front();
}

void LinuxNotifications::call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> onReply) {
    callOverBus(bus_, message,
                lifetime_.whileAlive([this, onReply = std::move(onReply)](const BusAnswer& answer) {
                    if (answer.status == BusAnswer::Status::done) return onReply(answer.reply);
                    reportMissing(answer.error);
                    // After a daemon that hung, what waited is old news.
                    if (answer.status == BusAnswer::Status::silent) waiting_.clear();
                    isSending_ = false;
                    sendNext();
                }),
                // Many desktops start their daemon with the first notification.
                {.startsService = true, .timeout = startTimeout});
}

void LinuxNotifications::reportMissing(const QString& reason) {
    if (std::exchange(reported_, true)) return;
    AppLogger.warning(
        InlineText("No hay servicio de notificaciones en este escritorio: ", reason.toStdString()));
}

}  // namespace trelvan
