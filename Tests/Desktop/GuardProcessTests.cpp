#include "Desktop/GuardTest.hpp"

#include <sys/stat.h>

#include <csignal>
#include <fstream>

/// The guard as a process: how long it lives, what replaces it, what it does not do.
namespace trelvan::desktop {
namespace {

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

}  // namespace
}  // namespace trelvan::desktop
