#include "Desktop/DesktopTest.hpp"

#include <algorithm>

namespace trelvan::desktop {
namespace {

/// `trelvan actions` on a bare window manager.
class ActionListTest : public DesktopTest {
  protected:
    nlohmann::json list(const std::map<std::string, std::string>& more = {}) {
        auto environment = desktop().environment();
        for (const auto& [name, value] : more) environment[name] = value;
        const auto result = runProgram(desktop(), {"actions", "--json"}, environment);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return nlohmann::json::parse(result.output, nullptr, false);
    }
    static nlohmann::json named(const nlohmann::json& list, const std::string& action) {
        for (const auto& one : list.value("actions", nlohmann::json::array())) {
            if (one.value("action", "") == action) return one;
        }
        return {};
    }
};

TEST_F(ActionListTest, EveryActionIsThereWithBothNames) {
    const auto all = list();
    ASSERT_EQ(all.value("actions", nlohmann::json::array()).size(), 33U) << all.dump();
    const auto copy = named(all, "Copiar");
    EXPECT_EQ(copy.value("english", ""), "Copy");
    EXPECT_EQ(copy["sends"][0], "Sent: Control+C");
    EXPECT_EQ(copy.value("can", false), true);
}

TEST_F(ActionListTest, WhatTheWindowManagerHasAndWhatNobodyHasIsTold) {
    // With no programs but the desktop's stand-ins.
    const auto all =
        list({{"XDG_DATA_DIRS", "/nonexistent"}, {"PATH", (desktop().folder() / "bin").string()}});
    const auto showDesktop = named(all, "Mostrar Escritorio");
    EXPECT_EQ(showDesktop.value("can", false), true);
    EXPECT_EQ(showDesktop["sends"].back(), "Here: the window manager");
    EXPECT_EQ(named(all, "Mission Control").value("can", true), false);
    EXPECT_EQ(named(all, "Mission Control").value("obstacle", ""),
              "Nothing on this desktop does it; installed, this would: rofi");
    EXPECT_EQ(named(all, "New Note").value("obstacle", ""), "No editor and no note taker is installed");
    EXPECT_EQ(named(all, "Lock Workstation").value("can", false), true);
}

TEST_F(ActionListTest, PeopleReadItInTheirLanguage) {
    const auto result = runProgram(desktop(), {"actions", "--language", "es"}, desktop().environment());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.output.find("Copiar (Copy)\n      Se envía: Control+C\n"), std::string::npos)
        << result.output;
}

TEST_F(ActionListTest, WithoutADisplayTheRestIsStillTold) {
    auto environment = desktop().environment();
    environment.erase("DISPLAY");
    environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent";
    const auto result = runProgram(desktop(), {"actions", "--json"}, environment);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const auto all = nlohmann::json::parse(result.output, nullptr, false);
    EXPECT_EQ(named(all, "Mission Control").value("can", false), true);
    EXPECT_EQ(named(all, "Copiar").value("can", false), true);
}

}  // namespace
}  // namespace trelvan::desktop
