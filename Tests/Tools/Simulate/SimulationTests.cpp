#include "Tools/Simulate/Simulation.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SimulationTest : public testing::Test {
  protected:
    std::string run(std::string_view line) { return simulation.runLine(line).value_or(""); }

    std::vector<std::string> trace;
    StandardFiles files;
    Simulation simulation{macShortcuts, files, [this](std::string_view line) { trace.emplace_back(line); }};
};

TEST_F(SimulationTest, BlankLineDoesNothing) {
    EXPECT_EQ(run(""), "");
    EXPECT_EQ(run("  \t\r"), "");
    EXPECT_THAT(trace, IsEmpty());
}

TEST_F(SimulationTest, WhatIsNotJsonIsSaidSo) {
    EXPECT_THAT(run("press button 3"), HasSubstr("not JSON"));
    EXPECT_THAT(run(R"({"do":"start")"), HasSubstr("not JSON"));
    EXPECT_THAT(run("[]"), HasSubstr("not a JSON object"));
}

TEST_F(SimulationTest, WithLinuxCombinationsAReleaseFollowsItsPress) {
    const auto answers = [this](const ActionShortcuts& shortcuts) {
        std::vector<std::string> lines;
        Simulation program(shortcuts, files, [&lines](std::string_view line) {
            if (line.find("\"type\":26") != std::string_view::npos) lines.emplace_back(line);
        });
        for (const std::string_view line :
             {R"({"do":"defaults","set":{"trackball_profiles":[{"name":"P","mappings":[{"buttonNumber":3,)"
              R"("buttonLabel":"","action":"Ninguna","functionSlots":2,"secondaryTrigger1":"Shift",)"
              R"("secondaryAction":"Pegar"}]}]}})",
              R"({"do":"start"})", R"({"do":"event","type":25,"button":3})",
              R"({"do":"modifiers","flags":131072})", R"({"do":"event","type":26,"button":3})"})
            EXPECT_EQ(program.runLine(line), std::nullopt) << line;
        program.finish();
        return lines;
    };
    EXPECT_THAT(answers(macShortcuts), ElementsAre(HasSubstr(R"("answer":"swallow")")));
    EXPECT_THAT(answers(linuxShortcuts), ElementsAre(HasSubstr(R"("answer":"pass")")));
}

TEST_F(SimulationTest, UnknownDoIsNamed) {
    EXPECT_EQ(run(R"({"do":"jump"})"), R"(do: "jump" is not known)");
    EXPECT_THAT(run(R"({"at":1})"), HasSubstr("do: "));
}

TEST_F(SimulationTest, MissingAndMistypedKeysAreNamed) {
    EXPECT_EQ(run(R"({"do":"event"})"), "type: required key is missing");
    EXPECT_THAT(run(R"({"do":"event","type":"press"})"), HasSubstr("type: "));
    EXPECT_THAT(run(R"({"do":"event","type":25,"button":1.5})"), HasSubstr("button: "));
    EXPECT_THAT(run(R"({"do":"event","type":22,"scrollY":5000000000})"), HasSubstr("scrollY: "));
    EXPECT_EQ(run(R"({"do":"event","type":4294967294})"), "type: is not an event number");
    EXPECT_THAT(run(R"({"do":"screens","frames":[[0,0,1]]})"), HasSubstr("frames[0]: must be four numbers"));
    EXPECT_THAT(run(R"({"do":"fail","what":"luck","on":true})"), HasSubstr("what: "));
    EXPECT_THAT(run(R"({"do":"defaults","set":{"a":[1]}})"), HasSubstr("set.a: "));
}

TEST_F(SimulationTest, KeysOfServiceLinesAreChecked) {
    EXPECT_EQ(run(R"({"do":"key"})"), "keyCode: required key is missing");
    EXPECT_EQ(run(R"({"do":"key","keyCode":0,"flags":0,"characters":"a"})"), "down: required key is missing");
    EXPECT_THAT(run(R"({"do":"key","keyCode":70000,"down":true})"), HasSubstr("keyCode: "));
    EXPECT_THAT(run(R"({"do":"key","keyCode":0,"down":true,"characters":1})"), HasSubstr("characters: "));
    EXPECT_EQ(run(R"({"do":"capsLock"})"), "on: required key is missing");
    EXPECT_THAT(run(R"({"do":"capsLock","on":1})"), HasSubstr("on: "));
    EXPECT_THAT(run(R"({"do":"capsLock","on":true,"monitored":"no"})"), HasSubstr("monitored: "));
    EXPECT_EQ(run(R"({"do":"launchAtLogin"})"), "status: required key is missing");
    EXPECT_EQ(run(R"({"do":"launchAtLogin","status":"on"})"),
              R"(status: "on" is not a status of the login item)");
    for (const char* status : {"enabled", "notRegistered", "requiresApproval", "notFound"})
        EXPECT_EQ(run(R"({"do":"launchAtLogin","status":")" + std::string(status) + R"("})"), "") << status;
    EXPECT_EQ(run(R"({"do":"fail","what":"loginItem","on":true})"), "");
}

