#include "Platform/Linux/Applications/ProgramRun.hpp"

#include <QProcess>

namespace trelvan {

void runProgram(const QString& program, const QStringList& arguments,
                const std::function<void()>& otherwise) {
    auto* process = new QProcess;
    const auto ended = [process, otherwise](bool isDone) {
        process->deleteLater();
        if (!isDone) otherwise();
    };
    QObject::connect(process, &QProcess::finished, process, [ended](int code, QProcess::ExitStatus status) {
        ended(status == QProcess::NormalExit && code == 0);
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) ended(false);
    });
    process->start(program, arguments, QIODevice::NotOpen);
}

}  // namespace trelvan
