#include "Platform/Linux/AsyncCall.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <utility>

namespace trelvan {

void asyncCall(const QDBusConnection& bus, const QDBusMessage& call, QObject& context,
               std::function<void(const QDBusMessage& reply)> onReply) {
    // Also a call that cannot be sent is answered, with an error.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, onReply = std::move(onReply)] {
                         const QDBusMessage reply = watcher->reply();
                         watcher->deleteLater();
                         onReply(reply);
                     });
}

}  // namespace trelvan
