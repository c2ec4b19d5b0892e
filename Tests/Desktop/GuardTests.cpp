#include "Desktop/GuardTest.hpp"

#include <sys/ptrace.h>
#include <sys/wait.h>

#include <csignal>
#include <vector>

/// The program hangs or is stopped: the pointer works, and comes back to the program when that does.
namespace trelvan::desktop {
namespace {

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
