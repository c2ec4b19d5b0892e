#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <functional>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A service on a bus, on a connection of its own, that writes down what it is asked and answers as it is
/// told. Leaves the bus when it goes.
class RecordingService : private QDBusVirtualObject {
  public:
    struct Call {
        std::string method;
        QVariantList arguments;
        /// The caller's unique name on the bus.
        QString caller;
    };
    /// What a call is answered with.
    using Answer = std::function<QVariantList(const Call&)>;

    RecordingService(const std::string& busAddress, const QString& name, Answer answer)
        : connectionName_("fake-" + QString::number(++count())),
          bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName_)),
          answer_(std::move(answer)) {
        bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
        isServing_ = bus_.registerService(name);
    }
    ~RecordingService() override { QDBusConnection::disconnectFromBus(connectionName_); }

    [[nodiscard]] bool isServing() const { return isServing_; }
    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
    [[nodiscard]] std::vector<std::string> methods() const {
        std::vector<std::string> result;
        for (const auto& call : calls_) result.push_back(call.method);
        return result;
    }

  private:
    static int& count() {
        static int number = 0;
        return number;
    }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface().startsWith("org.freedesktop.DBus")) return false;
        const Call& call =
            calls_.emplace_back(Call{message.member().toStdString(), message.arguments(), message.service()});
        connection.send(message.createReply(answer_(call)));
        return true;
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    QString connectionName_;
    QDBusConnection bus_;
    Answer answer_;
    std::vector<Call> calls_;
    bool isServing_ = false;
};

}  // namespace trelvan::desktop
