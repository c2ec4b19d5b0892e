#include "Platform/Linux/BusCall.hpp"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <utility>

namespace trelvan {

namespace {

BusAnswer answerOf(const QDBusPendingCallWatcher& call) {
    if (!call.isError()) return {.status = BusAnswer::Status::done, .reply = call.reply(), .error = {}};
    const auto error = call.error();
    const bool isSilent = error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
                          error.type() == QDBusError::TimedOut;
    return {.status = isSilent ? BusAnswer::Status::silent : BusAnswer::Status::refused,
            .reply = {},
            .error = error.message()};
}

}  // namespace

void callOverBus(const QDBusConnection& bus, QDBusMessage message,
                 std::function<void(const BusAnswer&)> answered, const BusCallOptions& options) {
    // Qt's answer to a call over no bus never comes.
    if (!bus.isConnected()) {
        return answered(
            {.status = BusAnswer::Status::refused, .reply = {}, .error = bus.lastError().message()});
    }
    message.setAutoStartService(options.startsService);
    const auto patience = static_cast<int>(options.patience.count());
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, patience));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, answered = std::move(answered)] {
                         answered(answerOf(*watcher));
                         watcher->deleteLater();
                     });
}

bool isOnBus(const QDBusConnection& bus, const char* service) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(service);
}

}  // namespace trelvan
