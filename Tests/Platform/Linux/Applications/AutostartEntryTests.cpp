#include "Platform/Linux/Applications/AutostartEntry.hpp"
#include "Platform/Linux/Applications/DesktopEntry.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

using autostart::entryFor;
using autostart::quotedArgument;
using autostart::read;
using autostart::withProgram;

constexpr auto head = "[Desktop Entry]\nType=Application\nName=Trelvan\nExec=\"/opt/trelvan\" --config /x\n";

TEST(AutostartEntryTests, PlainArgumentIsQuoted) {
    EXPECT_EQ(quotedArgument("/usr/bin/trelvan"), R"("/usr/bin/trelvan")");
}

TEST(AutostartEntryTests, SpecialCharactersAreEscapedOnBothLevels) {
    EXPECT_EQ(quotedArgument("a b\"c`d$e\\f%g"), R"("a b\\"c\\`d\\$e\\\\f%%g")");
}

TEST(AutostartEntryTests, EveryProgramAndArgumentComesBackAsItWas) {
    for (const std::string program :
         {"/opt/trelvan", "/home/me/My Programs/trelvan", "/opt/a\"b", "/opt/a\\b", "/opt/100%/trelvan",
          "/opt/$HOME`x`/trelvan", "/opt/señal/Trelvan ü.AppImage", "/opt/a\tb\nc"}) {
        const std::vector<std::string> command{program, "--config", program + "/config"};
        const auto entry = parseDesktopEntry(entryFor(command));
        ASSERT_TRUE(entry) << program;
        EXPECT_EQ(commandLine(*entry, {}), command);
        EXPECT_EQ(read(entryFor(command), {}).program, program);
    }
}

TEST(AutostartEntryTests, EntryThatTheProgramWroteIsWantedOnEveryDesktop) {
    EXPECT_TRUE(read(entryFor({"/opt/trelvan"}), {}).isWanted);
    EXPECT_TRUE(read(entryFor({"/opt/trelvan"}), {"ubuntu", "GNOME"}).isWanted);
}

TEST(AutostartEntryTests, HiddenOrSwitchedOffEntryIsNotWanted) {
    const std::string entry = head;
    EXPECT_TRUE(read(entry, {}).isWanted);
    EXPECT_FALSE(read(entry + "Hidden=true\n", {}).isWanted);
    EXPECT_TRUE(read(entry + "Hidden=false\n", {}).isWanted);
    EXPECT_FALSE(read(entry + "X-GNOME-Autostart-enabled=false\n", {}).isWanted);
    EXPECT_TRUE(read(entry + "X-GNOME-Autostart-enabled = true\n", {}).isWanted);
    EXPECT_TRUE(read(entry + "[Other Group]\nHidden=true\nX-GNOME-Autostart-enabled=false\n", {}).isWanted);
    EXPECT_TRUE(read(entry + "#Hidden=true\n", {}).isWanted);
}

TEST(AutostartEntryTests, DesktopsAreChosenByTheirNames) {
    const std::string entry = head;
    EXPECT_TRUE(read(entry + "OnlyShowIn=XFCE;GNOME;\n", {"ubuntu", "GNOME"}).isWanted);
    EXPECT_FALSE(read(entry + "OnlyShowIn=XFCE;KDE;\n", {"ubuntu", "GNOME"}).isWanted);
    EXPECT_FALSE(read(entry + "OnlyShowIn=XFCE;\n", {}).isWanted);
    EXPECT_FALSE(read(entry + "NotShowIn=KDE;GNOME\n", {"GNOME"}).isWanted);
    EXPECT_TRUE(read(entry + "NotShowIn=KDE;\n", {"GNOME"}).isWanted);
    EXPECT_TRUE(read(entry + "NotShowIn=KDE;\n", {}).isWanted);
}

TEST(AutostartEntryTests, WhatIsNoApplicationIsNotWanted) {
    EXPECT_FALSE(read("", {}).isWanted);
    EXPECT_FALSE(read("Type=Application\nExec=/opt/trelvan\n", {}).isWanted);
    EXPECT_FALSE(read("[Desktop Entry]\nType=Link\nURL=x\n", {}).isWanted);
}

TEST(AutostartEntryTests, OpenQuoteLeavesNoProgram) {
    EXPECT_EQ(read("[Desktop Entry]\nType=Application\nExec=\"/opt/trelvan\n", {}).program, "");
}

TEST(AutostartEntryTests, NewProgramKeepsEverythingElse) {
    const std::string entry =
        "# mine\n[Desktop Entry]\nType=Application\nTryExec=/old/trelvan\nExec=/old/trelvan --config \"/a "
        "b\"\n"
        "OnlyShowIn=XFCE;\n\n[Desktop Action x]\nExec=/old/other\n";
    EXPECT_EQ(withProgram(entry, "/new place/trelvan"),
              "# mine\n[Desktop Entry]\nType=Application\n"
              "Exec=\"/new place/trelvan\" \"--config\" \"/a b\"\n"
              "OnlyShowIn=XFCE;\n\n[Desktop Action x]\nExec=/old/other\n");
}

}  // namespace
}  // namespace trelvan
