#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/FakeService.hpp"
#include "Desktop/Harness/XTray.hpp"

#include <X11/keysym.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <string>

/// The ways to the settings window: the item in the tray, a further start, the bus.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};

class SettingsWindowTest : public DesktopTest {
  protected:
    /// The program's window, by its title; 0 when it is not on the screen. Windows may go while they are
    /// looked at.
    Window window() {
        const auto former = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        const Window found = windowByTitle();
        XSync(client().connection().get(), False);
        XSetErrorHandler(former);
        return found;
    }
    Window windowByTitle() {
        auto& connection = client().connection();
        for (const long listed : connection.property(connection.root(), "_NET_CLIENT_LIST")) {
            char* title = nullptr;
            if (XFetchName(connection.get(), static_cast<Window>(listed), &title) == 0) continue;
            const bool isIt = title != nullptr && std::string(title) == "Trelvan";
            if (title != nullptr) XFree(title);
            if (isIt) return static_cast<Window>(listed);
        }
        return 0;
    }
    bool opens() {
        return waitUntil([&] { return window() != 0; });
    }
    bool closes() {
        return waitUntil([&] { return window() == 0; });
    }
    /// The user turns to another window. The program may just be asking for the activation of its own.
    bool closesWhenAnotherIsActivated() {
        return waitUntil([&] {
            client().connection().activate(client().window());
            XSync(client().connection().get(), False);
            return window() == 0;
        });
    }
    bool isActive() {
        auto& connection = client().connection();
        return waitUntil([&] {
            return connection.property(connection.root(), "_NET_ACTIVE_WINDOW") ==
                   std::vector<long>{static_cast<long>(window())};
        });
    }
    ProgramResult startAgain(std::vector<std::string> arguments, const std::string& bus = "") {
        auto environment = desktop().environment();
        if (!bus.empty()) environment["DBUS_SESSION_BUS_ADDRESS"] = bus;
        arguments.insert(arguments.end(), {"--config", (desktop().folder() / "home" / "other").string()});
        return runProgram(desktop(), arguments, environment);
    }
    /// Whether nobody holds keyboard or pointer by an active grab.
    bool isNothingGrabbed() {
        Display* display = client().connection().get();
        const bool keyboard = XGrabKeyboard(display, client().connection().root(), False, GrabModeAsync,
                                            GrabModeAsync, CurrentTime) == GrabSuccess;
        if (keyboard) XUngrabKeyboard(display, CurrentTime);
        const bool pointer = XGrabPointer(display, client().connection().root(), False, 0, GrabModeAsync,
                                          GrabModeAsync, None, None, CurrentTime) == GrabSuccess;
        if (pointer) XUngrabPointer(display, CurrentTime);
        XSync(display, False);
        return keyboard && pointer;
    }
    void moveOntoIcon() {
        const Position from = client().pointer();
        const Position to{XTray::left + XTray::iconSide / 2, XTray::iconSide / 2};
        trackball().move(to.x - from.x, to.y - from.y);
        EXPECT_TRUE(waitUntil([&] { return client().pointer() == to; }));
    }
    long residentKilobytes() {
        std::ifstream status("/proc/" + std::to_string(program().id()) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
        }
        return 0;
    }
};

TEST_F(SettingsWindowTest, FurtherStartOpensTheWindowOfTheRunningProgramAndEnds) {
    start(Settings().map(3, "Copiar"));
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {"--show"}}) {
        const auto second = startAgain(arguments);
        EXPECT_EQ(second.exitCode, 0) << second.errors;
        EXPECT_EQ(second.output, "Trelvan already runs on this display; its window is open\n");
        EXPECT_TRUE(opens());
        EXPECT_TRUE(isActive());
        EXPECT_TRUE(closesWhenAnotherIsActivated());
    }
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(SettingsWindowTest, FirstStartWithShowServesAndOpensItsOwnWindow) {
    launch(Settings().map(3, "Copiar"), {}, {"--show"});
    EXPECT_TRUE(opens());
    EXPECT_TRUE(program().waitForLine("EventMonitor iniciado"));
}

TEST_F(SettingsWindowTest, FurtherStartThatReachesNobodySaysWhy) {
    start(Settings().map(3, "Copiar"));
    const auto second = startAgain({"--show"}, "unix:path=/nonexistent/bus");
    EXPECT_EQ(second.exitCode, 4);
    EXPECT_NE(second.errors.find("already runs on this display"), std::string::npos) << second.errors;
    EXPECT_NE(second.errors.find("DBUS_SESSION_BUS_ADDRESS"), std::string::npos) << second.errors;
    EXPECT_EQ(window(), 0U);
}

