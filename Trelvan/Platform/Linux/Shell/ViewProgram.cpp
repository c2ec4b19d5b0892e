#include "Platform/Linux/Shell/ViewProgram.hpp"

#include "Platform/Linux/Applications/ProgramRun.hpp"

#include <QProcess>
#include <QStandardPaths>
#include <cstddef>
#include <utility>

namespace trelvan {

namespace {

/// Lists windows and applications on every desktop, with the keyboard or the pointer.
constexpr const char* commonProgram = "rofi";

void showByNext(std::vector<ViewProgram> programs, std::size_t index, std::function<void()> otherwise) {
    if (index == programs.size()) return otherwise();
    const auto& [command, answers] = programs[index];
    const auto program = QStandardPaths::findExecutable(QString::fromStdString(command.front()));
    QStringList arguments;
    for (std::size_t word = 1; word < command.size(); ++word) {
        arguments << QString::fromStdString(command[word]);
    }
    auto next = [programs, index, otherwise] { showByNext(programs, index + 1, otherwise); };
    if (program.isEmpty()) return next();
    if (answers) return runProgram(program, arguments, next);
    if (!QProcess::startDetached(program, arguments)) next();
}

}  // namespace

std::vector<ViewProgram> viewPrograms(DesktopKind desktop, SystemView view) {
    std::vector<ViewProgram> programs;
    switch (view) {
        case SystemView::missionControl:
        case SystemView::appExpose:
            if (desktop == DesktopKind::xfce)
                programs.push_back({.command = {"xfdesktop", "--windowlist"}, .answers = true});
            programs.push_back({.command = {commonProgram, "-show", "window"}});
            break;
        case SystemView::launchpad:
            if (desktop == DesktopKind::xfce) {
                programs.push_back({.command = {"xfce4-popup-whiskermenu"}, .answers = true});
                programs.push_back({.command = {"xfce4-appfinder"}});
            }
            programs.push_back({.command = {commonProgram, "-show", "drun"}});
            break;
        default:
            break;
    }
    return programs;
}

std::optional<ViewProgram> installedViewProgram(DesktopKind desktop, SystemView view) {
    for (auto& program : viewPrograms(desktop, view)) {
        if (!QStandardPaths::findExecutable(QString::fromStdString(program.command.front())).isEmpty())
            return program;
    }
    return std::nullopt;
}

std::string_view programToInstall(SystemView view) {
    return viewPrograms(DesktopKind::other, view).empty() ? "" : commonProgram;
}

void showByProgram(DesktopKind desktop, SystemView view, const std::function<void()>& otherwise) {
    showByNext(viewPrograms(desktop, view), 0, otherwise);
}

}  // namespace trelvan
