#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <chrono>
#include <functional>

namespace trelvan {

/// How a call over a bus ended.
struct BusAnswer {
    enum class Status {
        done,
        /// The service is not there, refuses or dies of it: nothing has happened.
        refused,
        /// It did not answer in time, and may still do what it was asked.
        silent,
    } status = Status::done;
    QDBusMessage reply;
    /// The error's description, else empty.
    QString error;
};

/// How a call is sent.
struct BusCallOptions {
    /// Whether a service that does not run is started for it.
    bool startsService = false;
    /// How long the answer may take. By default a service that hangs must not do late what the user no longer
    /// expects.
    std::chrono::milliseconds timeout{1500};
};

/// Sends a call without waiting; `answered` gets the answer on the main thread, at once where there is no
/// bus. Main thread.
void callOverBus(const QDBusConnection& bus, QDBusMessage message,
                 std::function<void(const BusAnswer&)> answered, const BusCallOptions& options = {});

/// Whether a service runs. Waits for the bus.
[[nodiscard]] bool isOnBus(const QDBusConnection& bus, const char* service);

}  // namespace trelvan
