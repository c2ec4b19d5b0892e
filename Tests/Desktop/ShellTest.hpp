#pragma once

#include "Desktop/DesktopTest.hpp"

#include <string>

namespace trelvan::desktop {

/// Actions that the desktop itself performs, on desktops of which only the service asked is there.
class ShellTest : public DesktopTest {
  protected:
    void TearDown() override {
        DesktopTest::TearDown();
        std::filesystem::remove_all(desktop().folder() / "config");
        std::filesystem::create_directory(desktop().folder() / "config");
        for (const auto* program : {"gsettings", "xdg-screensaver"}) writeProgram(program, "exit 1");
        for (const auto* program : {"xfdesktop", "rofi", "xfce4-appfinder", "xflock4"})
            std::filesystem::remove(desktop().folder() / "bin" / program);
    }

    void writeProgram(const std::string& name, const std::string& script) {
        const auto path = desktop().folder() / "bin" / name;
        writeFile(path, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

    void writeXfceShortcuts(const std::string& commands, const std::string& windowManager = {}) {
        const auto path = desktop().folder() / "config/xfce4/xfconf/xfce-perchannel-xml";
        std::filesystem::create_directories(path);
        // Replaced whole, as the settings daemon does it.
        writeFile(path / "new", R"(<channel name="xfce4-keyboard-shortcuts" version="1.0">
<property name="commands" type="empty"><property name="custom" type="empty">)" +
                                    commands +
                                    R"(</property></property>
<property name="xfwm4" type="empty"><property name="custom" type="empty">)" +
                                    windowManager + "</property></property></channel>\n");
        std::filesystem::rename(path / "new", path / "xfce4-keyboard-shortcuts.xml");
    }

    /// A program that writes down its arguments, a line for each time it is run; the file it writes them
    /// into.
    std::filesystem::path programThatRecords(const std::string& name) {
        const auto trace = desktop().folder() / (name + ".arguments");
        std::filesystem::remove(trace);
        writeProgram(name, "printf '%s\\n' \"$*\" >> '" + trace.string() + "'");
        return trace;
    }

    /// On a machine that has no programs but the test's own.
    void startAlone(const std::string& currentDesktop, const Settings& settings) {
        start(settings, {{"XDG_CURRENT_DESKTOP", currentDesktop}, {"PATH", desktop().folder() / "bin"}});
    }

    void startOn(const std::string& currentDesktop, const Settings& settings) {
        start(settings, {{"XDG_CURRENT_DESKTOP", currentDesktop}});
    }

    void expectNoKeys() {
        passSentinel();
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
    }

    int linesWith(const std::string& text) {
        int count = 0;
        const auto output = program().output();
        for (auto at = output.find(text); at != std::string::npos; at = output.find(text, at + 1)) ++count;
        return count;
    }

    bool isProperty(const char* name, long value) {
        auto& connection = client().connection();
        return waitUntil(
            [&] { return connection.property(connection.root(), name) == std::vector<long>{value}; });
    }
};

}  // namespace trelvan::desktop
