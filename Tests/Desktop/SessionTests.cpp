#include "Desktop/Harness/FakeService.hpp"
#include "Desktop/SmartButtonTest.hpp"

#include <set>

// A locked screen, as services tell it and as lockers that tell nobody show it.

namespace trelvan::desktop {
namespace {

constexpr auto lockedLine = "Sesión bloqueada o en segundo plano";
constexpr auto usableLine = "La sesión vuelve a estar en uso";

/// A client with windows that no window manager handles, and the keyboard and pointer where it took them. All
/// of it goes with the object.
class Unmanaged {
  public:
    explicit Unmanaged(const std::string& display) : connection(display) {}

    Window show(int width = VirtualDesktop::width, int height = VirtualDesktop::height) {
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        attributes.event_mask = ButtonPressMask | ButtonReleaseMask;
        window = XCreateWindow(connection.get(), connection.root(), 0, 0, static_cast<unsigned>(width),
                               static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, CopyFromParent,
                               CWOverrideRedirect | CWEventMask, &attributes);
        XMapRaised(connection.get(), window);
        XSync(connection.get(), False);
        return window;
    }
    /// An ordinary window, which the window manager takes.
    void showManaged() {
        const Window managed =
            XCreateSimpleWindow(connection.get(), connection.root(), 0, 0, 200, 200, 0, 0, 0);
        XMapWindow(connection.get(), managed);
        XSync(connection.get(), False);
        EXPECT_TRUE(waitUntil([&] {
            const auto list = connection.property(connection.root(), "_NET_CLIENT_LIST");
            return std::ranges::find(list, static_cast<long>(managed)) != list.end();
        }));
    }
    void lower() {
        XLowerWindow(connection.get(), window);
        XSync(connection.get(), False);
    }
    void takeKeyboard(bool onRoot = true) {
        EXPECT_TRUE(waitUntil([&] {
            return XGrabKeyboard(connection.get(), onRoot ? connection.root() : window, True, GrabModeAsync,
                                 GrabModeAsync, CurrentTime) == GrabSuccess;
        }));
    }
    void takePointer() {
        EXPECT_TRUE(waitUntil([&] {
            return XGrabPointer(connection.get(), connection.root(), False,
                                ButtonPressMask | ButtonReleaseMask, GrabModeAsync, GrabModeAsync, None, None,
                                CurrentTime) == GrabSuccess;
        }));
    }
    void takeFocus() {
        XSetInputFocus(connection.get(), window, RevertToPointerRoot, CurrentTime);
        XSync(connection.get(), False);
    }
    /// All that a locker does, one way or another.
    void lock() {
        show();
        takePointer();
        takeKeyboard();
    }
    bool waitForPress(unsigned button) {
        return waitUntil([&] {
            read();
            return pressed.contains(button);
        });
    }
    bool waitForRelease(unsigned button) {
        return waitUntil([&] {
            read();
            return released.contains(button);
        });
    }
    std::multiset<unsigned> pressed;
    std::multiset<unsigned> released;

  private:
    void read() {
        while (XPending(connection.get()) > 0) {
            XEvent event;
            XNextEvent(connection.get(), &event);
            if (event.type == ButtonPress) pressed.insert(event.xbutton.button);
            if (event.type == ButtonRelease) released.insert(event.xbutton.button);
        }
    }

    XConnection connection;
    Window window = 0;
};

constexpr int starter = 4;

class SessionTest : public SmartButtonTest {
  protected:
    Settings settings() {
        return twoShortcuts().map(starter, "Abrir Aplicación", {{"appPath", program("started")}});
    }
    void serve(const std::map<std::string, std::string>& more = {}) { start(settings(), more); }
    std::unique_ptr<Unmanaged> other() { return std::make_unique<Unmanaged>(desktop().displayName()); }

