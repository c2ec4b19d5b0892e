#include "Platform/Linux/Applications/ProgramStart.hpp"

#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Logger.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QUrl>
#include <array>
#include <vector>

namespace trelvan {

namespace {

/// Says why something was not opened; false, as the answer of who asked for it.
bool reportFailure(const std::string& path, std::string_view reason) {
    AppLogger.warning(InlineText("No se pudo abrir ", path, ": ", reason));
    return false;
}

/// The terminal emulators that take "-e program arguments", the desktop's own choice first.
constexpr std::array terminals{"x-terminal-emulator", "konsole", "xfce4-terminal", "mate-terminal", "xterm"};

bool prependTerminal(std::vector<std::string>& command) {
    for (const char* terminal : terminals) {
        const auto program = QStandardPaths::findExecutable(terminal);
        if (program.isEmpty()) continue;
        command.insert(command.begin(), {program.toStdString(), "-e"});
        return true;
    }
    return false;
}

/// Qt gives a detached process a session of its own.
bool startDetached(const std::vector<std::string>& command, const std::string& folder,
                   const StartTold& told) {
    QProcess process;
    process.setProgram(QString::fromStdString(command.front()));
    QStringList arguments;
    for (std::size_t index = 1; index < command.size(); ++index) {
        arguments << QString::fromStdString(command[index]);
    }
    process.setArguments(arguments);
    process.setWorkingDirectory(QString::fromStdString(folder));
    if (!told.startupId.empty()) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DESKTOP_STARTUP_ID", QString::fromStdString(told.startupId));
        process.setProcessEnvironment(environment);
    }
    qint64 number = 0;
    if (!process.startDetached(&number)) return false;
    if (told.started) told.started(static_cast<long>(number));
    return true;
}

bool isInstalled(const std::string& program) {
    return !QStandardPaths::findExecutable(QString::fromStdString(program)).isEmpty();
}

bool startByCommand(const DesktopEntry& entry, const std::string& path, const StartTold& told) {
    auto command = commandLine(entry, path);
    if (command.empty()) return reportFailure(path, "no es una aplicación");
    if (!isInstalled(command.front()))
        return reportFailure(path, InlineText("no se encuentra el programa ", command.front()));
    if (entry.terminal && !prependTerminal(command)) return reportFailure(path, "no hay terminal");
    return startDetached(command, entry.path.empty() ? homeFolder() : entry.path, told) ||
           reportFailure(path, "no se pudo ejecutar");
}

/// Asks the application over the session bus, which starts it where it does not run.
bool startOverBus(const DesktopEntry& entry, const std::string& path, const StartTold& told) {
    if (!QDBusConnection::sessionBus().isConnected()) return startByCommand(entry, path, told);
    const std::string id(desktopEntryId(path));
    auto activate = QDBusMessage::createMethodCall(QString::fromStdString(id),
                                                   QString::fromStdString(applicationObjectPath(id)),
                                                   "org.freedesktop.Application", "Activate");
    QVariantMap platformData;
    if (!told.startupId.empty())
        platformData.insert("desktop-startup-id", QString::fromStdString(told.startupId));
    activate << platformData;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(activate));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, entry, path, told] {
        // One that is slow to answer still comes up.
        if (watcher->isError() && watcher->error().type() != QDBusError::NoReply)
            startByCommand(entry, path, told);
        watcher->deleteLater();
    });
    return true;
}

bool startEntry(const std::string& path, const StartTold& told) {
    const auto content = readFile(path);
    if (!content.bytes) return reportFailure(path, content.error);
    const auto entry = parseDesktopEntry(*content.bytes);
    if (!entry) return reportFailure(path, "no es una aplicación");
    if (!entry->tryExec.empty() && !isInstalled(entry->tryExec))
        return reportFailure(path, InlineText("no se encuentra el programa ", entry->tryExec));
    if (entry->dbusActivatable) return startOverBus(*entry, path, told);
    return startByCommand(*entry, path, told);
}

}  // namespace

bool startApplication(const std::string& path, const StartTold& told) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return reportFailure(path, "no existe");
    if (S_ISDIR(info.st_mode)) {
        openWithDesktop(path, true);
        return true;
    }
    if (path.ends_with(".desktop")) return startEntry(path, told);
    if (access(path.c_str(), X_OK) != 0) return reportFailure(path, "no tiene permiso de ejecución");
    return startDetached({path}, homeFolder(), told) || reportFailure(path, "no se pudo ejecutar");
}

void openWithDesktop(const std::string& address, bool isLocalPath) {
    const auto text = QString::fromStdString(address);
    const QUrl url = isLocalPath ? QUrl::fromLocalFile(text) : QUrl(text);
    if (!url.isValid() || url.isEmpty() || !QDesktopServices::openUrl(url)) {
        reportFailure(address, "el escritorio no lo abre");
    }
}

}  // namespace trelvan
