#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/InputDevices.hpp"

#include <X11/keysym.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>

/// What else can go wrong around a program that holds the pointer.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};

class SafetyTest : public DesktopTest {
  protected:
    /// Waits until the program has said the line so many times.
    bool waitForLines(const std::string& text, int times) {
        return waitUntil([&] {
            const std::string output = program().output();
            int count = 0;
            for (auto at = output.find(text); at != std::string::npos; at = output.find(text, at + 1))
                ++count;
            return count >= times;
        });
    }
};

TEST_F(SafetyTest, EventsOfAnEarlierGrabDoNotArriveAgain) {
    start(Settings().map(3, "Copiar"));
    // While the program looks away, the device goes back onto the pointer: what it does now reaches the
    // applications, and the program, whose grab goes on, sees it as well.
    program().signal(SIGSTOP);
    InputDevices(desktop().displayName()).attachToPointer("trackball");
    trackball().move(5, 0);
    trackball().click(9);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 9));
    const Position place = client().pointer();
    program().signal(SIGCONT);
    EXPECT_TRUE(waitForLines("Dispositivo capturado: trackball", 2));
    EXPECT_EQ(passSentinel(), place);
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{9});
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(SafetyTest, ButtonsHeldOnADeviceThatIsPulledOutAreReleased) {
    start(Settings().map(3, "Copiar"));
    trackball().press(1);
    trackball().press(12);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, 12));
    InputDevices(desktop().displayName()).setPresent("trackball", false);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 1));
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 12));
    mouse().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    client().forget();
    InputDevices(desktop().displayName()).setPresent("trackball", true);
    trackball().reconnect();
    // The driver reports what changed while it was off.
    for (const int button : {1, 12}) trackball().release(button);
    EXPECT_TRUE(waitForLines("Dispositivo capturado: trackball", 2));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(SafetyTest, DevicesThatAnotherClientHoldsAreNamedAndTakenOnceTheyAreFree) {
    {
        // A grab ends with its connection.
        InputDevices other(desktop().displayName());
        for (const char* name : {"trackball", "mouse"}) ASSERT_TRUE(other.hold(name));
        launch(Settings().map(3, "Copiar"));
        for (const char* name : {"trackball", "mouse"}) {
            EXPECT_TRUE(program().waitForLine("Otro programa retiene el dispositivo " + std::string(name)));
        }
        // Whether the program may tap at all is another question.
        EXPECT_NE(program().output().find("Accesibilidad: concedida"), std::string::npos);
    }
    EXPECT_TRUE(waitForLines("Dispositivo capturado", 2));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(SafetyTest, AccessThatTheServerTakesAwayAndGivesBackIsFollowed) {
    const auto denied = desktop().folder() / "home" / "denied";
    // The second variable matters to a program that looks for memory errors.
    start(Settings().map(3, "Copiar"), {{"LD_PRELOAD", DENY_GRABS},
                                        {"ASAN_OPTIONS", "verify_asan_link_order=0"},
                                        {"DENY_GRABS_WHILE", denied}});
    EXPECT_TRUE(waitForLines("Accesibilidad: concedida ✅", 1));
    writeFile(denied, "");
    // Devices that are held stay held; one that comes back must be grabbed anew.
    for (const bool isPresent : {false, true})
        InputDevices(desktop().displayName()).setPresent("trackball", isPresent);
    trackball().reconnect();
    EXPECT_TRUE(waitForLines("Accesibilidad: denegada ❌", 1));
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));
    EXPECT_TRUE(client().strokes().empty());

    std::filesystem::remove(denied);
    EXPECT_TRUE(waitForLines("Accesibilidad: concedida ✅", 2));
    EXPECT_TRUE(waitUntil([&] {
        trackball().click(extra);
        return client().waitForStroke(copy, std::chrono::milliseconds{50});
    }));
}

TEST_F(SafetyTest, PointerMovesWhileAnotherClientHoldsTheServer) {
    start(Settings().map(3, "Copiar"));
    // As a window manager does while a window is dragged: it asks for the pointer until the button is up.
    Display* display = client().connection().get();
    trackball().press(1);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, 1));
    XGrabServer(display);
    const Position from = client().pointer();
    trackball().move(30, 20);
    EXPECT_TRUE(waitUntil([&] { return client().pointer() == Position{from.x + 30, from.y + 20}; }));
    trackball().release(1);
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    XUngrabServer(display);
    XSync(display, False);
}