TEST_F(SimulationTest, StatesOfTheSystemAreChecked) {
    EXPECT_EQ(run(R"({"do":"battery","sources":[{"current":20,"max":100,"state":"Battery Power"}]})"), "");
    EXPECT_EQ(run(R"({"do":"battery","sources":[]})"), "");
    EXPECT_EQ(run(R"({"do":"battery","sources":null})"), "");
    EXPECT_EQ(run(R"({"do":"battery"})"), "sources: required key is missing");
    EXPECT_EQ(run(R"({"do":"battery","sources":[{"current":20,"max":100}]})"),
              "sources[0].state: required key is missing");
    EXPECT_EQ(run(R"({"do":"fnState","value":true})"), "");
    EXPECT_THAT(run(R"({"do":"fnState","value":1})"), HasSubstr("value: "));
    EXPECT_EQ(run(R"({"do":"doNotDisturb","value":true})"), "");
    EXPECT_EQ(run(R"({"do":"doNotDisturb","value":null})"), "");
    EXPECT_EQ(run(R"({"do":"doNotDisturb"})"), "value: required key is missing");
}

TEST_F(SimulationTest, MicrophoneListsAreChecked) {
    EXPECT_EQ(run(R"({"do":"microphone"})"), "present: required key is missing");
    EXPECT_THAT(run(R"({"do":"microphone","present":true,"mute":1})"), HasSubstr("mute: expected an array"));
    EXPECT_EQ(run(R"({"do":"microphone","present":true,"mute":[0,2]})"), "mute[1]: must be 0, 1 or null");
    EXPECT_THAT(run(R"({"do":"microphone","present":true,"mute":[null,true]})"), HasSubstr("mute[1]: "));
    EXPECT_EQ(run(R"({"do":"microphone","present":true,"mute":[0,0,0,0]})"),
              "mute: must have three elements at most");
    EXPECT_EQ(run(R"({"do":"microphone","present":true,"volume":[1.5]})"),
              "volume[0]: must be 0 to 1 or null");
    EXPECT_EQ(run(R"({"do":"microphone","present":true,"mute":[0,null,1],"volume":null})"), "");
    EXPECT_EQ(run(R"({"do":"microphone","present":false})"), "");
}

TEST_F(SimulationTest, WrongMicrophoneLineChangesNothing) {
    run(R"({"do":"microphone","present":true,"mute":[0]})");
    run(R"({"do":"start"})");
    trace.clear();
    EXPECT_THAT(run(R"({"do":"microphone","present":true,"mute":[1],"volume":["loud"]})"),
                HasSubstr("volume[0]: "));
    run(R"({"do":"wait","seconds":5})");
    EXPECT_THAT(trace, IsEmpty());
}

TEST_F(SimulationTest, KeepAwakeSettingsAreSetByTheNamesOfTheirProperties) {
    const auto set = [this](const std::string& name, const std::string& value) {
        return run(R"({"do":"call","operation":"setSetting","name":")" + name + R"(","value":)" + value +
                   "}");
    };
    run(R"({"do":"start"})");
    trace.clear();
    EXPECT_EQ(set("autoStopPreset", R"("oneDay")"), "");
    EXPECT_EQ(set("idleThresholdMinutes", "4.5"), "");
    EXPECT_EQ(set("moveEveryMinutes", "2"), "");
    EXPECT_EQ(set("isEnabled", "true"), "");
    run(R"({"do":"print","what":"keepAwake"})");
    EXPECT_EQ(trace.back(),
              "{\"at\":0,\"trace\":\"state\",\"what\":\"keepAwake\",\"value\":{\"isEnabled\":true,"
              "\"idleThresholdMinutes\":4.5,\"moveEveryMinutes\":2,\"autoStopPreset\":\"oneDay\","
              "\"isCurrentlyAway\":false,\"nextMoveInSeconds\":270,\"remainingAutoStopSeconds\":86400,"
              "\"lastMoveDate\":null,\"lastErrorMessage\":null}}\n");
    EXPECT_EQ(set("autoStopPreset", R"("threeHours")"), R"(value: "threeHours" is not an auto-stop preset)");
    EXPECT_THAT(set("isEnabled", "1"), HasSubstr("value: "));
    EXPECT_THAT(set("idleThresholdMinutes", R"("3")"), HasSubstr("value: "));
    EXPECT_EQ(set("moveEveryMinutes", "1001"), "");
    EXPECT_EQ(set("isCurrentlyAway", "true"), R"(name: "isCurrentlyAway" is not a setting)");
}

