#include "Platform/Linux/LinuxNotifications.hpp"

#include "Platform/Linux/BusCall.hpp"
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

constexpr std::size_t mostRemembered = 16;

/// The daemon's own choice of how long.
constexpr int defaultExpiry = -1;

/// How long a daemon may take to start.
constexpr std::chrono::seconds startPatience{15};

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
    // Asked anew each time, since the next daemon may be another one.
    call(QDBusMessage::createMethodCall(service, path, service, "GetCapabilities"),
         [this, request, withSound](const QDBusMessage& reply) {
             const auto capabilities = reply.arguments().value(0).toStringList();
             send(request, withSound, capabilities.contains("body-markup"));
         });
}

void LinuxNotifications::send(const NotificationRequest& request, bool withSound, bool bodyHasMarkup) {
    const auto body = QString::fromStdString(request.body);
    QVariantMap hints{{"urgency", QVariant::fromValue(urgency(request.level))}, {"desktop-entry", "trelvan"}};
    if (withSound) {
        hints.insert("sound-name", "message-new-instant");
    } else {
        hints.insert("suppress-sound", true);
    }
    auto notify = QDBusMessage::createMethodCall(service, path, service, "Notify");
    notify << "Trelvan" << shownAs(request.identifier) << "input-mouse"
           << QString::fromStdString(request.title) << (bodyHasMarkup ? body.toHtmlEscaped() : body)
           << QStringList() << hints << defaultExpiry;
    call(notify, [this, identifier = request.identifier](const QDBusMessage& reply) {
        noteShown(identifier, reply.arguments().value(0).toUInt());
    });
}

std::uint32_t LinuxNotifications::shownAs(const std::string& identifier) const {
    constexpr std::uint32_t replacesNone = 0;
    const auto known = std::ranges::find(shown_, identifier, &decltype(shown_)::value_type::first);
    return known == shown_.end() ? replacesNone : known->second;
}

void LinuxNotifications::noteShown(const std::string& identifier, std::uint32_t number) {
    std::erase_if(shown_, [&](const auto& known) { return known.first == identifier; });
    shown_.emplace_back(identifier, number);
    if (shown_.size() > mostRemembered) shown_.pop_front();
}

void LinuxNotifications::call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> onReply) {
    callOverBus(bus_, message,
                [this, weak = std::weak_ptr(alive_), onReply = std::move(onReply)](const BusAnswer& answer) {
                    if (weak.expired()) return;
                    if (answer.status == BusAnswer::Status::done) return onReply(answer.reply);
                    reportMissing(answer.error);
                },
                // Many desktops start their daemon with the first notification.
                {.startsService = true, .patience = startPatience});
}

void LinuxNotifications::reportMissing(const QString& reason) {
    if (std::exchange(reported_, true)) return;
    AppLogger.warning(
        ShortText("No hay servicio de notificaciones en este escritorio: ", reason.toStdString()));
}

}  // namespace trelvan
