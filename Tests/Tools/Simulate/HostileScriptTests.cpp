#include "Tools/Simulate/Simulation.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::HasSubstr;

/// Files that only a test sees.
class FilesInMemory final : public Files {
  public:
    std::variant<std::string, FileError> read(const std::string& path) override {
        const auto found = contents.find(path);
        if (found == contents.end()) return FileError{path + ": no such file"};
        return found->second;
    }
    std::optional<FileError> write(const std::string& path, std::string_view bytes) override {
        contents[path] = bytes;
        return std::nullopt;
    }
    std::map<std::string, std::string> contents;
};

/// Scripts with numbers that no device and no hand sends.
class HostileScriptTest : public testing::Test {
  protected:
    std::string run(std::string_view line) { return simulation.runLine(line).value_or(""); }
    std::string set(const std::string& name, const std::string& value) {
        return run(R"({"do":"call","operation":"setSetting","name":")" + name + R"(","value":)" + value +
                   "}");
    }
    void sendEvents() {
        for (const char* number : {"1", "-7", "2147483647", "-2147483647"}) {
            for (const char* type : {"1", "3", "5", "6", "7", "22", "25", "26", "27"}) {
                const std::string d = number;
                EXPECT_EQ(run(R"({"do":"event","type":)" + std::string(type) + R"(,"button":3,"dx":)" + d +
                              R"(,"dy":)" + d + R"(,"scrollX":)" + d + R"(,"scrollY":)" + d + "}"),
                          "");
            }
        }
        EXPECT_EQ(run(R"({"do":"wait","seconds":700})"), "");
    }
    nlohmann::json state(const std::string& what) {
        run(R"({"do":"print","what":")" + what + R"("})");
        return nlohmann::json::parse(trace.back()).at("value");
    }
    void checkTrace() const {
        for (const auto& line : trace) EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    }

    std::vector<std::string> trace;
    FilesInMemory files;
    Simulation simulation{macShortcuts, files, [this](std::string_view line) { trace.emplace_back(line); }};
};

/// What JSON can write, and what it cannot.
const std::vector<std::string> numbers{
    "1e308", "-1e308", "-0.0", "5e-324", "1e19", "-1e19", "0", "1e999", "18446744073709551615"};

TEST_F(HostileScriptTest, NumbersOfSettings_AreMovedIntoTheirRanges) {
    run(R"({"do":"start"})");
    for (const char* name :
         {"scrollSpeedVertical", "scrollSpeedHorizontal", "mouseSpeed", "mouseAcceleration"}) {
        for (const auto& number : numbers) {
            SCOPED_TRACE(std::string(name) + " " + number);
            EXPECT_EQ(set("mouseSpeed", "1.3"), "");
            EXPECT_EQ(set("horizontalScrollEnabled", "true"), "");
            const auto reason = set(name, number);
            if (number == "1e999") {
                EXPECT_THAT(reason, HasSubstr("too large"));
            } else {
                EXPECT_EQ(reason, "");
            }
            const double taken = state("monitor").at(name);
            EXPECT_TRUE(taken >= 0 && taken <= 3.0) << taken;
            sendEvents();
        }
    }
    checkTrace();
}

TEST_F(HostileScriptTest, NumbersOfKeepAwake_AreTakenAsTheyAreAndEndNothing) {
    run(R"({"do":"start"})");
    EXPECT_EQ(set("isEnabled", "true"), "");
    for (const char* name : {"idleThresholdMinutes", "moveEveryMinutes"}) {
        for (const auto& number : numbers) {
            set(name, number);
            sendEvents();
            EXPECT_TRUE(state("keepAwake").is_object());
        }
    }
    checkTrace();
}

TEST_F(HostileScriptTest, NumbersOfStoredSettings_AreReadAsASettingsFileIs) {
    EXPECT_EQ(run(R"({"do":"defaults","set":{"trackball_mouse_speed":18446744073709551615,)"
                  R"("trackball_scroll_speed_vertical":18446744073709551615,)"
                  R"("trackball_mouse_acceleration":-1e308}})"),
              "");
    run(R"({"do":"start"})");
    const auto monitor = state("monitor");
    EXPECT_EQ(monitor.at("mouseSpeed"), 1);
    EXPECT_EQ(monitor.at("scrollSpeedVertical"), 3);
    EXPECT_EQ(monitor.at("mouseAcceleration"), 0);
    sendEvents();
}

