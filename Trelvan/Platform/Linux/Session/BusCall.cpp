#include "Platform/Linux/Session/BusCall.hpp"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <utility>

namespace trelvan {

namespace {

/// For a service that dies the bus answers as the time limit does, only sooner; the limit itself is coarse.
BusAnswer answerOf(const QDBusPendingCallWatcher& call, bool wasInTime) {
    if (!call.isError()) return {.status = BusAnswer::Status::done, .reply = call.reply(), .error = {}};
    const auto error = call.error();
    const bool isSilent =
        !wasInTime && (error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
                       error.type() == QDBusError::TimedOut);
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
    const auto timeout = static_cast<int>(options.timeout.count());
    QElapsedTimer timer;
    timer.start();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, timeout));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, timer, timeout, answered = std::move(answered)] {
                         answered(answerOf(*watcher, !timer.hasExpired(timeout * 9 / 10)));
                         watcher->deleteLater();
                     });
}

bool isOnBus(const QDBusConnection& bus, const char* service) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(service);
}

}  // namespace trelvan
