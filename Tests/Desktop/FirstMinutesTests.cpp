#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>
#include <sys/wait.h>

#include <csignal>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);

/// What a new user meets: no settings, a mistake in them, a second start, the number of a button.
class FirstMinutesTest : public DesktopTest {
  protected:
    std::filesystem::path freshFolder() {
        static int count = 0;
        return desktop().folder() / ("first-" + std::to_string(++count));
    }
    /// A run of the program with these arguments that goes on.
    struct Running {
        std::filesystem::path folder;
        std::unique_ptr<ChildProcess> process;

        [[nodiscard]] std::string output() const { return readFile(folder / "output"); }
        [[nodiscard]] std::string errors() const { return readFile(folder / "errors"); }
        [[nodiscard]] bool waitFor(const std::string& text) const {
            return waitUntil([&] { return (output() + errors()).find(text) != std::string::npos; });
        }
        /// Ends it as Control+C does; the exit status, or none.
        std::optional<int> interrupt() {
            process->signal(SIGINT);
            const auto status = process->waitForEnd(timeout);
            return status && WIFEXITED(*status) ? std::optional(WEXITSTATUS(*status)) : std::nullopt;
        }
    };
    Running run(std::vector<std::string> arguments, const std::map<std::string, std::string>& more = {}) {
        Running result{.folder = freshFolder(), .process = {}};
        std::filesystem::create_directory(result.folder);
        arguments.insert(arguments.begin(), programPath());
        auto environment = desktop().environment();
        for (const auto& [name, value] : more) environment[name] = value;
        result.process = std::make_unique<ChildProcess>(Launch{.arguments = std::move(arguments),
                                                               .environment = environment,
                                                               .directory = result.folder,
                                                               .output = result.folder / "output",
                                                               .errors = result.folder / "errors"});
        return result;
    }
    ProgramResult runToEnd(const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& more = {}) {
        auto environment = desktop().environment();
        for (const auto& [name, value] : more) environment[name] = value;
        return runProgram(desktop(), arguments, environment);
    }
};

TEST_F(FirstMinutesTest, RecordingWhereTheProgramRunsSaysSoAndLeavesItAlone) {
    start(Settings().map(3, "Copiar"));
    const auto second = runToEnd({"record", "--config", freshFolder()});
    EXPECT_EQ(second.exitCode, 4) << second.errors;
    EXPECT_EQ(second.errors, "trelvan: Trelvan already runs on this display (process " +
                                 std::to_string(program().id()) + "); end it first\n");
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
}