TEST_F(HostileScriptTest, NumbersOfABackup_AreMovedIntoTheirRanges) {
    run(R"({"do":"start"})");
    run(R"({"do":"call","operation":"exportBackup","path":"b","settings":true})");
    const auto clean = nlohmann::json::parse(files.contents.at("b"));
    for (const char* name :
         {"scrollSpeedVertical", "scrollSpeedHorizontal", "mouseSpeed", "mouseAcceleration"}) {
        for (const double number : {1e308, -1e308, -0.0, 5e-324, 1e19}) {
            SCOPED_TRACE(std::string(name) + " " + std::to_string(number));
            auto backup = clean;
            backup["settings"]["mouseSpeed"] = 1.3;
            backup["settings"]["horizontalScrollEnabled"] = true;
            backup["settings"][name] = number;
            files.contents["b"] = backup.dump();
            EXPECT_EQ(run(R"({"do":"call","operation":"importBackup","path":"b"})"), "");
            const double taken = state("monitor").at(name);
            EXPECT_TRUE(taken >= 0 && taken <= 3.0) << taken;
            sendEvents();
        }
    }
}

TEST_F(HostileScriptTest, WhatNoDeviceSends_IsRefusedByItsKey) {
    EXPECT_THAT(run(R"({"do":"event","type":5,"dx":-2147483648})"), HasSubstr("dx: "));
    EXPECT_THAT(run(R"({"do":"event","type":5,"dy":-2147483648})"), HasSubstr("dy: "));
    for (const char* key : {"scrollX", "scrollY", "pointX", "pointY"}) {
        EXPECT_THAT(run(R"({"do":"event","type":22,")" + std::string(key) + R"(":-2147483648})"),
                    HasSubstr(std::string(key) + ": "));
    }
    for (const char* place : {"1e308", "-1e308", "1000001", "-1000001"}) {
        EXPECT_THAT(run(R"({"do":"event","type":5,"x":)" + std::string(place) + "}"), HasSubstr("x: "));
        EXPECT_THAT(run(R"({"do":"event","type":5,"y":)" + std::string(place) + "}"), HasSubstr("y: "));
        EXPECT_THAT(run(R"({"do":"pointer","x":0,"y":)" + std::string(place) + "}"), HasSubstr("y: "));
        EXPECT_THAT(run(R"({"do":"screens","frames":[[0,0,1440,900],[)" + std::string(place) + ",0,9,9]]}"),
                    HasSubstr("frames[1]: "));
        EXPECT_THAT(run(R"({"do":"ownWindows","windows":[{"frame":[0,0,9,)" + std::string(place) + "]}]}"),
                    HasSubstr("windows[0].frame: "));
    }
    EXPECT_THAT(run(R"({"do":"screens","frames":[[0,0,-1440,900]]})"), HasSubstr("frames[0]: "));
    EXPECT_THAT(run(R"({"do":"ownWindows","windows":[{"frame":[0,0,9,9],"alpha":1e308}]})"),
                HasSubstr("windows[0].alpha: "));
    for (const char* button : {"-1", "-9223372036854775808", "256", "9223372036854775807"}) {
        EXPECT_THAT(run(R"({"do":"event","type":25,"button":)" + std::string(button) + "}"),
                    HasSubstr("button: "));
    }
    EXPECT_THAT(run(R"({"do":"battery","sources":[{"current":1e308,"max":1,"state":""}]})"),
                HasSubstr("sources[0].current: "));
    EXPECT_THAT(run(R"({"do":"battery","sources":[{"current":1,"max":-1e308,"state":""}]})"),
                HasSubstr("sources[0].max: "));
    EXPECT_THAT(run(R"({"do":"wait","seconds":1e308})"), HasSubstr("seconds: "));
    EXPECT_THAT(run(R"({"do":"wait","seconds":-1e308})"), HasSubstr("seconds: "));
    EXPECT_THAT(run(R"({"at":1e308,"do":"wait","seconds":0})"), HasSubstr("at: "));
}

TEST_F(HostileScriptTest, RefusedLine_ChangesNothing) {
    EXPECT_EQ(run(R"({"do":"pointer","x":5,"y":6})"), "");
    run(R"({"do":"pointer","x":7,"y":1e300})");
    run(R"({"do":"start"})");
    trace.clear();
    run(R"({"do":"call","operation":"setSetting","name":"mouseSpeed","value":0.5})");
    run(R"({"do":"event","type":5,"dx":8,"dy":0})");
    EXPECT_THAT(trace.at(1), HasSubstr(R"("x":1,"y":6)"));
}

}  // namespace
}  // namespace trelvan