TEST_F(SimulationTest, TimeNeverGoesBack) {
    EXPECT_EQ(run(R"({"at":2,"do":"wait","seconds":1})"), "");
    EXPECT_EQ(run(R"({"at":2.5,"do":"start"})"), "at: goes back");
    EXPECT_EQ(run(R"({"at":3,"do":"start"})"), "");
    EXPECT_EQ(run(R"({"do":"wait","seconds":-1})"), "seconds: goes back");
    EXPECT_THAT(run(R"({"at":1e300,"do":"start"})"), HasSubstr("at: "));
}

TEST_F(SimulationTest, CallsAndPrintsNeedAStartedProgram) {
    EXPECT_EQ(run(R"({"do":"call","operation":"stop"})"), "call before start");
    EXPECT_EQ(run(R"({"do":"print","what":"profiles"})"), "print before start");
    EXPECT_EQ(run(R"({"do":"start"})"), "");
    EXPECT_EQ(run(R"({"do":"start"})"), "started already");
    EXPECT_THAT(run(R"({"do":"call","operation":"fly"})"), HasSubstr("operation: "));
    EXPECT_THAT(run(R"({"do":"print","what":"weather"})"), HasSubstr("what: "));
}

/// A script may name its platform, unless that is fixed from outside.
class PlatformLineTest : public testing::Test {
  protected:
    static std::string run(Simulation& simulation, std::string_view line) {
        return simulation.runLine(line).value_or("");
    }
    /// Runs a press of a button with the action, on the platform that the line names.
    static std::string press(Simulation& simulation, const std::string& platform, const std::string& action) {
        std::string errors = platform.empty() ? "" : run(simulation, platform);
        errors += run(simulation, R"({"do":"defaults","set":{"trackball_profiles":[{"name":"P","mappings":[)"
                                  R"({"buttonNumber":3,"buttonLabel":"","action":")" +
                                      action + R"("}]}]}})");
        errors += run(simulation, R"({"do":"start"})");
        errors += run(simulation, R"({"do":"event","type":25,"button":3})");
        errors += run(simulation, R"({"do":"event","type":26,"button":3})");
        simulation.finish();
        return errors;
    }
    [[nodiscard]] bool contains(std::string_view part) const {
        for (const auto& line : trace) {
            if (line.find(part) != std::string::npos) return true;
        }
        return false;
    }

    std::vector<std::string> trace;
    StandardFiles files;
    TraceWriter::Output output = [this](std::string_view line) { trace.emplace_back(line); };
};

constexpr auto controlC = R"("keyCode":8,"down":true,"flags":262144)";
constexpr auto commandC = R"("keyCode":8,"down":true,"flags":1048576)";

TEST_F(PlatformLineTest, LinuxSendsItsOwnCombinations) {
    Simulation simulation(files, output);
    EXPECT_EQ(press(simulation, R"({"do":"platform","name":"linux"})", "Copiar"), "");
    EXPECT_TRUE(contains(controlC));
}

TEST_F(PlatformLineTest, WithoutTheLineItIsMacos) {
    Simulation simulation(files, output);
    EXPECT_EQ(press(simulation, "", "Copiar"), "");
    EXPECT_TRUE(contains(commandC));
}

TEST_F(PlatformLineTest, WhatIsFixedFromOutsideGoesFirst) {
    Simulation simulation(macShortcuts, files, output);
    EXPECT_EQ(
        press(simulation, R"({"do":"platform","name":"linux","postedCountsAsActivity":true})", "Copiar"), "");
    EXPECT_TRUE(contains(commandC));
}

TEST_F(PlatformLineTest, KeysAreChecked) {
    Simulation simulation(files, output);
    EXPECT_EQ(run(simulation, R"({"do":"platform"})"), "name: required key is missing");
    EXPECT_EQ(run(simulation, R"({"do":"platform","name":"dos"})"), "name: must be macos or linux");
    EXPECT_THAT(run(simulation, R"({"do":"platform","name":"linux","postedCountsAsActivity":1})"),
                HasSubstr("postedCountsAsActivity: "));
    EXPECT_THAT(run(simulation, R"({"do":"views","offered":["window"]})"),
                HasSubstr("offered[0]: \"window\" is not a view of the desktop"));
    run(simulation, R"({"do":"start"})");
    EXPECT_EQ(run(simulation, R"({"do":"platform","name":"linux"})"), "platform after start");
}

