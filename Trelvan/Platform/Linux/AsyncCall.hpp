#pragma once

#include <functional>

class QDBusConnection;
class QDBusMessage;
class QObject;

namespace trelvan {

/// Sends a call on a bus without waiting for its answer. `onReply` gets the answer, which is an error message
/// where the call failed or could not be sent, later on the main thread; not when `context` is gone by then.
void asyncCall(const QDBusConnection& bus, const QDBusMessage& call, QObject& context,
               std::function<void(const QDBusMessage& reply)> onReply);

}  // namespace trelvan