TEST_F(SafetyTest, FunctionThatFiresFasterThanAHandIsStoppedForAMoment) {
    start(Settings().map(3, "Copiar"));
    int presses = 0;
    const auto isStopped = [&] {
        for (int burst = 0; burst < 20; ++burst) trackball().click(extra);
        presses += 20;
        return program().output().find("se dispara más rápido que ninguna mano") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(isStopped));
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    // Its pause over, the button is served again.
    client().forget();
    EXPECT_TRUE(waitUntil([&] {
        trackball().click(extra);
        return client().waitForStroke(copy, std::chrono::milliseconds{200});
    }));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(SafetyTest, FunctionThatWasStoppedServesEveryPressAfterItsSecond) {
    start(Settings().map(3, "Copiar").map(-100, "Pegar"));
    const auto trip = [&](const std::string& control, const std::function<void()>& fire) {
        const std::string line = "La función " + control + " se dispara";
        EXPECT_TRUE(waitUntil([&] {
            for (int burst = 0; burst < 50; ++burst) fire();
            return program().output().find(line) != std::string::npos;
        }));
    };
    const auto pressButton = [this] { trackball().click(extra); };
    const auto turnWheel = [this] { trackball().scrollVertical(1); };
    trip("del botón 3", pressButton);
    trip("de la rueda hacia arriba", turnWheel);
    // What fired before the stops is through when nothing more comes.
    EXPECT_TRUE(waitUntil([&] {
        client().forget();
        return !client().waitFor([&](const auto&) { return !client().strokes().empty(); },
                                 std::chrono::milliseconds{300});
    }));
    // Both pauses are over once both fire again.
    const auto firesAgain = [&](const std::function<void()>& fire, KeyStroke stroke) {
        return waitUntil([&] {
            client().forget();
            fire();
            return client().waitForStroke(stroke, std::chrono::milliseconds{200});
        });
    };
    const KeyStroke paste{XK_v, ControlMask};
    EXPECT_TRUE(firesAgain(pressButton, copy));
    EXPECT_TRUE(firesAgain(turnWheel, paste));
    client().forget();
    for (int press = 0; press < 20; ++press) {
        pressButton();
        turnWheel();
        // Each keystroke takes some 30 milliseconds.
        const auto arrived = static_cast<std::size_t>(2 * press + 2);
        EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() >= arrived; },
                                     std::chrono::milliseconds{1000}));
    }
    const auto strokes = client().strokes();
    EXPECT_EQ(std::ranges::count(strokes, copy), 20);
    EXPECT_EQ(std::ranges::count(strokes, paste), 20);
}

TEST_F(SafetyTest, EscapeHeldGivesTheDevicesBackAndTakesThemAgain) {
    start(Settings().map(3, "Copiar"));
    trackball().press(1);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, 1));
    holdKey(XK_Escape);
    EXPECT_TRUE(program().waitForLine("los dispositivos quedan libres", std::chrono::seconds{30}));
    releaseKey(XK_Escape);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 1));
    trackball().releaseAll();
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));

    holdKey(XK_Escape);
    EXPECT_TRUE(program().waitForLine("se retoman los dispositivos", std::chrono::seconds{30}));
    releaseKey(XK_Escape);
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(SafetyTest, LossOfTheServerEndsItWithStatusOneAndIsNamed) {
    VirtualDesktop doomed;
    TrelvanProcess lost(doomed, Settings().map(3, "Copiar"));
    const auto guard = lost.guard();
    ASSERT_TRUE(guard.has_value());
    doomed.killServer();
    const auto status = lost.waitForEnd();
    ASSERT_TRUE(status.has_value());
    EXPECT_TRUE(WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 1);
    EXPECT_NE(lost.errors().find("se perdió la conexión con el servidor X " + doomed.displayName()),
              std::string::npos)
        << lost.errors();
    EXPECT_TRUE(waitUntil([&] {
        endAdopted();
        return ::kill(*guard, 0) != 0;
    }));
}

TEST_F(SafetyTest, LossOfTheServerLeavesNoPageWhetherTheGuardLivesOrNot) {
    for (const bool hasGuard : {true, false}) {
        VirtualDesktop doomed;
        TrelvanProcess lost(doomed, Settings().map(3, "Copiar"));
        const auto pages = [&] {
            int count = 0;
            for (const auto& entry : std::filesystem::directory_iterator(doomed.folder() / "run"))
                count += entry.path().filename().string().starts_with("trelvan-held") ? 1 : 0;
            return count;
        };
        EXPECT_EQ(pages(), 1);
        // A guard that dies again at once is not replaced for a second.
        for (int round = 0; !hasGuard && round < 2; ++round) {
            std::optional<pid_t> guard;
            ASSERT_TRUE(waitUntil([&] { return (guard = lost.guard()).has_value(); }));
            ::kill(*guard, SIGKILL);
            ASSERT_TRUE(waitUntil([&] { return lost.guard() != guard; }));
        }
        doomed.killServer();
        EXPECT_TRUE(lost.waitForEnd().has_value());
        EXPECT_TRUE(waitUntil([&] { return pages() == 0; })) << hasGuard;
    }
}

}  // namespace
}  // namespace trelvan::desktop
