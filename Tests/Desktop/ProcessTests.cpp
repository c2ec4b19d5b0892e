#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/InputDevices.hpp"

#include <X11/keysym.h>
#include <sys/wait.h>

#include <csignal>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};

class ProcessTest : public DesktopTest {
  protected:
    /// The mapped button arrives as itself again, as if the program had never been there.
    void expectDevicesFree() {
        client().forget();
        const Position from = client().pointer();
        trackball().move(11, 7);
        trackball().click(extra);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));
        mouse().click(extra);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra, 2));
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
        EXPECT_EQ(client().pointer(), (Position{from.x + 11, from.y + 7}));
    }
};

TEST_F(ProcessTest, TerminateSignalEndsItWithStatusZeroAndFreesTheDevices) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGTERM);
    const auto status = program().waitForEnd();
    ASSERT_TRUE(status.has_value());
    EXPECT_TRUE(WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 0);
    expectDevicesFree();
}

TEST_F(ProcessTest, TerminateSignalDuringAPressLeavesNothingHeld) {
    start(Settings().map(3, "Copiar"));
    trackball().press(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    trackball().press(1);
    EXPECT_TRUE(client().waitForButton(Kind::buttonPress, 1));
    program().signal(SIGTERM);
    ASSERT_TRUE(program().waitForEnd().has_value());
    trackball().releaseAll();
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    expectDevicesFree();
}

TEST_F(ProcessTest, KilledProgramFreesTheDevices) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    expectDevicesFree();
}

TEST_F(ProcessTest, StoppedAndContinuedProgramServesAgain) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    trackball().click(9);
    program().signal(SIGCONT);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 9));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(ProcessTest, DeviceThatLeavesThePointerAndReturnsIsServedAgain) {
    start(Settings().map(3, "Copiar"));
    InputDevices(desktop().displayName()).detach("trackball");
    InputDevices(desktop().displayName()).attachToPointer("trackball");
    // Until the program has answered the return, the button may arrive as itself.
    const std::string taken = "Dispositivo capturado: trackball";
    EXPECT_TRUE(waitUntil([&] {
        const std::string output = program().output();
        const auto first = output.find(taken);
        return first != std::string::npos && output.find(taken, first + 1) != std::string::npos;
    }));
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(ProcessTest, SecondRunReadsTheSameSettings) {
    const Settings settings =
        Settings().map(3, "Copiar").set("general_language", "Español").set("unknown", "kept");
    for (int run = 0; run < 2; ++run) {
        start(settings);
        trackball().click(extra);
        EXPECT_TRUE(client().waitForStroke(copy));
        program().signal(SIGTERM);
        ASSERT_TRUE(program().waitForEnd().has_value());
        const auto stored = program().storedSettings();
        const auto before = nlohmann::json::parse(settings.text());
        for (const auto& [key, value] : before.items())
            EXPECT_EQ(stored.value(key, nlohmann::json()), value) << key;
    }
}

TEST_F(ProcessTest, TooHighPointerSpeedIsResetAndWrittenBack) {
    start(Settings().map(3, "Copiar").set("trackball_mouse_speed", 1.8));
    const auto isWritten = [&] {
        const auto stored = program().storedSettings();
        return stored.is_object() && stored.value("trackball_mouse_speed", 0.0) == 1.0;
    };
    EXPECT_TRUE(waitUntil(isWritten));
    const Position from = client().pointer();
    trackball().move(40, 0);
    EXPECT_EQ(passSentinel(), (Position{from.x + 40, from.y}));
    EXPECT_TRUE(program().storedSettings().contains("trackball_profiles"));
}

TEST_F(ProcessTest, HelpIsPrintedWithoutADisplay) {
    auto environment = desktop().environment();
    environment.erase("DISPLAY");
    const ProgramResult result = runProgram(desktop(), {"--help"}, environment);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("--config"), std::string::npos) << result.output;
}

TEST_F(ProcessTest, VersionIsPrintedWithoutADisplay) {
    auto environment = desktop().environment();
    environment.erase("DISPLAY");
    const ProgramResult result = runProgram(desktop(), {"--version"}, environment);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find_first_of("0123456789"), std::string::npos) << result.output;
}

TEST_F(ProcessTest, UnknownArgumentEndsWithStatusTwoAndIsNamed) {
    const ProgramResult result = runProgram(desktop(), {"--no-such-thing"}, desktop().environment());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.errors.find("--no-such-thing"), std::string::npos) << result.errors;
}

TEST_F(ProcessTest, MissingDisplayEndsWithStatusOneAndIsNamed) {
    auto environment = desktop().environment();
    environment["DISPLAY"] = ":12345";
    const ProgramResult result =
        runProgram(desktop(), {"--config", (desktop().folder() / "data").string()}, environment);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find(":12345"), std::string::npos) << result.errors;
}

TEST_F(ProcessTest, MissingExtensionEndsWithStatusOneAndIsNamed) {
    VirtualDesktop poor({"-extension", "XTEST"});
    const ProgramResult result =
        runProgram(poor, {"--config", (poor.folder() / "data").string()}, poor.environment());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("XTEST"), std::string::npos) << result.errors;
}

TEST_F(ProcessTest, ErrorsAreSpanishInASpanishTerminal) {
    auto environment = desktop().environment();
    environment.erase("DISPLAY");
    environment["LANG"] = "es_ES.UTF-8";
    const ProgramResult result =
        runProgram(desktop(), {"--config", (desktop().folder() / "data").string()}, environment);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("no hay pantalla"), std::string::npos) << result.errors;
    const ProgramResult unread = runProgram(desktop(), {"simulate", "/no/such/script"}, environment);
    EXPECT_EQ(unread.exitCode, 2);
    EXPECT_EQ(unread.errors, "trelvan: no se puede leer /no/such/script\n");
}

}  // namespace
}  // namespace trelvan::desktop