TEST_F(FirstMinutesTest, NextStartServesAtOnceAfterTheFirstWasKilled) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGKILL);
    ASSERT_TRUE(program().waitForEnd().has_value());
    start(Settings().map(3, "Copiar"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
}

TEST_F(FirstMinutesTest, FirstStartSaysWhereTheSettingsWillBe) {
    const std::string folder = freshFolder();
    auto first = run({"--config", folder});
    EXPECT_TRUE(first.waitFor("the settings will be in\n  " + folder + "/settings.json"));
    EXPECT_TRUE(first.waitFor("Aún no hay ajustes"));
    EXPECT_EQ(first.interrupt(), 0);
}

TEST_F(FirstMinutesTest, InitWritesSettingsThatAreWellAndWorkAndNeverOverOthers) {
    const std::filesystem::path folder = freshFolder();
    const auto made = runToEnd({"init", "--config", folder}, {{"LANG", "es_ES.UTF-8"}});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    EXPECT_EQ(made.output, (folder / "settings.json").string() + "\n");
    const auto written = readFile(folder / "settings.json");
    EXPECT_NE(written.find("Rueda arriba"), std::string::npos) << written;
    const auto checked = runToEnd({"check", "--config=" + folder.string()});
    EXPECT_EQ(checked.exitCode, 0) << checked.output;

    auto first = run({"--config", folder});
    EXPECT_TRUE(first.waitFor("EventMonitor iniciado"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_EQ(first.interrupt(), 0);

    const auto again = runToEnd({"init", "--config", folder});
    EXPECT_EQ(again.exitCode, 4);
    EXPECT_NE(again.errors.find("is already there and stays as it is"), std::string::npos) << again.errors;
    EXPECT_EQ(readFile(folder / "settings.json"), written);
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        EXPECT_EQ(entry.path().filename(), "settings.json");
}

TEST_F(FirstMinutesTest, WrongWordIsToldWithItsPlaceWhileTheProgramStarts) {
    start(Settings().map(3, "Copy"));
    EXPECT_TRUE(waitUntil([&] {
        return program().errors().find("\"Copy\" is not an action; did you mean 'Copiar'?") !=
               std::string::npos;
    })) << program().errors();
    EXPECT_TRUE(program().waitForLine("Ajustes no aceptados: "));
}

TEST_F(FirstMinutesTest, CheckNeedsNoDisplayAndTouchesNothing) {
    const std::filesystem::path folder = freshFolder();
    std::filesystem::create_directory(folder);
    writeFile(folder / "settings.json", "{\"trackball_mouse_speed\": 1.8,\n\"color\": 1}");
    const auto before = std::filesystem::last_write_time(folder / "settings.json");
    const auto result = runToEnd({"check", "--json", "--config", folder}, {{"DISPLAY", ""}});
    EXPECT_EQ(result.exitCode, 3) << result.errors;
    const auto answer = nlohmann::json::parse(result.output, nullptr, false);
    ASSERT_TRUE(answer.is_object()) << result.output;
    ASSERT_EQ(answer["findings"].size(), 2U) << result.output;
    EXPECT_EQ(answer["findings"][0]["path"], "trackball_mouse_speed");
    EXPECT_EQ(answer["findings"][1]["line"], 2);
    EXPECT_EQ(std::filesystem::last_write_time(folder / "settings.json"), before);
}

TEST_F(FirstMinutesTest, WaylandSessionIsToldWhatCanBeServed) {
    auto first = run({"--config", freshFolder()}, {{"WAYLAND_DISPLAY", "wayland-0"}});
    EXPECT_TRUE(first.waitFor("This is a Wayland session: only presses over windows of X programs"));
    EXPECT_EQ(first.interrupt(), 0);
}

TEST_F(FirstMinutesTest, ButtonsShowsPressesAndTurnsAndKeepsThemFromNobody) {
    auto watching = run({"buttons", "--config", freshFolder()});
    ASSERT_TRUE(watching.waitFor("Control+C ends it"));
    EXPECT_TRUE(waitUntil([&] {
        trackball().click(extra);
        return watching.output().find("button 3  trackball: passes as it is\n") != std::string::npos;
    })) << watching.output();
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));
    holdKey(XK_Control_L);
    mouse().click(xButton(4));
    EXPECT_TRUE(watching.waitFor("button 4  mouse  Control: passes as it is\n")) << watching.output();
    releaseKey(XK_Control_L);
    trackball().click(5);
    EXPECT_TRUE(watching.waitFor("wheel down (-101)  trackball: passes as it is\n")) << watching.output();
    EXPECT_EQ(watching.interrupt(), 0);
}

TEST_F(FirstMinutesTest, ButtonsShowsOnceWhatTheRunningProgramTakes) {
    const Settings settings = Settings().map(3, "Copiar");
    start(settings);
    const std::filesystem::path folder = freshFolder();
    std::filesystem::create_directory(folder);
    writeFile(folder / "settings.json", settings.text());
    auto watching = run({"buttons", "--config", folder});
    ASSERT_TRUE(watching.waitFor("Control+C ends it"));
    EXPECT_TRUE(waitUntil([&] {
        mouse().click(xButton(4));
        return watching.output().find("button 4  mouse") != std::string::npos;
    })) << watching.output();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_TRUE(watching.waitFor("button 3  trackball: runs 'Copy'. Sent: Control+C")) << watching.output();
    // A press that the program passes on comes once more, from its own device.
    mouse().click(xButton(7));
    EXPECT_TRUE(watching.waitFor("button 7  mouse")) << watching.output();
    const std::string all = watching.output();
    EXPECT_EQ(all.find("button 7"), all.rfind("button 7")) << all;
    EXPECT_EQ(watching.interrupt(), 0);
}

}  // namespace
}  // namespace trelvan::desktop
