#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// The program hangs, is stopped or is killed at the worst moment: the pointer works and nothing stays held.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
constexpr int secondExtra = xButton(4);
/// More than the server's XTEST pointer has.
constexpr int highButton = 12;
const KeyStroke copy{XK_c, ControlMask};
constexpr auto takenAgain = "EventTap reactivado tras deshabilitación del sistema";

/// Stops the main thread alone, as a loop that hangs would; the others go on.
class StoppedMainThread {
  public:
    explicit StoppedMainThread(pid_t process) : process_(process) {
        if (ptrace(PTRACE_SEIZE, process_, nullptr, nullptr) != 0) return;
        ptrace(PTRACE_INTERRUPT, process_, nullptr, nullptr);
        int status = 0;
        isStopped_ = waitpid(process_, &status, __WALL) == process_ && WIFSTOPPED(status);
    }
    StoppedMainThread(const StoppedMainThread&) = delete;
    StoppedMainThread& operator=(const StoppedMainThread&) = delete;
    ~StoppedMainThread() { letGo(); }

    [[nodiscard]] bool isStopped() const { return isStopped_; }
    void letGo() const { ptrace(PTRACE_DETACH, process_, nullptr, nullptr); }

  private:
    pid_t process_;
    bool isStopped_ = false;
};

class GuardTest : public DesktopTest {
  protected:
    /// A shortcut that takes some fifty milliseconds: all four modifiers, on both sides.
    static Settings longShortcut() {
        return Settings().map(
            3, "Atajo Personalizado",
            {{"shortcut", {{"keyCode", 40}, {"modifiersRawValue", 0x1E0000}, {"displayString", "⌃⌥⇧⌘K"}}}});
    }

    /// Stops the program while it types; what it had pressed by then is down.
    void stopInTheMiddleOfAShortcut() {
        const auto isHeldWhileStopped = [&] {
            client().forget();
            trackball().click(extra);
            const bool begun = client().waitFor([](const auto& all) { return !all.empty(); });
            program().signal(SIGSTOP);
            if (begun && client().isAnythingHeld()) return true;
            program().signal(SIGCONT);
            return false;
        };
        ASSERT_TRUE(waitUntil(isHeldWhileStopped));
    }

    /// Moves until the pointer follows; how long that took.
    std::chrono::milliseconds moveUntilFree() {
        const auto begin = std::chrono::steady_clock::now();
        const Position from = client().pointer();
        EXPECT_TRUE(waitUntil([&] {
            trackball().move(1, 0);
            return client().pointer() != from;
        })) << "the pointer does not follow the trackball";
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    }

    /// Both devices reach the application as if the program had never been there.
    void expectDevicesFree() {
        client().forget();
        trackball().click(extra);
        mouse().click(extra);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra, 2));
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
    }

    void expectNothingHeld() {
        EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    }

    void expectServed(int button = extra) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForStroke(copy));
        passSentinel();
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{copy});
        EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    }

    /// The files in which programs keep what they hold.
    int pressedStates() {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(desktop().folder() / "run")) {
            count += entry.path().filename().string().starts_with("trelvan-held") ? 1 : 0;
        }
        return count;
    }

    /// The program's windows of one point outside the screen, on it or not.
    std::vector<std::pair<Window, bool>> grabWindows() {
        Display* display = client().connection().get();
        std::vector<std::pair<Window, bool>> found;
        Window root = None;
        Window parent = None;
        Window* windows = nullptr;
        unsigned count = 0;
        // Windows may go while they are looked at.
        const auto former = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        XQueryTree(display, client().connection().root(), &root, &parent, &windows, &count);
        for (const Window window : std::span(windows, count)) {
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(display, window, &attributes) == 0) continue;
            if (attributes.c_class != InputOnly || attributes.x != -1 || attributes.width != 1) continue;
            // The tap's alone asks for events; others of this size are owners of selections and probes.
            if ((attributes.all_event_masks & StructureNotifyMask) == 0) continue;
            found.emplace_back(window, attributes.map_state == IsViewable);
        }
        if (windows != nullptr) XFree(windows);
        XSetErrorHandler(former);
        return found;
    }
    void destroyGrabWindow() {
        const auto windows = grabWindows();
        ASSERT_EQ(windows.size(), 1U);
        XDestroyWindow(client().connection().get(), windows.front().first);
        XSync(client().connection().get(), False);
    }
    /// Whether the program still holds the devices; to ask moves nothing.
    bool holdsDevices() {
        const auto windows = grabWindows();
        return std::ranges::any_of(windows, [](const auto& window) { return window.second; });
    }
    bool losesDevicesSoon() {
        return waitUntil([&] { return !holdsDevices(); }, std::chrono::milliseconds{3000});
    }
    static void pause(std::chrono::milliseconds length) {
        waitUntil([] { return false; }, length);
    }
    /// Another guard than this one.
    pid_t guardAfter(pid_t former) {
        EXPECT_TRUE(waitUntil([&] {
            const auto present = program().guard();
            return present.has_value() && *present != former;
        })) << "the program has no new guard";
        return program().guard().value_or(0);
    }

    pid_t guard() {
        const auto process = program().guard();
        EXPECT_TRUE(process.has_value()) << "the program has no guard";
        return process.value_or(0);
    }

    static bool isAlive(pid_t process) { return ::kill(process, 0) == 0; }
};

