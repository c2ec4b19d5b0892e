// A service on the session bus that writes down what it is asked and answers as it was told to.
//
//   desktop-fake-service RECORD NAME [MEMBER=ANSWER...]
//
// RECORD gets a line for each call: the path, the member and the arguments. ANSWER is "error", "silence",
// "crash", "true", "false" or "number:N" (in a variant), or a value as below; members that are not named are
// answered with nothing. A value is "bool:true", "text:T", "path:/P", "list:A,B,C" or "map:KEY=true,KEY=T"
// (of variants).
//
// "Introspect=XML" is what the service says of its interfaces.
//
// The call test.Signals.Emit PATH INTERFACE MEMBER VALUE... makes the service send that signal.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantMap>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

QString textOf(const QVariant& argument) {
    return argument.canConvert<QDBusVariant>() ? textOf(argument.value<QDBusVariant>().variant())
                                               : argument.toString();
}

QVariant plainValue(const QString& text) {
    if (text == "true" || text == "false") return text == "true";
    return text;
}

/// What the text says; invalid where it is no value.
QVariant valueOf(const QString& text) {
    const auto kind = text.section(':', 0, 0);
    const auto content = text.section(':', 1);
    if (kind == "bool") return content == "true";
    if (kind == "text") return content;
    if (kind == "path") return QVariant::fromValue(QDBusObjectPath(content));
    if (kind == "list") return content.split(',', Qt::SkipEmptyParts);
    if (kind != "map") return {};
    QVariantMap map;
    for (const auto& entry : content.split(',', Qt::SkipEmptyParts))
        map[entry.section('=', 0, 0)] = plainValue(entry.section('=', 1));
    return map;
}

class Service : public QDBusVirtualObject {
  public:
    Service(std::string recordPath, QMap<QString, QString> answersByMember)
        : record(std::move(recordPath)), answers(std::move(answersByMember)) {}

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() == "test.Signals" && message.member() == "Emit")
            return emitSignal(message, connection);
        if (message.member() == "Introspect" && answers.contains("Introspect")) {
            connection.send(message.createReply("<node>" + answers.value("Introspect") + "</node>"));
            return true;
        }
        QString line = message.path() + ' ' + message.member();
        for (const auto& argument : message.arguments()) line += ' ' + textOf(argument);
        write(line);
        if (answers.value(message.member()) == "crash") std::_Exit(1);
        if (answers.value(message.member()) != "silence") connection.send(answerTo(message));
        return true;
    }

    void write(const QString& line) const {
        std::ofstream(record, std::ios::app) << line.toStdString() << std::endl;
    }

  private:
    static bool emitSignal(const QDBusMessage& order, const QDBusConnection& connection) {
        const auto words = order.arguments();
        auto signal = QDBusMessage::createSignal(words.value(0).toString(), words.value(1).toString(),
                                                 words.value(2).toString());
        for (const auto& word : words.mid(3)) signal << valueOf(word.toString());
        connection.send(signal);
        connection.send(order.createReply());
        return true;
    }

    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage& message) const {
        const auto answer = answers.value(message.member());
        if (answer == "error")
            return message.createErrorReply("org.freedesktop.DBus.Error.AccessDenied", "no");
        if (const auto value = valueOf(answer); value.isValid()) return message.createReply(value);
        if (answer.isEmpty()) return message.createReply();
        if (answer.startsWith("number:"))
            return message.createReply(QVariant::fromValue(QDBusVariant(answer.mid(7).toUInt())));
        return message.createReply(QVariant::fromValue(QDBusVariant(answer == "true")));
    }

    std::string record;
    QMap<QString, QString> answers;
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: desktop-fake-service RECORD NAME [MEMBER=ANSWER...]\n", stderr);
        return 2;
    }
    QMap<QString, QString> answers;
    for (const auto& argument : arguments.mid(3)) {
        answers[argument.section('=', 0, 0)] = argument.section('=', 1);
    }
    Service service(arguments[1].toStdString(), answers);
    auto bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject("/", &service, QDBusConnection::SubPath) ||
        !bus.registerService(arguments[2])) {
        std::fputs("no place on the bus\n", stderr);
        return 1;
    }
    service.write("ready");
    return QCoreApplication::exec();
}
