#include "Platform/Linux/ProgramStart.hpp"

#include "Platform/Linux/DesktopEntry.hpp"
#include "Platform/Linux/DurableFile.hpp"
#include "Platform/Linux/HomeFolder.hpp"
#include "Utilities/Logger.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <array>
#include <vector>

namespace trelvan {

namespace {

void reportFailure(const std::string& path, std::string_view reason) {
    AppLogger.warning(ShortText("No se pudo abrir ", path, ": ", reason));
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
bool startDetached(const std::vector<std::string>& command, const std::string& folder) {
    QProcess process;
    process.setProgram(QString::fromStdString(command.front()));
    QStringList arguments;
    for (std::size_t index = 1; index < command.size(); ++index) {
        arguments << QString::fromStdString(command[index]);
    }
    process.setArguments(arguments);
    process.setWorkingDirectory(QString::fromStdString(folder));
    return process.startDetached();
}

void startEntry(const std::string& path) {
    const auto content = readFile(path);
    if (!content.bytes) return reportFailure(path, content.error);
    const auto entry = parseDesktopEntry(*content.bytes);
    auto command = entry ? commandLine(*entry, path) : std::vector<std::string>{};
    if (command.empty()) return reportFailure(path, "no es una aplicación");
    if (entry->terminal && !prependTerminal(command)) return reportFailure(path, "no hay terminal");
    if (!startDetached(command, entry->path.empty() ? homeFolder() : entry->path)) {
        reportFailure(path, "no se pudo ejecutar");
    }
}

}  // namespace

void startApplication(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return reportFailure(path, "no existe");
    if (S_ISDIR(info.st_mode)) return openWithDesktop(path, true);
    if (path.ends_with(".desktop")) return startEntry(path);
    if (access(path.c_str(), X_OK) != 0) return reportFailure(path, "no es ejecutable");
    if (!startDetached({path}, homeFolder())) reportFailure(path, "no se pudo ejecutar");
}

void openWithDesktop(const std::string& address, bool isLocalPath) {
    const auto text = QString::fromStdString(address);
    const QUrl url = isLocalPath ? QUrl::fromLocalFile(text) : QUrl(text);
    if (!url.isValid() || url.isEmpty() || !QDesktopServices::openUrl(url)) {
        reportFailure(address, "el escritorio no lo abre");
    }
}

}  // namespace trelvan
