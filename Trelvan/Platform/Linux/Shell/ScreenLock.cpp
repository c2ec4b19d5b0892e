#include "Platform/Linux/Shell/ScreenLock.hpp"

#include "Platform/Linux/Applications/ProgramRun.hpp"
#include "Platform/Linux/Session/BusCall.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace trelvan {

namespace {

struct ScreenSaver {
    const char* service;
    const char* path;
    /// Cinnamon's takes a message for those who find the screen locked.
    bool takesMessage = false;
};

/// The desktops' own first: some answer the common name with less.
constexpr std::array screenSavers{
    ScreenSaver{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    ScreenSaver{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver", true},
    ScreenSaver{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    ScreenSaver{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"},
    ScreenSaver{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
};

void lockByProgram(const std::function<void()>& otherwise) {
    runProgram("xdg-screensaver", {"lock"}, otherwise);
}

void lockByLoginManager(const std::function<void()>& otherwise) {
    const auto lock =
        QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
                                       "org.freedesktop.login1.Session", "Lock");
    callOverBus(QDBusConnection::systemBus(), lock, [otherwise](const BusAnswer& answer) {
        if (answer.status == BusAnswer::Status::refused) lockByProgram(otherwise);
    });
}

/// XFCE's program knows which of several lockers runs, and says whether it locked; the login manager's signal
/// gives no sign of whether anybody heard it.
void lockByDesktop(DesktopKind desktop, const std::function<void()>& otherwise) {
    const auto byLoginManager = [otherwise] { lockByLoginManager(otherwise); };
    if (desktop != DesktopKind::xfce) return byLoginManager();
    runProgram("xflock4", {}, byLoginManager);
}

void lockByScreenSaver(std::size_t index, const std::function<void()>& otherwise) {
    if (index == screenSavers.size()) return otherwise();
    const auto& [service, path, takesMessage] = screenSavers[index];
    auto lock = QDBusMessage::createMethodCall(service, path, service, "Lock");
    if (takesMessage) lock << QString();
    callOverBus(QDBusConnection::sessionBus(), lock, [index, otherwise](const BusAnswer& answer) {
        // Some answer only once the screen is locked: silence is no refusal.
        if (answer.status == BusAnswer::Status::refused) lockByScreenSaver(index + 1, otherwise);
    });
}

}  // namespace

void ScreenLock::lock(DesktopKind desktop, const std::function<void()>& otherwise) {
    lockByScreenSaver(0, [desktop, otherwise] { lockByDesktop(desktop, otherwise); });
}

std::vector<std::string_view> ScreenLock::services() {
    std::vector<std::string_view> result;
    for (const auto& saver : screenSavers) result.emplace_back(saver.service);
    return result;
}

bool ScreenLock::isOffered() {
    return isOnBus(QDBusConnection::systemBus(), "org.freedesktop.login1") ||
           std::ranges::any_of(screenSavers, [](const ScreenSaver& saver) {
               return isOnBus(QDBusConnection::sessionBus(), saver.service);
           });
}

}  // namespace trelvan