    bool isLocked(int times = 1) { return says(lockedLine, times); }
    bool isUsable(int times = 1) { return says(usableLine, times); }
    /// The application is started, as by every press in a session in use.
    void expectServing() {
        std::filesystem::remove(witness("started"));
        trackball().click(xButton(starter));
        EXPECT_TRUE(hasRun("started"));
    }
    /// Presses pass to the application in front and start nothing.
    void expectNotServing() {
        std::filesystem::remove(witness("started"));
        client().forget();
        trackball().click(xButton(starter));
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, xButton(starter), 1));
        trackball().click(xButton(opener));
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, xButton(opener), 1));
        passSentinel();
        EXPECT_FALSE(std::filesystem::exists(witness("started")));
        EXPECT_EQ(overlay(), 0U);
    }

    /// Windows that no window manager handles leave the focus to nobody.
    void takeFocusBack() {
        XSetInputFocus(client().connection().get(), client().window(), RevertToPointerRoot, CurrentTime);
        XSync(client().connection().get(), False);
    }

  private:
    bool says(const std::string& line, int times) {
        return waitUntil([&] { return DesktopTest::program().lines(line) >= times; });
    }
};

// Lockers that tell nobody

TEST_F(SessionTest, NothingStartsBehindALockerAndPressesReachIt) {
    serve();
    auto locker = other();
    locker->lock();
    ASSERT_TRUE(isLocked());
    trackball().click(xButton(starter));
    EXPECT_TRUE(locker->waitForRelease(xButton(starter)));
    trackball().click(xButton(opener));
    EXPECT_TRUE(locker->waitForRelease(xButton(opener)));
    EXPECT_FALSE(std::filesystem::exists(witness("started")));
    locker.reset();
    ASSERT_TRUE(isUsable());
    passSentinel();
    EXPECT_FALSE(std::filesystem::exists(witness("started")));
    EXPECT_EQ(overlay(), 0U);
    expectServing();
}

TEST_F(SessionTest, LockerIsSeenInWhateverOrderItTakesWhatItNeeds) {
    serve();
    int times = 0;
    for (const bool onRoot : {true, false}) {
        for (const bool isKeyboardFirst : {true, false}) {
            for (const bool hasFocus : {true, false}) {
                auto locker = other();
                if (isKeyboardFirst && onRoot) locker->takeKeyboard();
                locker->show();
                if (hasFocus) locker->takeFocus();
                if (!isKeyboardFirst || !onRoot) locker->takeKeyboard(onRoot);
                ++times;
                EXPECT_TRUE(isLocked(times)) << onRoot << isKeyboardFirst << hasFocus;
                locker.reset();
                EXPECT_TRUE(isUsable(times));
            }
        }
    }
    takeFocusBack();
    expectServing();
}

TEST_F(SessionTest, LockerThatIsThereBeforeTheProgramIsSeen) {
    auto locker = other();
    locker->lock();
    launch(settings());
    ASSERT_TRUE(isLocked());
    trackball().click(xButton(starter));
    EXPECT_TRUE(locker->waitForRelease(xButton(starter)));
    EXPECT_FALSE(std::filesystem::exists(witness("started")));
    locker.reset();
    ASSERT_TRUE(isUsable());
    expectServing();
}

TEST_F(SessionTest, OpenMenuClosesWhenTheScreenIsLocked) {
    serve();
    openAt({700, 440});
    auto locker = other();
    locker->lock();
    EXPECT_TRUE(isLocked());
    trackball().click(xButton(opener));
    EXPECT_TRUE(locker->waitForRelease(xButton(opener)));
    locker.reset();
    EXPECT_TRUE(isUsable());
    passSentinel();
    EXPECT_EQ(overlay(), 0U);
    expectServing();
}

