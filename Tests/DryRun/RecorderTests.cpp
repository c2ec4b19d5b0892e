#include "DryRun/Recorder.hpp"
#include "DryRun/RecordingPanels.hpp"
#include "DryRun/SimulatedMenu.hpp"
#include "DryRun/Simulation.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view profiles =
    R"([{"name":"P","mappings":[{"buttonNumber":3,"buttonLabel":"","action":"Copiar","functionSlots":2,)"
    R"("secondaryTrigger1":"Shift","secondaryAction":"Pegar"},{"buttonNumber":-100,"buttonLabel":"Up",)"
    R"("action":"Deshacer"}]}])";

/// The program on a simulated desktop, with a recorder in front of its tap.
class RecorderTest : public testing::Test {
  protected:
    void start() {
        recorder = std::make_unique<Recorder>(
            Recorder::Ports{desktop.eventTap(), desktop.inputState(), desktop.screens(),
                            desktop.userDefaults(), desktop.hotKeyTable(), desktop.clock(),
                            desktop.sessionState()},
            [this](std::string_view line) { script.emplace_back(line); });
        panels = std::make_unique<RecordingPanels>(menu, *recorder);
        app = std::make_unique<TrelvanApp>(desktop, *panels, desktop.logger, &Uuid::random, recorder.get());
        app->appear();
        desktop.time.runDue();
    }
    void send(TapEvent event) {
        desktop.time.runFor(Seconds{0.1});
        if (event.location == Point{}) event.location = desktop.pointer;
        desktop.send(event);
    }
    /// The trace of the script that was recorded.
    [[nodiscard]] std::vector<std::string> replay() const {
        std::vector<std::string> trace;
        StandardFiles files;
        Simulation simulation(macShortcuts, files,
                              [&trace](std::string_view line) { trace.emplace_back(line); });
        for (const auto& line : script) {
            const auto error = simulation.runLine(line);
            EXPECT_FALSE(error) << line << *error;
        }
        simulation.finish();
        return trace;
    }
    static std::vector<std::string> decisions(const std::vector<std::string>& trace) {
        std::vector<std::string> result;
        for (const auto& line : trace) {
            const auto kind = line.find("\"trace\":");
            if (line.find("\"trace\":\"event\"") != std::string::npos ||
                line.find("\"trace\":\"post\"") != std::string::npos ||
                line.find("\"trace\":\"menu\"") != std::string::npos ||
                line.find("Ejecutando") != std::string::npos) {
                result.push_back(line.substr(kind));
            }
        }
        return result;
    }

    TestDesktop desktop;
    SimulatedMenu menu{desktop};
    std::unique_ptr<Recorder> recorder;
    std::unique_ptr<RecordingPanels> panels;
    std::unique_ptr<TrelvanApp> app;
    std::vector<std::string> script;
};

