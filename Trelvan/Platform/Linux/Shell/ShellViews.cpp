#include "Platform/Linux/Shell/ShellViews.hpp"

#include "Platform/Linux/Session/BusCall.hpp"
#include "Utilities/Logger.hpp"

#include <QDBusReply>
#include <QDBusVariant>
#include <utility>

namespace trelvan {

namespace {

using Otherwise = ShellViews::Otherwise;
using Status = BusAnswer::Status;

constexpr const char* gnomeShell = "org.gnome.Shell";
constexpr const char* gnomePath = "/org/gnome/Shell";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* kdeShortcuts = "org.kde.kglobalaccel";
constexpr const char* plasmaShell = "org.kde.plasmashell";
constexpr const char* cinnamon = "org.Cinnamon";

void call(const QDBusMessage& message, std::function<void(const BusAnswer&)> answered) {
    callOverBus(QDBusConnection::sessionBus(), message, std::move(answered));
}

/// What to do with an answer that needs no reading: nothing when it is done, else the other way, but for a
/// shell that may still do it.
std::function<void(const BusAnswer&)> settle(const Otherwise& otherwise) {
    return [otherwise](const BusAnswer& answer) {
        if (answer.status == Status::refused) return otherwise();
        if (answer.status == Status::silent)
            AppLogger.warning(InlineText("El escritorio no respondió: ", answer.error.toStdString()));
    };
}

void setGnomeOverview(bool shown, const Otherwise& otherwise) {
    auto set = QDBusMessage::createMethodCall(gnomeShell, gnomePath, properties, "Set");
    set << gnomeShell << "OverviewActive" << QVariant::fromValue(QDBusVariant(shown));
    call(set, settle(otherwise));
}

void toggleGnomeOverview(const Otherwise& otherwise) {
    auto get = QDBusMessage::createMethodCall(gnomeShell, gnomePath, properties, "Get");
    get << gnomeShell << "OverviewActive";
    call(get, [otherwise](const BusAnswer& answer) {
        if (answer.status != Status::done) return settle(otherwise)(answer);
        const QDBusReply<QDBusVariant> isActive(answer.reply);
        setGnomeOverview(!isActive.value().variant().toBool(), otherwise);
    });
}

void showGnomeApplications(const Otherwise& otherwise) {
    call(QDBusMessage::createMethodCall(gnomeShell, gnomePath, gnomeShell, "ShowApplications"),
         settle(otherwise));
}

/// Invokes the first of the component's shortcuts that it has: which there are depends on the version and on
/// the effects that are on, and asking for another is answered like success.
void invokeKde(const QString& component, const QStringList& shortcuts, const Otherwise& otherwise) {
    const auto method = [component](const char* name) {
        return QDBusMessage::createMethodCall(kdeShortcuts, "/component/" + component,
                                              "org.kde.kglobalaccel.Component", name);
    };
    call(method("shortcutNames"), [=](const BusAnswer& answer) {
        if (answer.status != Status::done) return settle(otherwise)(answer);
        const QStringList known = QDBusReply<QStringList>(answer.reply).value();
        for (const auto& shortcut : shortcuts) {
            if (!known.contains(shortcut)) continue;
            auto invoke = method("invokeShortcut");
            invoke << shortcut;
            return call(invoke, settle(otherwise));
        }
        otherwise();
    });
}

/// The shell's own call does what a press of its launcher's button does. Where it has none, its shortcut may
/// have this name.
void showKdeLauncher(const Otherwise& otherwise) {
    call(QDBusMessage::createMethodCall(plasmaShell, "/PlasmaShell", "org.kde.PlasmaShell",
                                        "activateLauncherMenu"),
         settle([otherwise] { invokeKde("plasmashell", {"activate application launcher"}, otherwise); }));
}

void showCinnamon(const char* view, const Otherwise& otherwise) {
    call(QDBusMessage::createMethodCall(cinnamon, "/org/Cinnamon", cinnamon, view), settle(otherwise));
}

}  // namespace

void ShellViews::show(SystemView view, const Otherwise& otherwise) {
    const auto ofKde = [](const char* component, const QStringList& shortcuts, const Otherwise& last) {
        invokeKde(component, shortcuts, last);
    };
    switch (view) {
        case SystemView::missionControl:
            return toggleGnomeOverview([=] {
                ofKde("kwin", {"Overview", "ExposeAll", "Expose"},
                      [=] { showCinnamon("ShowOverview", otherwise); });
            });
        case SystemView::appExpose:
            // GNOME has one overview for both.
            return toggleGnomeOverview([=] { ofKde("kwin", {"ExposeClass"}, otherwise); });
        case SystemView::launchpad:
            return showGnomeApplications([=] { showKdeLauncher(otherwise); });
        case SystemView::screenshotArea:
            return ofKde("org_kde_spectacle_desktop", {"RectangularRegionScreenShot"}, otherwise);
        case SystemView::screenshotFull:
            return ofKde("org_kde_spectacle_desktop", {"FullScreenScreenShot"}, otherwise);
        case SystemView::screenshotTool:
            return ofKde("org_kde_spectacle_desktop", {"_launch"}, otherwise);
        case SystemView::emojiPanel:
            return ofKde("org_kde_plasma_emojier_desktop", {"_launch"}, otherwise);
        case SystemView::showDesktop:
            return ofKde("kwin", {"Show Desktop"}, otherwise);
        case SystemView::desktopLeft:
            return ofKde("kwin", {"Switch One Desktop to the Left"}, otherwise);
        case SystemView::desktopRight:
            return ofKde("kwin", {"Switch One Desktop to the Right"}, otherwise);
        case SystemView::lockScreen:
            return otherwise();
    }
}

std::vector<std::string_view> ShellViews::services(SystemView view) {
    switch (view) {
        case SystemView::missionControl:
            return {gnomeShell, kdeShortcuts, cinnamon};
        case SystemView::appExpose:
        case SystemView::launchpad:
            return {gnomeShell, kdeShortcuts};
        case SystemView::lockScreen:
            return {};
        default:
            return {kdeShortcuts};
    }
}

std::vector<SystemView> ShellViews::offered() {
    using enum SystemView;
    if (isOnBus(QDBusConnection::sessionBus(), gnomeShell)) return {missionControl, appExpose, launchpad};
    if (isOnBus(QDBusConnection::sessionBus(), kdeShortcuts)) {
        return {missionControl, appExpose,      launchpad,      showDesktop,    desktopLeft,
                desktopRight,   screenshotArea, screenshotFull, screenshotTool, emojiPanel};
    }
    if (isOnBus(QDBusConnection::sessionBus(), cinnamon)) return {missionControl};
    return {};
}

void ShellViews::showGnomeOverview(const Otherwise& otherwise) {
    setGnomeOverview(true, otherwise);
}

}  // namespace trelvan
