#include "Core/LaunchAtLoginManager.hpp"
#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Applications/LinuxLoginItem.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Support/CapturingLog.hpp"

#include <filesystem>
#include <fstream>

namespace trelvan::desktop {
namespace {

class LoginItemWatchTest : public ServerTest {
  protected:
    LoginItemWatchTest() { std::filesystem::remove_all(folder); }

    const std::string folder = desktop().folder() / "config" / "autostart";
    const std::string file = folder + "/trelvan.desktop";
    test::CapturingLog log;
    LinuxLoginItem item{LinuxLoginItem::present({})};
    LaunchAtLoginManager manager{item, log.logger};
};

TEST_F(LoginItemWatchTest, ManagerFollowsWhatOtherProgramsDoToTheFile) {
    EXPECT_FALSE(manager.isEnabled);
    manager.toggle();
    EXPECT_TRUE(manager.isEnabled);
    const auto written = readFile(std::filesystem::path(file));
    // Replaced, as desktops do it.
    ASSERT_EQ(replaceFile(file, written + "Hidden=true\n"), std::nullopt);
    EXPECT_TRUE(runUntil([&] { return !manager.isEnabled; }));
    ASSERT_EQ(replaceFile(file, written), std::nullopt);
    EXPECT_TRUE(runUntil([&] { return manager.isEnabled.get(); }));
    // Written in place, as an editor may do it.
    std::ofstream(file, std::ios::app) << "X-GNOME-Autostart-enabled=false\n";
    EXPECT_TRUE(runUntil([&] { return !manager.isEnabled; }));
    std::filesystem::remove_all(folder);
    manager.toggle();
    EXPECT_TRUE(manager.isEnabled);
    std::filesystem::remove(file);
    EXPECT_TRUE(runUntil([&] { return !manager.isEnabled; }));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(LoginItemWatchTest, FolderThatComesLaterIsSeen) {
    EXPECT_FALSE(std::filesystem::exists(folder));
    LinuxLoginItem other(LinuxLoginItem::present({}));
    ASSERT_EQ(other.registerItem(), std::nullopt);
    EXPECT_TRUE(runUntil([&] { return manager.isEnabled.get(); }));
}

}  // namespace
}  // namespace trelvan::desktop