TEST_F(SessionTest, ReleaseOfAPressThatWasSwallowedBeforeIsSwallowed) {
    serve();
    trackball().press(xButton(starter));
    EXPECT_TRUE(hasRun("started"));
    auto locker = other();
    locker->lock();
    ASSERT_TRUE(isLocked());
    trackball().release(xButton(starter));
    trackball().click(sentinelButton);
    EXPECT_TRUE(locker->waitForRelease(sentinelButton));
    EXPECT_FALSE(locker->released.contains(xButton(starter)));
    locker.reset();
    ASSERT_TRUE(isUsable());
}

TEST_F(SessionTest, NotificationInFrontOfTheLockerUnlocksNothing) {
    serve();
    auto locker = other();
    locker->lock();
    ASSERT_TRUE(isLocked());
    auto notification = other();
    notification->show(300, 80);
    trackball().click(xButton(starter));
    EXPECT_TRUE(locker->waitForRelease(xButton(starter)));
    EXPECT_FALSE(std::filesystem::exists(witness("started")));
    EXPECT_EQ(DesktopTest::program().lines(usableLine), 0);
    locker.reset();
    ASSERT_TRUE(isUsable());
}

TEST_F(SessionTest, WindowsThatCoverTheScreenOrHoldTheKeyboardAreNoLockers) {
    serve();
    {
        auto message = other();
        message->show();
        expectServing();
    }
    {
        auto menu = other();
        menu->show(300, 400);
        menu->takeKeyboard();
        expectServing();
    }
    {
        auto game = other();
        game->showManaged();
        game->show();
        game->takeKeyboard();
        expectServing();
    }
    {
        auto wallpaper = other();
        wallpaper->show();
        wallpaper->lower();
        auto menu = other();
        menu->show(300, 400);
        menu->takeKeyboard();
        expectServing();
    }
    EXPECT_EQ(DesktopTest::program().lines(lockedLine), 0);
    takeFocusBack();
}

TEST_F(SessionTest, LockerThatUsersHaveIsSeenAndItsEndToo) {
    serve();
    {
        ChildProcess locker(Launch{.arguments = {"/usr/bin/i3lock", "--nofork"},
                                   .environment = desktop().environment(),
                                   .directory = desktop().folder(),
                                   .output = desktop().folder() / "i3lock.output",
                                   .errors = {}});
        ASSERT_TRUE(isLocked()) << readFile(desktop().folder() / "i3lock.output");
        trackball().click(xButton(starter));
        trackball().click(xButton(opener));
        EXPECT_TRUE(locker.isRunning());
        EXPECT_EQ(DesktopTest::program().lines(usableLine), 0);
    }
    ASSERT_TRUE(isUsable());
    passSentinel();
    EXPECT_FALSE(std::filesystem::exists(witness("started")));
    EXPECT_EQ(overlay(), 0U);
    expectServing();
}

// Screen savers

constexpr auto saver = "org.gnome.ScreenSaver";
constexpr auto saverPath = "/org/gnome/ScreenSaver";

TEST_F(SessionTest, ScreenSaverThatComesOnAndGoesIsHeard) {
    const FakeService service(desktop(), saver, {"GetActive=bool:false"});
    serve();
    expectServing();
    service.emitSignal(saverPath, saver, "ActiveChanged", {"bool:true"});
    ASSERT_TRUE(isLocked());
    expectNotServing();
    service.emitSignal(saverPath, saver, "ActiveChanged", {"bool:false"});
    ASSERT_TRUE(isUsable());
    expectServing();
}

TEST_F(SessionTest, ScreenSaverThatIsOnAtTheStartIsAsked) {
    const FakeService service(desktop(), saver, {"GetActive=bool:true"});
    serve();
    ASSERT_TRUE(isLocked());
    expectNotServing();
}

TEST_F(SessionTest, ScreenSaverThatComesLaterIsHeardAndOneThatDiesLocksNobodyOut) {
    serve();
    {
        const FakeService service(desktop(), saver, {"GetActive=bool:false"});
        ASSERT_TRUE(service.waitForCall(std::string(saverPath) + " GetActive"));
        service.emitSignal(saverPath, saver, "ActiveChanged", {"bool:true"});
        ASSERT_TRUE(isLocked());
    }
    ASSERT_TRUE(isUsable());
    expectServing();
    const FakeService again(desktop(), saver, {"GetActive=bool:true"});
    ASSERT_TRUE(isLocked(2));
    expectNotServing();
}