TEST_F(SettingsWindowTest, ProgramWithoutABusSaysSoAndServes) {
    start(Settings().map(3, "Copiar"), {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"}});
    EXPECT_TRUE(program().waitForLine("No hay bus de sesión"));
    EXPECT_NE(program().errors().find("There is no session bus"), std::string::npos) << program().errors();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(SettingsWindowTest, ItemInTheTrayOpensTheWindowBelowItAndClosesItAgain) {
    start(Settings().map(3, "Copiar"));
    // It comes later than the program, as panels do.
    XTray tray(desktop().displayName());
    ASSERT_NE(tray.waitForIcon(), 0U);
    moveOntoIcon();
    trackball().click(1);
    ASSERT_TRUE(opens());
    EXPECT_TRUE(isActive());
    // The click itself is a grab until its release was handled.
    EXPECT_TRUE(waitUntil([&] { return isNothingGrabbed(); }));
    // Two clicks in quick succession are one double click, which leaves the window open.
    const auto clicksUntil = [&](bool isOpen) {
        return waitUntil([&] {
            trackball().click(1);
            return waitUntil([&] { return (window() != 0) == isOpen; }, std::chrono::milliseconds{800});
        });
    };
    EXPECT_TRUE(clicksUntil(false));
    EXPECT_TRUE(clicksUntil(true));
    EXPECT_TRUE(closesWhenAnotherIsActivated());
}

TEST_F(SettingsWindowTest, EscapeClosesTheWindow) {
    start(Settings().map(3, "Copiar"));
    startAgain({"--show"});
    ASSERT_TRUE(opens());
    ASSERT_TRUE(isActive());
    desktop().keyboard().keyStroke(client().keyCode(XK_Escape));
    EXPECT_TRUE(closes());
}

TEST_F(SettingsWindowTest, HungProgramLosesItsMenuAndKeepsItsIcon) {
    start(Settings().map(3, "Copiar"));
    XTray tray(desktop().displayName());
    const Window icon = tray.waitForIcon();
    ASSERT_NE(icon, 0U);
    moveOntoIcon();
    trackball().click(3);
    EXPECT_TRUE(waitUntil([&] { return !isNothingGrabbed(); }));
    program().signal(SIGSTOP);
    EXPECT_TRUE(waitUntil([&] { return isNothingGrabbed(); }));
    EXPECT_TRUE(tray.isShown(icon));
    program().signal(SIGCONT);
}

TEST_F(SettingsWindowTest, ItemOnTheBusOpensTheWindow) {
    const FakeService watcher(
        desktop(), "org.kde.StatusNotifierWatcher",
        {"Get=true",
         "Introspect=<interface name=\"org.kde.StatusNotifierWatcher\">"
         "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/></interface>"});
    start(Settings().map(3, "Copiar"));
    const std::string registered = "/StatusNotifierWatcher RegisterStatusNotifierItem ";
    std::string item;
    ASSERT_TRUE(waitUntil([&] {
        for (const std::string& call : watcher.calls()) {
            if (call.starts_with(registered)) item = call.substr(registered.size());
        }
        return !item.empty();
    }));
    ChildProcess click(Launch{
        .arguments = {"/usr/bin/dbus-send", "--session", "--print-reply", "--dest=" + item,
                      "/StatusNotifierItem", "org.kde.StatusNotifierItem.Activate", "int32:700", "int32:10"},
        .environment = desktop().environment(),
        .directory = desktop().folder(),
        .output = desktop().folder() / "click.output",
        .errors = {}});
    EXPECT_EQ(click.waitForEnd(timeout), 0) << readFile(desktop().folder() / "click.output");
    EXPECT_TRUE(opens());
}

TEST_F(SettingsWindowTest, ProgramIsSmallBeforeItsWindowIsOpened) {
    start(Settings().map(3, "Copiar"));
    XTray tray(desktop().displayName());
    ASSERT_NE(tray.waitForIcon(), 0U);
    const long before = residentKilobytes();
    startAgain({"--show"});
    ASSERT_TRUE(opens());
    const long after = residentKilobytes();
    RecordProperty("before", std::to_string(before));
    RecordProperty("after", std::to_string(after));
    std::printf("resident before the first opening: %ld kB, with the window: %ld kB\n", before, after);
    EXPECT_LT(before, 32 * 1024);
}

}  // namespace
}  // namespace trelvan::desktop
