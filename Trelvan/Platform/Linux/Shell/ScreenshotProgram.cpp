#include "Platform/Linux/Shell/ScreenshotProgram.hpp"

#include <QProcess>
#include <QStandardPaths>

namespace trelvan {

namespace {

/// A program with its options for the whole screen, for an area, and for its own choice of these.
std::vector<std::string> command(const char* program, const char* full, const char* area, const char* choice,
                                 SystemView view) {
    const auto with = [program](const char* option) {
        std::vector<std::string> words{program};
        if (option != nullptr) words.emplace_back(option);
        return words;
    };
    switch (view) {
        case SystemView::screenshotFull:
            return with(full);
        case SystemView::screenshotArea:
            return with(area);
        case SystemView::screenshotTool:
            return with(choice);
        default:
            return {};
    }
}

}  // namespace

std::vector<std::string> screenshotCommand(DesktopKind desktop, SystemView view) {
    switch (desktop) {
        case DesktopKind::xfce:
            return command("xfce4-screenshooter", "-f", "-r", nullptr, view);
        case DesktopKind::mate:
            return command("mate-screenshot", nullptr, "-a", "-i", view);
        case DesktopKind::cinnamon:
            return command("gnome-screenshot", nullptr, "-a", "-i", view);
        case DesktopKind::gnome:
        case DesktopKind::kde:
        case DesktopKind::other:
            return {};
    }
    return {};
}

bool startScreenshot(DesktopKind desktop, SystemView view) {
    const auto words = screenshotCommand(desktop, view);
    if (words.empty()) return false;
    const auto program = QStandardPaths::findExecutable(QString::fromStdString(words.front()));
    QStringList arguments;
    for (std::size_t index = 1; index < words.size(); ++index) {
        arguments << QString::fromStdString(words[index]);
    }
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

}  // namespace trelvan