TEST_F(SessionTest, ScreenSaverThatHangsHoldsNothingUp) {
    const FakeService service(desktop(), saver, {"GetActive=silence"});
    serve();
    expectServing();
}

TEST_F(SessionTest, CommonScreenSaverNameIsHeardOnEachOfItsPaths) {
    const FakeService service(desktop(), "org.freedesktop.ScreenSaver", {"GetActive=bool:false"});
    serve();
    service.emitSignal("/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged", {"bool:true"});
    ASSERT_TRUE(isLocked());
    service.emitSignal("/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged",
                       {"bool:false"});
    ASSERT_TRUE(isUsable());
}

// The login manager

constexpr auto loginPath = "/org/freedesktop/login1/session/_31";
constexpr auto loginSession = "org.freedesktop.login1.Session";

class LoginSessionTest : public SessionTest {
  protected:
    /// The test's bus is the system's too.
    void serveOn(const std::string& properties) {
        login.reset();
        login = std::make_unique<FakeService>(
            desktop(), "org.freedesktop.login1",
            std::vector<std::string>{std::string("GetSession=path:") + loginPath,
                                     "GetAll=map:" + properties});
        serve({{"DBUS_SYSTEM_BUS_ADDRESS", desktop().environment().at("DBUS_SESSION_BUS_ADDRESS")},
               {"XDG_SESSION_ID", "1"}});
        ASSERT_TRUE(login->waitForCall(std::string(loginPath) + " GetAll " + loginSession));
    }
    void change(const std::string& properties) {
        login->emitSignal(loginPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                          {std::string("text:") + loginSession, "map:" + properties, "list:"});
    }
    std::unique_ptr<FakeService> login;
};

TEST_F(LoginSessionTest, HintThatTheSessionIsLockedIsHeard) {
    serveOn("Type=x11,Active=true,LockedHint=false");
    expectServing();
    change("LockedHint=true");
    ASSERT_TRUE(isLocked());
    expectNotServing();
    change("LockedHint=false");
    ASSERT_TRUE(isUsable());
    expectServing();
}

TEST_F(LoginSessionTest, SessionThatIsNotTheActiveOneIsNotServed) {
    serveOn("Type=x11,Active=false,LockedHint=false");
    ASSERT_TRUE(isLocked());
    expectNotServing();
    change("Active=true");
    ASSERT_TRUE(isUsable());
    expectServing();
}

TEST_F(LoginSessionTest, SessionWithoutAScreenNeedNotBeTheActiveOne) {
    serveOn("Type=tty,Active=false,LockedHint=false");
    expectServing();
    EXPECT_EQ(DesktopTest::program().lines(lockedLine), 0);
}

TEST_F(LoginSessionTest, WishToLockCountsUntilALockerShouldBeThere) {
    serveOn("Type=x11,Active=true,LockedHint=false");
    login->emitSignal(loginPath, loginSession, "Lock");
    ASSERT_TRUE(isLocked());
    // Nobody locked.
    ASSERT_TRUE(isUsable());
    login->emitSignal(loginPath, loginSession, "Lock");
    ASSERT_TRUE(isLocked(2));
    login->emitSignal(loginPath, loginSession, "Unlock");
    ASSERT_TRUE(isUsable(2));
    expectServing();
}

TEST_F(LoginSessionTest, LoginManagerThatGoesLocksNobodyOut) {
    serveOn("Type=x11,Active=true,LockedHint=true");
    ASSERT_TRUE(isLocked());
    login.reset();
    ASSERT_TRUE(isUsable());
    expectServing();
}

}  // namespace
}  // namespace trelvan::desktop
