#include "Platform/Linux/Session/BusInstance.hpp"

#include "Platform/Linux/Session/BusCall.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <cctype>
#include <utility>

namespace trelvan {

namespace {

constexpr int patience = 3000;

}  // namespace

QString instanceName(const std::string& display) {
    // A screen number behind the display's is no other display.
    std::string plain = display.substr(0, display.find('.', display.rfind(':') + 1));
    for (char& letter : plain) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    }
    return QString::fromStdString("org.trelvan.Trelvan.display" + plain);
}

BusInstance::BusInstance(QDBusConnection session, QString name, uid_t user)
    : session_(std::move(session)), name_(std::move(name)), user_(user) {}

BusInstance::~BusInstance() {
    if (!isServing_) return;
    session_.unregisterService(name_);
    session_.unregisterObject(path);
}

SingleInstance::Reach BusInstance::serve(std::function<void()> onShow) {
    onShow_ = std::move(onShow);
    if (!session_.isConnected()) return Reach::noBus;
    if (!session_.registerObject(path, this, QDBusConnection::ExportScriptableSlots)) return Reach::taken;
    isServing_ = session_.registerService(name_);
    if (!isServing_) session_.unregisterObject(path);
    return isServing_ ? Reach::reachable : Reach::taken;
}

void BusInstance::Show() {
    if (!calledFromDBus()) return;
    setDelayedReply(true);
    const QDBusMessage asked = message();
    auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetConnectionUnixUser");
    question << asked.service();
    callOverBus(session_, question, [this, asked, weak = std::weak_ptr(alive_)](const BusAnswer& answer) {
        if (weak.expired()) return;
        if (answer.status != BusAnswer::Status::done || answer.reply.arguments().value(0).toUInt() != user_) {
            session_.send(asked.createErrorReply(QDBusError::AccessDenied, "another user's"));
            return;
        }
        session_.send(asked.createReply());
        if (onShow_) onShow_();
    });
}

bool askInstanceToShow(const QDBusConnection& session, const QString& name) {
    if (!session.isConnected()) return false;
    const auto call = QDBusMessage::createMethodCall(name, BusInstance::path, BusInstance::interface, "Show");
    return session.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

}  // namespace trelvan