TEST_F(PlatformLineTest, LinuxDesktopIsAskedBeforeItsHotKeys) {
    Simulation simulation(files, output);
    run(simulation,
        R"({"do":"hotKeys","table":{"36":{"enabled":true,"value":{"parameters":[65535,2,1048576]}}}})");
    EXPECT_EQ(press(simulation, R"({"do":"platform","name":"linux"})", "Mostrar Escritorio"), "");
    EXPECT_TRUE(contains(R"("trace":"view","name":"showDesktop")"));
    EXPECT_FALSE(contains(R"("trace":"post")"));
}

TEST_F(PlatformLineTest, ViewThatTheLinuxDesktopHasNotIsItsHotKey) {
    Simulation simulation(files, output);
    run(simulation, R"({"do":"views","offered":[]})");
    run(simulation,
        R"({"do":"hotKeys","table":{"36":{"enabled":true,"value":{"parameters":[65535,2,1048576]}}}})");
    EXPECT_EQ(press(simulation, R"({"do":"platform","name":"linux"})", "Mostrar Escritorio"), "");
    EXPECT_TRUE(contains(R"("keyCode":2,"down":true,"flags":1048576)"));
    EXPECT_FALSE(contains(R"("trace":"view")"));
}

TEST_F(PlatformLineTest, ViewThatNobodyHasOnLinuxIsOneWarningAndNoKeys) {
    Simulation simulation(files, output);
    EXPECT_EQ(press(simulation, R"({"do":"platform","name":"linux"})", "Mission Control"), "");
    EXPECT_TRUE(contains("Este escritorio no ofrece la vista de ventanas"));
    EXPECT_FALSE(contains(R"("trace":"post")"));
}

TEST_F(SimulationTest, SavesThatFailKeepWhatWasStoredBefore) {
    run(R"({"do":"start"})");
    run(R"({"do":"call","operation":"addExtraButtonMapping","button":20})");
    run(R"({"do":"fail","what":"save","on":true})");
    run(R"({"do":"call","operation":"addExtraButtonMapping","button":21})");
    run(R"({"do":"print","what":"defaults"})");
    EXPECT_THAT(trace.back(), HasSubstr(R"("buttonNumber":20)"));
    EXPECT_THAT(trace.back(), testing::Not(HasSubstr(R"("buttonNumber":21)")));
    run(R"({"do":"fail","what":"save","on":false})");
    run(R"({"do":"call","operation":"addExtraButtonMapping","button":22})");
    run(R"({"do":"print","what":"defaults"})");
    EXPECT_THAT(trace.back(), HasSubstr(R"("buttonNumber":21)"));
    EXPECT_THAT(trace.back(), HasSubstr(R"("buttonNumber":22)"));
}

TEST_F(SimulationTest, EventsBeforeStartReachNoTap) {
    EXPECT_EQ(run(R"({"do":"event","type":25,"button":3})"), "");
    EXPECT_THAT(trace, IsEmpty());
}

TEST_F(SimulationTest, CallOnWhatDoesNotExistIsAResultWithAnError) {
    run(R"({"do":"start"})");
    trace.clear();
    EXPECT_EQ(run(R"({"do":"call","operation":"setActive","profile":7})"), "");
    EXPECT_THAT(trace, ElementsAre("{\"at\":0,\"trace\":\"result\",\"operation\":\"setActive\",\"error\":"
                                   "\"no such profile\"}\n"));
}

TEST_F(SimulationTest, TextsThatNeedItAreEscaped) {
    run(R"({"do":"start"})");
    trace.clear();
    run(R"({"do":"call","operation":"rename","profile":0,"name":"a\"b\u0001ñ"})");
    EXPECT_THAT(trace.front(), HasSubstr(R"(Perfil renombrado: 'a\"b\\x01ñ')"));
}

TEST_F(SimulationTest, TwoRunsGiveTheSameIdentifiers) {
    std::vector<std::string> other;
    Simulation second(macShortcuts, files, [&other](std::string_view line) { other.emplace_back(line); });
    for (const char* line : {R"({"do":"start"})", R"({"do":"call","operation":"createProfile","name":"X"})",
                             R"({"do":"print","what":"profiles"})"}) {
        EXPECT_EQ(run(line), "");
        EXPECT_FALSE(second.runLine(line));
    }
    EXPECT_EQ(trace, other);
}

}  // namespace
}  // namespace trelvan
