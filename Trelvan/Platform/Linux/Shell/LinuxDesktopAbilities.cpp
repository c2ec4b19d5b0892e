#include "Platform/DesktopAbilities.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Applications/DesktopEntry.hpp"
#include "Platform/Linux/Applications/NoteApplications.hpp"
#include "Platform/Linux/Shell/ScreenLock.hpp"
#include "Platform/Linux/Shell/ScreenshotProgram.hpp"
#include "Platform/Linux/Shell/ShellViews.hpp"
#include "Platform/Linux/Shell/ViewProgram.hpp"
#include "Platform/Linux/X11/RootProperties.hpp"
#include "Platform/Platform.hpp"
#include "Platform/Shared/XdgFolders.hpp"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QStandardPaths>
#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace trelvan {

namespace {

using Way = ViewAbility::Way;

/// Each view with the symbolic hot key of the desktop's shortcut for it.
constexpr std::array<std::pair<SystemView, int>, 11> views{{
    {SystemView::missionControl, hotkey::missionControl},
    {SystemView::appExpose, hotkey::appWindows},
    {SystemView::launchpad, hotkey::launchpad},
    {SystemView::showDesktop, hotkey::showDesktop},
    {SystemView::desktopLeft, hotkey::desktopLeft},
    {SystemView::desktopRight, hotkey::desktopRight},
    {SystemView::screenshotArea, hotkey::screenshotArea},
    {SystemView::screenshotFull, hotkey::screenshotFull},
    {SystemView::screenshotTool, hotkey::screenshotTool},
    {SystemView::emojiPanel, hotkey::emojiPanel},
    {SystemView::lockScreen, hotkey::lockScreen},
}};

bool isInstalled(const std::string& program) {
    return !QStandardPaths::findExecutable(QString::fromStdString(program)).isEmpty();
}

/// Asks in the order in which the views are asked for themselves.
class Probe {
  public:
    explicit Probe(const std::map<int, NamedHotKey>& shortcuts)
        : desktop_(currentDesktop()), shortcuts_(shortcuts) {
        auto opened = XConnection::open();
        if (auto* connection = std::get_if<std::unique_ptr<XConnection>>(&opened))
            connection_ = std::move(*connection);
    }

    [[nodiscard]] ViewAbility ability(SystemView view, int hotKey) const {
        if (isShownByWindowManager(view)) return {.way = Way::windowManager, .with = {}, .toInstall = {}};
        for (const auto service : services(view)) {
            if (isOnBus(service)) return {.way = Way::shell, .with = std::string(service), .toInstall = {}};
        }
        const auto shortcut = shortcuts_.find(hotKey);
        if (shortcut == shortcuts_.end()) {
            const auto command = screenshotCommand(desktop_, view);
            if (!command.empty() && isInstalled(command.front()))
                return {.way = Way::program, .with = command.front(), .toInstall = {}};
        } else {
            return {.way = Way::shortcut,
                    .with = shortcut->second.key,
                    .flags = shortcut->second.flags,
                    .toInstall = {}};
        }
        if (const auto program = installedViewProgram(desktop_, view))
            return {.way = Way::program, .with = program->command.front(), .toInstall = {}};
        if (!connection_ || !QDBusConnection::sessionBus().isConnected()) return {};
        return {.way = Way::nothing, .with = {}, .toInstall = std::string(programToInstall(view))};
    }

  private:
    [[nodiscard]] bool isShownByWindowManager(SystemView view) const {
        const char* const property = windowManagerProperty(view);
        return connection_ && property != nullptr && RootProperties(*connection_).isSupported(property);
    }

    static const char* windowManagerProperty(SystemView view) {
        switch (view) {
            case SystemView::showDesktop:
                return "_NET_SHOWING_DESKTOP";
            case SystemView::desktopLeft:
            case SystemView::desktopRight:
                return "_NET_CURRENT_DESKTOP";
            default:
                return nullptr;
        }
    }

    static std::vector<std::string_view> services(SystemView view) {
        return view == SystemView::lockScreen ? ScreenLock::services() : ShellViews::services(view);
    }

    static bool isOnBus(std::string_view service) {
        const auto bus = QDBusConnection::sessionBus();
        const auto name = QString::fromUtf8(service.data(), static_cast<qsizetype>(service.size()));
        return bus.isConnected() && bus.interface()->isServiceRegistered(name);
    }

    DesktopKind desktop_;
    const std::map<int, NamedHotKey>& shortcuts_;
    std::unique_ptr<XConnection> connection_;
};

}  // namespace

DesktopAbilities desktopAbilities() {
    // The bus and the programs need one.
    int count = 1;
    std::array<char, 8> name{"trelvan"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    const QCoreApplication application(count, arguments.data());

    DesktopAbilities result{
        .desktop = std::string(currentDesktopNames()), .views = {}, .noteApplication = {}};
    result.hotKeys = desktopHotKeys();
    const Probe probe(result.hotKeys);
    for (const auto& [view, hotKey] : views) result.views[view] = probe.ability(view, hotKey);
    for (const auto id : noteApplications(result.desktop)) {
        if (result.noteApplication) break;
        result.noteApplication = findDesktopEntry(id);
    }
    return result;
}

}  // namespace trelvan
