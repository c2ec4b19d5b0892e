#include "Platform/Linux/Shell/LinuxHotKeys.hpp"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

/// Timers that are not needed: nothing changes in these tests.
class NoTimers final : public Timers {
  public:
    [[nodiscard]] std::unique_ptr<Timer> every(Seconds /*interval*/, std::function<void()> /*job*/) override {
        return nullptr;
    }
    [[nodiscard]] std::unique_ptr<Timer> once(Seconds /*delay*/, std::function<void()> /*job*/) override {
        return nullptr;
    }
};

/// The user's and the system's configuration folders, named by the environment while it lives.
class Folders {
  public:
    Folders() {
        std::string name = std::filesystem::temp_directory_path() / "trelvan-hotkeys-XXXXXX";
        path = mkdtemp(name.data());
        setenv("XDG_CONFIG_HOME", (path / "user").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (path / "system").c_str(), 1);
    }
    ~Folders() {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("XDG_CONFIG_DIRS");
        std::filesystem::remove_all(path);
    }
    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name) << text;
    }
    std::filesystem::path path;
};

constexpr auto xfceChannel = "/xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml";

std::string xfceWith(const std::string& accelerator) {
    return "<channel name=\"xfce4-keyboard-shortcuts\"><property name=\"xfwm4\"><property name=\"custom\">"
           "<property name=\"" +
           accelerator + "\" type=\"string\" value=\"left_workspace_key\"/></property></property></channel>";
}

class LinuxHotKeysTest : public testing::Test {
  protected:
    /// The D key alone, which this layout has elsewhere, with Shift.
    static std::optional<KeyChord> keyFor(unsigned long keysym) {
        if (keysym == XK_d) return KeyChord{.keyCode = 33, .flags = flag::shift};
        if (keysym == XK_Left) return KeyChord{.keyCode = key::leftArrow};
        return std::nullopt;
    }
    Folders folders;
    NoTimers timers;
};

using Parameters = std::vector<std::optional<std::int64_t>>;

TEST_F(LinuxHotKeysTest, KdesFile_GivesEntriesInTheSystemsForm) {
    folders.write("user/kglobalshortcutsrc",
                  "[kwin]\nShow Desktop=Meta+D,Meta+D,Peek\nOverview=Meta+W,Meta+W,Toggle\n"
                  "Switch One Desktop to the Left=Meta+Ctrl+Left,,\n");
    const LinuxHotKeys hotKeys(DesktopKind::kde, timers, keyFor);
    const auto showDesktop = hotKeys.entry(hotkey::showDesktop);
    ASSERT_TRUE(showDesktop);
    EXPECT_TRUE(showDesktop->enabled);
    EXPECT_EQ(showDesktop->parameters, (Parameters{'d', 33, 0x120000}));
    EXPECT_EQ(hotKeys.entry(hotkey::desktopLeft)->parameters, (Parameters{65535, 123, 0x140000}));
}

TEST_F(LinuxHotKeysTest, KeyThatTheLayoutLacks_GivesNoEntry) {
    folders.write("user/kglobalshortcutsrc", "[kwin]\nOverview=Meta+W,Meta+W,Toggle\n");
    EXPECT_FALSE(LinuxHotKeys(DesktopKind::kde, timers, keyFor).entry(hotkey::missionControl));
}

TEST_F(LinuxHotKeysTest, XfcesUserFile_GoesBeforeTheSystems) {
    folders.write(std::string("system") + xfceChannel, xfceWith("&lt;Super&gt;Left"));
    EXPECT_EQ(LinuxHotKeys(DesktopKind::xfce, timers, keyFor).entry(hotkey::desktopLeft)->parameters,
              (Parameters{65535, 123, 0x100000}));
    folders.write(std::string("user") + xfceChannel, xfceWith("&lt;Alt&gt;Left"));
    EXPECT_EQ(LinuxHotKeys(DesktopKind::xfce, timers, keyFor).entry(hotkey::desktopLeft)->parameters,
              (Parameters{65535, 123, 0x80000}));
}

TEST_F(LinuxHotKeysTest, UnknownDesktop_HasNoEntries) {
    folders.write("user/kglobalshortcutsrc", "[kwin]\nShow Desktop=Meta+D,Meta+D,Peek\n");
    const LinuxHotKeys hotKeys(DesktopKind::other, timers, keyFor);
    for (const int id : {hotkey::showDesktop, hotkey::missionControl, hotkey::lockScreen, 7}) {
        EXPECT_FALSE(hotKeys.entry(id)) << id;
    }
}

}  // namespace
}  // namespace trelvan
