#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/RecordingService.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/X11/X11.hpp"

#include <QDBusConnectionInterface>
#include <csignal>
#include <memory>

/// The whole program with Keep Awake on desktops that nobody has touched for longer than the shortest idle
/// threshold, a minute. The desktops wait side by side, and beside the other test programs.
namespace trelvan::desktop {
namespace {

constexpr auto screenSaver = "org.freedesktop.ScreenSaver";
constexpr uint cookie = 42;

std::string busAddressOf(const VirtualDesktop& desktop) {
    return desktop.environment().at("DBUS_SESSION_BUS_ADDRESS");
}

/// How long nobody has touched the desktop, as its server counts it.
std::chrono::milliseconds idleTime(const VirtualDesktop& desktop) {
    Display* display = XOpenDisplay(desktop.displayName().c_str());
    if (display == nullptr) return {};
    XScreenSaverInfo info{};
    XScreenSaverQueryInfo(display, DefaultRootWindow(display), &info);
    XCloseDisplay(display);
    return std::chrono::milliseconds(info.idle);
}

/// A desktop with a screen saver service and the program on it, with Keep Awake.
struct Place {
    explicit Place(VirtualDesktop& onDesktop)
        : desktop(onDesktop), service(busAddressOf(desktop), screenSaver, [](const auto& call) {
              return call.method == "Inhibit" ? QVariantList{cookie} : QVariantList();
          }) {}

    void start() {
        program.emplace(
            desktop,
            Settings().set("keep_awake_enabled", true).set("keep_awake_idle_threshold_minutes", 1.0));
    }
    /// What was asked for; that the program also asks whether the screen is locked is no matter here.
    [[nodiscard]] std::vector<RecordingService::Call> requests() const {
        auto calls = service.calls();
        std::erase_if(calls, [](const auto& call) { return call.method == "GetActive"; });
        return calls;
    }
    [[nodiscard]] bool isAsked(std::size_t calls) const {
        return runUntil([&] { return requests().size() >= calls; });
    }
    /// Whether the one who asked first is still on the bus, which is how services tell.
    [[nodiscard]] bool isCallerThere() const {
        const auto bus = QDBusConnection::connectToBus(QString::fromStdString(busAddressOf(desktop)),
                                                       desktop.displayName().c_str());
        return bus.interface()->isServiceRegistered(requests().front().caller);
    }

    VirtualDesktop& desktop;
    RecordingService service;
    std::optional<TrelvanProcess> program;
};

using KeepAwakeTest = ServerTest;

TEST_F(KeepAwakeTest, DesktopIsHeldAwakeUntilTheUserReturnsOrTheProgramIsKilled) {
    VirtualDesktop another;
    Place returned(desktop());
    Place killed(another);
    for (const Place* place : {&returned, &killed}) {
        ASSERT_TRUE(runUntil([&] { return idleTime(place->desktop) > std::chrono::seconds{60}; },
                             std::chrono::seconds{90}));
    }
    for (Place* place : {&returned, &killed}) {
        place->start();
        ASSERT_TRUE(place->isAsked(1));
        EXPECT_EQ(place->requests()[0].method, "Inhibit");
        EXPECT_EQ(place->requests()[0].arguments, (QVariantList{"Trelvan", "Keep Awake"}));
    }

    returned.desktop.trackball().move(5, 0);
    ASSERT_TRUE(returned.isAsked(2));
    EXPECT_EQ(returned.requests()[1].method, "UnInhibit");
    EXPECT_EQ(returned.requests()[1].arguments, QVariantList{cookie});

    EXPECT_TRUE(killed.isCallerThere());
    killed.program->signal(SIGKILL);
    EXPECT_TRUE(runUntil([&] { return !killed.isCallerThere(); }));
    EXPECT_EQ(killed.requests().size(), 1U) << "it was away all the time";
}

}  // namespace
}  // namespace trelvan::desktop
