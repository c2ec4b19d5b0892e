#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <functional>

namespace trelvan {

/// How a call over a bus ended.
struct BusAnswer {
    enum class Status {
        done,
        /// The service is not there or refuses: nothing has happened.
        refused,
        /// It did not answer in time, and may still do what it was asked.
        silent,
    } status = Status::done;
    QDBusMessage reply;
    /// The error's description, else empty.
    QString error;
};

/// Sends a call without waiting and without starting a service that does not run; `answered` gets the answer
/// on the main thread, at once where there is no bus. Main thread.
void callOverBus(const QDBusConnection& bus, QDBusMessage message,
                 std::function<void(const BusAnswer&)> answered);

}  // namespace trelvan