TEST_F(GuardTest, StoppedProgramLosesThePointerSoonAndTakesItAgain) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    const auto frozen = moveUntilFree();
    // Half a second by design; the rest is a machine that others use.
    EXPECT_GE(frozen.count(), 400);
    EXPECT_LT(frozen.count(), 3000);
    expectDevicesFree();

    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    expectServed();
}

TEST_F(GuardTest, WhatTheProgramHadNotHandledWhenItLostThePointerNeverArrives) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    trackball().click(9);
    trackball().click(extra);
    moveUntilFree();
    const Position place = client().pointer();
    client().forget();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    EXPECT_EQ(passSentinel(), place);
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
}

TEST_F(GuardTest, ClicksWhileTheProgramIsStoppedArriveOnce) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    moveUntilFree();
    client().forget();
    trackball().click(9);
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{9});
}

TEST_F(GuardTest, StoppedProgramLosesThePointerEachTime) {
    start(Settings().map(3, "Copiar"));
    for (int round = 0; round < 3; ++round) {
        program().signal(SIGSTOP);
        moveUntilFree();
        program().signal(SIGCONT);
        // Until it has taken the devices again the button may arrive as itself.
        EXPECT_TRUE(waitUntil([&] {
            trackball().click(extra);
            return client().waitForStroke(copy, std::chrono::milliseconds{100});
        }));
        client().forget();
    }
}

TEST_F(GuardTest, WorkingProgramKeepsThePointerHoweverLongItIsMoved) {
    start(Settings().map(3, "Copiar"));
    // Three rounds of the guard's questions.
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds{1800};
    while (std::chrono::steady_clock::now() < end) {
        trackball().move(1, 0);
        trackball().move(-1, 0);
    }
    expectServed();
    EXPECT_EQ(wholeOutput().find(takenAgain), std::string::npos);
}

TEST_F(GuardTest, WindowOfTheGrabsThatSomebodyDestroyedIsReplacedAndTheErrorNamed) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    moveUntilFree();
    destroyGrabWindow();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine("X_MapWindow"));
    EXPECT_NE(program().output().find("Error de X: BadWindow"), std::string::npos);
    EXPECT_TRUE(waitUntil([&] {
        trackball().click(extra);
        return client().waitForStroke(copy, std::chrono::milliseconds{100});
    }));
    expectServed();
}

TEST_F(GuardTest, ButtonsHeldWhenTheProgramStopsAreReleased) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {1, 9, highButton}) trackball().press(button);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    program().signal(SIGSTOP);
    moveUntilFree();
    for (const unsigned button : {1U, 9U, 12U}) {
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, button)) << button;
    }
    trackball().releaseAll();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    for (const int button : {9, 10, highButton}) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
    expectServed();
}

TEST_F(GuardTest, ShortcutInTheMiddleOfWhichTheProgramStopsIsReleased) {
    start(longShortcut());
    stopInTheMiddleOfAShortcut();
    moveUntilFree();
    expectNothingHeld();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    expectNothingHeld();
}

TEST_F(GuardTest, BlockedMainLoopLosesThePointerAndTakesItAgain) {
    start(Settings().map(4, "Copiar"));
    const StoppedMainThread stopped(program().id());
    ASSERT_TRUE(stopped.isStopped());
    moveUntilFree();
    client().forget();
    trackball().click(secondExtra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, secondExtra));
    EXPECT_EQ(program().output().find(takenAgain), std::string::npos);

    stopped.letGo();
    EXPECT_TRUE(program().waitForLine(takenAgain));
    expectServed(secondExtra);
}