TEST_F(RecorderTest, ReplayGivesTheSameDecisions) {
    desktop.defaults["trackball_profiles"] = Data{std::string(profiles)};
    desktop.defaults["trackball_mouse_speed"] = 0.5;
    desktop.windows = {{.frame = {0, 0, 50, 50}}};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    start();
    send({.type = EventType::otherMouseDown, .buttonNumber = 3});
    send({.type = EventType::otherMouseUp, .buttonNumber = 3});
    desktop.modifierFlags = flag::shift;
    send({.type = EventType::otherMouseDown, .buttonNumber = 3});
    send({.type = EventType::otherMouseUp, .buttonNumber = 3});
    desktop.modifierFlags = 0;
    send({.type = EventType::scrollWheel, .scrollDeltaAxis1 = 2, .scrollPointDeltaAxis1 = 20});
    send({.type = EventType::scrollWheel, .scrollDeltaAxis1 = -2, .scrollPointDeltaAxis1 = -20});
    send({.type = EventType::scrollWheel, .location = {10, 10}, .scrollDeltaAxis1 = 2});
    send({.type = EventType::mouseMoved, .deltaX = 8, .deltaY = -3});
    desktop.frontmost = "com.apple.systemuiserver";
    send({.type = EventType::otherMouseDown, .buttonNumber = 3});
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.time.runDue();
    desktop.onTrace = nullptr;

    EXPECT_GT(decisions(live).size(), 20U);
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST_F(RecorderTest, WhatIsDoneInTheMenuIsReplayed) {
    desktop.defaults["trackball_profiles"] = Data{
        std::string(R"([{"name":"P","mappings":[{"buttonNumber":3,"buttonLabel":"","action":"Smart Button"},)"
                    R"({"buttonNumber":-100,"buttonLabel":"Up","action":"Copiar"}],"smartButton":{"apps":[)"
                    R"({"name":"A","path":"/a"},{"name":"B","kind":"shortcut","shortcut":)"
                    R"({"keyCode":3,"modifiersRawValue":1048576,"displayString":"F"}}]}}])")};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    start();
    const auto open = [this] {
        send({.type = EventType::otherMouseDown, .buttonNumber = 3});
        send({.type = EventType::otherMouseUp, .buttonNumber = 3});
        // Over the menu the wheel is not a button.
        send({.type = EventType::scrollWheel, .scrollDeltaAxis1 = 2});
        return *menu.view();
    };
    const auto scroll = [this] { send({.type = EventType::scrollWheel, .scrollDeltaAxis1 = 2}); };
    const auto first = open();
    first.onLaunch(first.apps[1]);
    scroll();
    open().onDismiss();
    scroll();
    open().onOpenApplications();
    scroll();
    open().onEdit();
    scroll();
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.onTrace = nullptr;

    EXPECT_THAT(script, Contains(HasSubstr(R"("do":"call","operation":"chooseEntry","index":1})")));
    EXPECT_GT(decisions(live).size(), 20U);
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST_F(RecorderTest, LockedScreenIsReplayed) {
    desktop.defaults["trackball_profiles"] = Data{std::string(profiles)};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    desktop.changeSession(true, true);
    start();
    const auto click = [this] {
        send({.type = EventType::otherMouseDown, .buttonNumber = 3});
        send({.type = EventType::otherMouseUp, .buttonNumber = 3});
    };
    click();
    desktop.changeSession(false, true);
    click();
    desktop.changeSession(false, false);
    click();
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.time.runDue();
    desktop.onTrace = nullptr;

    EXPECT_THAT(decisions(live), Contains(HasSubstr(R"("type":25,"answer":"swallow")")).Times(1));
    EXPECT_THAT(decisions(live), Contains(HasSubstr(R"("type":25,"answer":"pass")")).Times(2));
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST_F(RecorderTest, HeadHoldsTheSettingsBeforeTheStart) {
    desktop.defaults["trackball_profiles"] = Data{std::string(profiles)};
    desktop.defaults["general_language"] = std::string("Español");
    desktop.defaults["something_private"] = std::string("secret");
    desktop.hotKeyEntries[79] = {.enabled = true, .parameters = {65535, 123, std::nullopt}};
    start();
    ASSERT_GE(script.size(), 3U);
    EXPECT_THAT(script[0], HasSubstr("\"trackball_profiles\":[{"));
    EXPECT_THAT(script[0], HasSubstr("Español"));
    EXPECT_THAT(script[0], Not(HasSubstr("secret")));
    EXPECT_THAT(script[1], HasSubstr(R"("79":{"enabled":true,"value":{"parameters":[65535,123,null]}})"));
    EXPECT_THAT(script.back(), HasSubstr(R"("do":"start")"));
}

TEST_F(RecorderTest, OwnCopiesAreNotWritten) {
    desktop.defaults["trackball_mouse_speed"] = 0.5;
    start();
    const auto before = script.size();
    send({.type = EventType::mouseMoved, .deltaX = 8});
    desktop.time.runDue();
    EXPECT_EQ(desktop.all<trace::Event>().size(), 2U);
    EXPECT_EQ(script.size(), before + 1);
}

TEST_F(RecorderTest, SecondTapWritesNoSecondHead) {
    start();
    app->eventMonitor->stop();
    desktop.time.runDue();
    const auto before = script.size();
    app->eventMonitor->start();
    EXPECT_EQ(script.size(), before);
}

}  // namespace
}  // namespace trelvan
