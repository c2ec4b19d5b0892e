#include "Core/Model/ActionCatalogue.hpp"
#include "Support/TestDesktop.hpp"
#include "Tools/Record/Recorder.hpp"
#include "Tools/Record/RecordingFile.hpp"
#include "Tools/Record/RecordingPanels.hpp"
#include "Tools/Simulate/DesktopRules.hpp"
#include "Tools/Simulate/SimulatedMenu.hpp"
#include "Tools/Simulate/Simulation.hpp"
#include "TrelvanApp.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <regex>
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
                            desktop.systemViews(), desktop.workspace(), desktop.actionShortcuts(),
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
        Simulation simulation(files, [&trace](std::string_view line) { trace.emplace_back(line); });
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
                line.find("\"trace\":\"open\"") != std::string::npos ||
                line.find("\"trace\":\"view\"") != std::string::npos ||
                line.find("\"trace\":\"menu\"") != std::string::npos ||
                line.find("Ejecutando") != std::string::npos) {
                result.push_back(withoutNames(line.substr(kind)));
            }
        }
        return result;
    }

    /// Without what a recording gives other names: labels, entries of the menu, paths.
    static std::string withoutNames(std::string text) {
        static const std::regex label("para scroll '[^']*'");
        static const std::regex path("(\"(application|folder|name)\":)\"[^\"]*\"");
        return std::regex_replace(std::regex_replace(text, label, "para scroll"), path, "$1");
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

TEST_F(RecorderTest, HeadHoldsPlatformAndSettingsBeforeTheStart) {
    desktop.defaults["trackball_profiles"] = Data{std::string(profiles)};
    desktop.defaults["general_language"] = std::string("Español");
    desktop.defaults["something_private"] = std::string("secret");
    desktop.hotKeyEntries[79] = {.enabled = true, .parameters = {65535, 123, std::nullopt}};
    start();
    ASSERT_GE(script.size(), 4U);
    EXPECT_EQ(script[0], "{\"at\":0,\"do\":\"platform\",\"name\":\"macos\"}\n");
    EXPECT_THAT(script[1], HasSubstr("\"trackball_profiles\":[{"));
    EXPECT_THAT(script[1], HasSubstr("Español"));
    EXPECT_THAT(script[1], Not(HasSubstr("secret")));
    EXPECT_THAT(script[2], HasSubstr(R"("79":{"enabled":true,"value":{"parameters":[65535,123,null]}})"));
    EXPECT_THAT(script.back(), HasSubstr(R"("do":"start")"));
}

TEST_F(RecorderTest, EveryHotKeyThatAnActionLooksUpIsWritten) {
    for (int id = 0; id <= 1100; ++id) desktop.hotKeyEntries[id] = {.enabled = true, .parameters = {0, 1, 2}};
    start();
    const auto line = std::ranges::find_if(
        script, [](const auto& each) { return each.find(R"("do":"hotKeys")") != std::string::npos; });
    ASSERT_NE(line, script.end());
    std::size_t tools = 0;
    for (const auto action : allCases<ButtonAction>()) {
        const auto* const tool = desktopTool(action);
        if (tool == nullptr) continue;
        ++tools;
        for (const int id : tool->hotKeys)
            EXPECT_THAT(*line, HasSubstr("\"" + std::to_string(id) + "\":{")) << rawValue(action);
    }
    EXPECT_EQ(tools, 11U);
    EXPECT_THAT(*line, Not(HasSubstr("\"1\":{")));
}

TEST_F(RecorderTest, LinuxDesktopIsReplayedByItsOwnRules) {
    desktop.setActionShortcuts(linuxShortcuts);
    desktop.offeredViews = {SystemView::showDesktop};
    const auto rules = std::make_unique<DesktopRules>(desktop, linuxShortcuts, true);
    desktop.hotKeyEntries[hotkey::lockScreen] = {.enabled = true, .parameters = {65535, 37, 0x100000}};
    desktop.defaults["trackball_profiles"] =
        Data{R"([{"name":"P","mappings":[{"buttonNumber":3,"buttonLabel":"","action":"Copiar"},)"
             R"({"buttonNumber":4,"buttonLabel":"","action":"Mostrar Escritorio"},)"
             R"({"buttonNumber":5,"buttonLabel":"","action":"Lock Workstation"},)"
             R"({"buttonNumber":6,"buttonLabel":"","action":"Mission Control"}]}])"};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    start();
    for (const std::int64_t button : {3, 4, 5, 6}) {
        send({.type = EventType::otherMouseDown, .buttonNumber = button});
        send({.type = EventType::otherMouseUp, .buttonNumber = button});
    }
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.onTrace = nullptr;
    EXPECT_THAT(script[0], HasSubstr(R"("name":"linux")"));
    EXPECT_THAT(script[1], HasSubstr(R"("offered":["showDesktop"])"));
    EXPECT_THAT(decisions(live), Contains(HasSubstr(R"("trace":"view")")));
    EXPECT_GT(decisions(live).size(), 15U);
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST_F(RecorderTest, ShortcutsInATerminalAreReplayedAsTheTerminalsOwn) {
    desktop.setActionShortcuts(linuxShortcuts);
    const auto rules = std::make_unique<DesktopRules>(desktop, linuxShortcuts, true);
    desktop.defaults["trackball_profiles"] =
        Data{R"([{"name":"P","mappings":[{"buttonNumber":3,"buttonLabel":"","action":"Copiar"}]}])"};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    start();
    for (const auto* application : {"Alacritty", "secret.editor", "XTerm"}) {
        desktop.frontmost = application;
        send({.type = EventType::otherMouseDown, .buttonNumber = 3});
        send({.type = EventType::otherMouseUp, .buttonNumber = 3});
    }
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.onTrace = nullptr;
    for (const auto& line : script) EXPECT_THAT(line, Not(HasSubstr("secret")));
    EXPECT_THAT(decisions(live), Contains(HasSubstr(R"("trace":"post","kind":"key","keyCode":8)")));
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST_F(RecorderTest, NamesPathsAndApplicationsStayWithTheUser) {
    desktop.disk["/home/secret/App"] = {SimulatedItem::Kind::application, ""};
    desktop.disk["/home/secret/Folder"] = {SimulatedItem::Kind::folder, ""};
    desktop.frontmost = "secret.bank";
    desktop.defaults["trackball_active_profile"] = std::string("00000000-0000-4000-8000-000000000002");
    desktop.defaults["trackball_profiles"] = Data{
        R"([{"id":"00000000-0000-4000-8000-000000000001","name":"secret other","mappings":[]},)"
        R"({"id":"00000000-0000-4000-8000-000000000002","name":"secret name","mappings":[)"
        R"({"buttonNumber":3,"buttonLabel":"secret label","action":"Abrir Aplicación","appPath":"/home/secret/App"},)"
        R"({"buttonNumber":4,"buttonLabel":"","action":"Abrir carpeta","folderPath":"/home/secret/Folder"},)"
        R"({"buttonNumber":5,"buttonLabel":"","action":"Abrir carpeta","folderPath":"/home/secret/Folder"},)"
        R"({"buttonNumber":6,"buttonLabel":"","action":"Atajo Personalizado","shortcutName":"secret",)"
        R"("shortcut":{"keyCode":0,"modifiersRawValue":0,"displayString":"secret"}}],)"
        R"("smartButton":{"apps":[{"name":"secret","path":"/home/secret/App","iconPath":"/home/secret/icon"}]}}])"};
    std::vector<std::string> live;
    TraceWriter writer([&live](std::string_view line) { live.emplace_back(line); });
    desktop.onTrace = [&writer](const TraceEntry& entry) { writer.write(entry); };
    start();
    for (const std::int64_t button : {3, 4, 5, 6}) {
        desktop.frontmost = "secret." + std::to_string(button);
        send({.type = EventType::otherMouseDown, .buttonNumber = button});
        send({.type = EventType::otherMouseUp, .buttonNumber = button});
    }
    desktop.time.runUntilBackgroundIsEmpty();
    desktop.onTrace = nullptr;
    for (const auto& line : script) EXPECT_THAT(line, Not(HasSubstr("secret")));
    EXPECT_THAT(decisions(live), Contains(HasSubstr(R"("trace":"open","folder")")));
    EXPECT_GT(decisions(live).size(), 12U);
    EXPECT_EQ(decisions(replay()), decisions(live));
}

TEST(RecordingFileTest, OnlyItsOwnerCanReadARecordingAndNoneIsWrittenOver) {
    std::string folder = testing::TempDir() + "recording-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/script.jsonl";
    const auto before = umask(0);
    auto file = RecordingFile::create(path);
    umask(before);
    ASSERT_TRUE(file);
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
    EXPECT_FALSE(RecordingFile::create(path));
    // Not through a link that somebody laid there either.
    const std::string link = folder + "/link.jsonl";
    ASSERT_EQ(symlink((folder + "/elsewhere").c_str(), link.c_str()), 0);
    EXPECT_FALSE(RecordingFile::create(link));
    std::filesystem::remove_all(folder);
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