TEST_F(GuardTest, ProgramKilledWithButtonsHeldLeavesNothingHeld) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {1, 9, highButton}) trackball().press(button);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    // Back on the pointer, the trackball holds them itself until the user lets them go.
    trackball().releaseAll();
    for (const unsigned button : {1U, 9U, 12U}) {
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, button)) << button;
    }
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramKilledInTheMiddleOfAShortcutLeavesNothingHeld) {
    start(longShortcut());
    stopInTheMiddleOfAShortcut();
    program().signal(SIGKILL);
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramToldToEndInTheMiddleOfAShortcutLeavesNothingHeld) {
    start(longShortcut());
    trackball().click(extra);
    ASSERT_TRUE(client().waitFor([](const auto& all) { return !all.empty(); }));
    program().signal(SIGTERM);
    ASSERT_TRUE(program().waitForEnd().has_value());
    expectNothingHeld();
    expectDevicesFree();
}

TEST_F(GuardTest, ProgramKilledWithAKeyPutBackLeavesNothingHeld) {
    start(Settings().map(
        3, "Copiar", {{"functionSlots", 2}, {"secondaryTrigger1", "Shift"}, {"secondaryAction", "Pegar"}}));
    holdKey(XK_Shift_L);
    trackball().click(extra);
    ASSERT_TRUE(client().waitForStroke({XK_v, ControlMask}));
    passSentinel();
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    releaseKey(XK_Shift_L);
    expectNothingHeld();
    // On the XTEST device too: its next press would be none otherwise.
    start(Settings().map(
        3, "Atajo Personalizado",
        {{"shortcut", {{"keyCode", 40}, {"modifiersRawValue", 0x20000}, {"displayString", "⇧K"}}}}));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_k, ShiftMask}));
}

TEST_F(GuardTest, NextStartReleasesWhatAProgramKilledWithItsGuardLeft) {
    start(longShortcut());
    trackball().press(highButton);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, highButton));
    stopInTheMiddleOfAShortcut();
    ::kill(guard(), SIGKILL);
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    trackball().releaseAll();
    EXPECT_TRUE(client().isAnythingHeld());
    EXPECT_EQ(client().count(Kind::buttonRelease, highButton), 0);

    start(Settings().map(3, "Copiar"));
    expectNothingHeld();
    EXPECT_TRUE(program().waitForLine("Se soltó lo que una ejecución anterior dejó pulsado"));
    expectServed();
    for (const int button : {10, highButton}) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
}

TEST_F(GuardTest, GuardEndsWithTheProgramAndLeavesNoFile) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        start(Settings().map(3, "Copiar"));
        const pid_t process = guard();
        EXPECT_EQ(pressedStates(), 1);
        program().signal(signal);
        ASSERT_TRUE(program().waitForEnd().has_value());
        EXPECT_TRUE(waitUntil([&] { return pressedStates() == 0; }));
        // An orphan of the program is this process's to bury.
        EXPECT_TRUE(waitUntil([&] {
            endAdopted();
            return !isAlive(process);
        }));
    }
}

TEST_F(GuardTest, GuardOutlivesTheSignalsThatEndOrdinaryPrograms) {
    start(longShortcut());
    const pid_t process = guard();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) ::kill(process, signal);
    stopInTheMiddleOfAShortcut();
    program().signal(SIGKILL);
    expectNothingHeld();
}

TEST_F(GuardTest, ProgramThatLosesItsGuardSaysSoAndGoesOn) {
    start(Settings().map(3, "Copiar"));
    ::kill(guard(), SIGKILL);
    EXPECT_TRUE(program().waitForLine("El proceso guardián ha terminado"));
    expectServed();
}

TEST_F(GuardTest, GuardThatDiedIsReplacedByOneThatServes) {
    start(longShortcut());
    const pid_t first = guard();
    ::kill(first, SIGKILL);
    const pid_t second = guardAfter(first);
    // Once it has a connection of its own.
    pause(std::chrono::milliseconds{300});
    program().signal(SIGSTOP);
    moveUntilFree();
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    passSentinel();
    stopInTheMiddleOfAShortcut();
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    expectNothingHeld();
    EXPECT_TRUE(waitUntil([&] { return pressedStates() == 0; }));
    EXPECT_TRUE(waitUntil([&] {
        endAdopted();
        return !isAlive(second);
    }));
}

TEST_F(GuardTest, GuardThatDiesAgainAndAgainIsReplacedLessAndLessOften) {
    start(Settings().map(3, "Copiar"));
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds{2500};
    pid_t last = 0;
    int guards = 0;
    while (std::chrono::steady_clock::now() < end) {
        const auto present = program().guard();
        if (present.has_value() && *present != last) {
            last = *present;
            ++guards;
            ::kill(last, SIGKILL);
        }
        pause(std::chrono::milliseconds{5});
    }
    // The first, the one at once, and the one after a second.
    EXPECT_GE(guards, 2);
    EXPECT_LE(guards, 3);
    guardAfter(last);
    expectServed();
}

