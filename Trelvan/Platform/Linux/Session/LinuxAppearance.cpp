#include "Platform/Linux/Session/LinuxAppearance.hpp"

#include "Platform/Linux/Session/BusCall.hpp"
#include "Platform/Linux/X11/X11.hpp"

#include <QDBusArgument>
#include <QDBusVariant>
#include <string>
#include <tuple>
#include <utility>

namespace trelvan {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";

constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";
/// The value of `colorScheme` that asks for dark windows.
constexpr uint dark = 1;

/// Red, green and blue, 0 to 1; anything else stands for no colour.
constexpr const char* accentColorKey = "accent-color";

constexpr const char* interfaceGroup = "org.gnome.desktop.interface";
constexpr const char* animations = "enable-animations";

/// Some portals wrap the value once more.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<Rgb> colorOf(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)") return std::nullopt;
    Rgb color;
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    for (const double part : {color.red, color.green, color.blue}) {
        if (!(part >= 0 && part <= 1)) return std::nullopt;
    }
    return color;
}

}  // namespace

LinuxAppearance::LinuxAppearance(XConnection& connection, QDBusConnection session)
    : connection_(connection), session_(std::move(session)) {
    session_.connect(service, path, interface, "SettingChanged", this, SLOT(settingChanged(QDBusMessage)));
    ask(appearanceGroup, colorScheme);
    ask(appearanceGroup, accentColorKey);
    ask(interfaceGroup, animations);
}

void LinuxAppearance::ask(const char* group, const char* key) {
    auto call = QDBusMessage::createMethodCall(service, path, interface, "Read");
    call << group << key;
    callOverBus(session_, call, [this, group, key, weak = std::weak_ptr(alive_)](const BusAnswer& answer) {
        if (weak.expired() || answer.status != BusAnswer::Status::done) return;
        note(group, key, answer.reply.arguments().value(0));
    });
}

void LinuxAppearance::settingChanged(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    note(arguments.value(0).toString(), arguments.value(1).toString(), arguments.value(2));
}

void LinuxAppearance::note(const QString& group, const QString& key, const QVariant& value) {
    const QVariant plain = unwrapped(value);
    const auto former = std::tuple(prefersDark_, reducesMotion_, accentColor_);
    if (group == appearanceGroup && key == colorScheme) prefersDark_ = plain.toUInt() == dark;
    if (group == appearanceGroup && key == accentColorKey) accentColor_ = colorOf(plain);
    if (group == interfaceGroup && key == animations) reducesMotion_ = !plain.toBool();
    if (former != std::tuple(prefersDark_, reducesMotion_, accentColor_)) tellChange();
}

bool LinuxAppearance::composites() const {
    Display* display = connection_.display();
    const auto name = "_NET_WM_CM_S" + std::to_string(DefaultScreen(display));
    return XGetSelectionOwner(display, connection_.atom(name.c_str())) != x11::none;
}

}  // namespace trelvan