TEST_F(GuardTest, ProgramStoppedSoonAfterAnInputLosesThePointerByTheNextOne) {
    start(Settings().map(3, "Copiar"));
    for (const int milliseconds : {50, 150, 250, 350, 450}) {
        // The guard is at rest.
        pause(std::chrono::milliseconds{1200});
        trackball().move(1, 0);
        pause(std::chrono::milliseconds{milliseconds});
        program().signal(SIGSTOP);
        trackball().move(1, 0);
        EXPECT_TRUE(losesDevicesSoon()) << milliseconds;
        program().signal(SIGCONT);
        EXPECT_TRUE(waitUntil([&] {
            trackball().click(extra);
            return client().waitForStroke(copy, std::chrono::milliseconds{100});
        }));
        client().forget();
    }
}

TEST_F(GuardTest, StoppedProgramLosesThePointerByARelease) {
    start(Settings().map(3, "Copiar"));
    trackball().press(9);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, 9));
    pause(std::chrono::milliseconds{1200});
    program().signal(SIGSTOP);
    trackball().release(9);
    EXPECT_TRUE(losesDevicesSoon());
    program().signal(SIGCONT);
    EXPECT_TRUE(program().waitForLine(takenAgain));
    passSentinel();
}

TEST_F(GuardTest, GuardSleepsWhileNothingMoves) {
    start(Settings().map(3, "Copiar"));
    const pid_t process = guard();
    trackball().move(1, 0);
    pause(std::chrono::milliseconds{1500});
    const auto switches = [&] {
        int count = -1;
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        for (std::string word; status >> word;) {
            if (word == "voluntary_ctxt_switches:") status >> count;
        }
        return count;
    };
    const int before = switches();
    ASSERT_GE(before, 0);
    pause(std::chrono::milliseconds{1500});
    // Keys are none of its business as long as no menu is open.
    desktop().keyboard().keyStroke(client().keyCode(XK_a));
    pause(std::chrono::milliseconds{300});
    EXPECT_EQ(switches(), before);
}

TEST_F(GuardTest, PageThatOthersMayChangeIsNotUsed) {
    const auto page = desktop().folder() / "run" / ("trelvan-held" + desktop().displayName() + "-0");
    writeFile(page, "");
    std::filesystem::permissions(page, static_cast<std::filesystem::perms>(0666));
    start(Settings().map(3, "Copiar"));
    const pid_t process = guard();
    // Memory behind a file that somebody cuts off is no memory any more.
    std::filesystem::resize_file(page, 0);
    expectServed();
    EXPECT_TRUE(program().isRunning());
    EXPECT_TRUE(isAlive(process));
    std::filesystem::remove(page);
}

TEST_F(GuardTest, StoppedGuardDisturbsNobody) {
    start(Settings().map(3, "Copiar"));
    const pid_t process = guard();
    ::kill(process, SIGSTOP);
    expectServed();
    program().signal(SIGTERM);
    EXPECT_TRUE(program().waitForEnd().has_value());
    expectDevicesFree();
    ::kill(process, SIGCONT);
}

TEST_F(GuardTest, ProgramThatIsOnlyBehindKeepsTheDevices) {
    start(Settings());
    const auto [startX, startY] = client().pointer();
    // A program that gets the processor for a quarter of the time, and more to do than that suffices for.
    // Movements, for presses and turns beyond any hand's are left out.
    constexpr int rounds = 40;
    constexpr int pairs = 300;
    constexpr int farther = 50;
    trackball().setWaiting(false);
    for (int round = 0; round < rounds; ++round) {
        program().signal(SIGSTOP);
        for (int pair = 0; pair < pairs; ++pair) {
            trackball().move(1, 0);
            trackball().move(-1, 0);
        }
        trackball().settle();
        waitUntil([] { return false; }, std::chrono::milliseconds{60});
        program().signal(SIGCONT);
        waitUntil([] { return false; }, std::chrono::milliseconds{20});
    }
    trackball().setWaiting(true);
    trackball().move(farther, 0);
    const Position end{startX + farther, startY};
    EXPECT_TRUE(waitUntil([&] { return client().pointer() == end; }, std::chrono::seconds{60}));
    EXPECT_EQ(wholeOutput().find("reactivado"), std::string::npos);
}

}  // namespace
}  // namespace trelvan::desktop
