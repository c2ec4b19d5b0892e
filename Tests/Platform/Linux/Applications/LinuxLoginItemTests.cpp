#include "Platform/Linux/Applications/LinuxLoginItem.hpp"
#include "Platform/Shared/DurableFile.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace trelvan {
namespace {

using Status = LoginItem::Status;

class LinuxLoginItemTests : public testing::Test {
  protected:
    LinuxLoginItemTests() {
        std::string name = testing::TempDir() + "login-item-XXXXXX";
        place = mkdtemp(name.data());
        setting = {.folder = place + "/config/autostart",
                   .systemFolders = {place + "/xdg/autostart"},
                   .desktops = {"XFCE"},
                   .command = {program("bin/trelvan")}};
    }
    ~LinuxLoginItemTests() override { std::filesystem::remove_all(place); }

    /// An executable file of that name.
    std::string program(const std::string& name) {
        const auto path = place + "/" + name;
        write(path, "#!/bin/sh\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    static void write(const std::string& path, const std::string& text) {
        ASSERT_EQ(replaceFile(path, text), std::nullopt);
    }
    [[nodiscard]] std::string own() const { return setting.folder + "/trelvan.desktop"; }
    [[nodiscard]] std::string text() const { return readFile(own()).bytes.value_or("(none)"); }

    std::string place;
    LinuxLoginItem::Setting setting;
};

TEST_F(LinuxLoginItemTests, NothingIsRegisteredAtFirst) {
    EXPECT_EQ(LinuxLoginItem(setting).status(), Status::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(own()));
}

TEST_F(LinuxLoginItemTests, RegisteringEnablesAndUnregisteringTakesTheFileAway) {
    LinuxLoginItem item(setting);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::enabled);
    EXPECT_NE(text().find("Exec=\"" + setting.command.front() + "\"\n"), std::string::npos) << text();
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(own()));
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
}

TEST_F(LinuxLoginItemTests, PathWithBlanksIsStartedAsOneProgram) {
    setting.command = {program("My Programs/trelvan 2"), "--config", "/a b"};
    LinuxLoginItem item(setting);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::enabled);
}

TEST_F(LinuxLoginItemTests, WhatAnotherProgramWritesCounts) {
    LinuxLoginItem item(setting);
    ASSERT_EQ(item.registerItem(), std::nullopt);
    const auto written = text();
    write(own(), written + "Hidden=true\n");
    EXPECT_EQ(item.status(), Status::notRegistered);
    write(own(), written + "X-GNOME-Autostart-enabled=false\n");
    EXPECT_EQ(item.status(), Status::notRegistered);
    write(own(), written + "OnlyShowIn=KDE;\n");
    EXPECT_EQ(item.status(), Status::notRegistered);
    write(own(), written + "OnlyShowIn=XFCE;\n");
    EXPECT_EQ(item.status(), Status::enabled);
    write(own(), "nonsense");
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(text(), written);
    EXPECT_EQ(item.status(), Status::enabled);
}

TEST_F(LinuxLoginItemTests, EntryWhoseProgramIsGoneIsNotFound) {
    LinuxLoginItem item(setting);
    ASSERT_EQ(item.registerItem(), std::nullopt);
    std::filesystem::remove(setting.command.front());
    EXPECT_EQ(item.status(), Status::notFound);
}

TEST_F(LinuxLoginItemTests, ProgramWithoutAFolderIsLookedForInThePath) {
    LinuxLoginItem item(setting);
    write(own(), "[Desktop Entry]\nType=Application\nExec=sh -c true\n");
    EXPECT_EQ(item.status(), Status::enabled);
    write(own(), "[Desktop Entry]\nType=Application\nExec=no-such-program\n");
    EXPECT_EQ(item.status(), Status::notFound);
    write(own(), "[Desktop Entry]\nType=Application\nExec=sh -c true\nTryExec=no-such-program\n");
    EXPECT_EQ(item.status(), Status::notFound);
}

TEST_F(LinuxLoginItemTests, MovedProgramTakesItsEntryAlong) {
    setting.command.push_back("--config");
    setting.command.push_back("/kept");
    ASSERT_EQ(LinuxLoginItem(setting).registerItem(), std::nullopt);
    const auto before = text();
    const auto old = setting.command.front();
    std::filesystem::remove(old);
    setting.command.front() = program("elsewhere/trelvan");
    EXPECT_EQ(LinuxLoginItem(setting).status(), Status::enabled);
    auto expected = before;
    expected.replace(expected.find(old), old.size(), setting.command.front());
    EXPECT_EQ(text(), expected);
}

TEST_F(LinuxLoginItemTests, AnotherCopyThatIsStillThereKeepsTheEntry) {
    ASSERT_EQ(LinuxLoginItem(setting).registerItem(), std::nullopt);
    const auto before = text();
    setting.command.front() = program("elsewhere/trelvan");
    EXPECT_EQ(LinuxLoginItem(setting).status(), Status::enabled);
    EXPECT_EQ(text(), before);
}

TEST_F(LinuxLoginItemTests, MoveDoesNotSwitchAHiddenEntryOn) {
    ASSERT_EQ(LinuxLoginItem(setting).registerItem(), std::nullopt);
    write(own(), text() + "Hidden=true\n");
    std::filesystem::remove(setting.command.front());
    setting.command.front() = program("elsewhere/trelvan");
    EXPECT_EQ(LinuxLoginItem(setting).status(), Status::notRegistered);
}

TEST_F(LinuxLoginItemTests, EntryOfTheSystemCountsUntilTheUserHidesIt) {
    write(place + "/xdg/autostart/trelvan.desktop", "[Desktop Entry]\nType=Application\nExec=sh\n");
    LinuxLoginItem item(setting);
    EXPECT_EQ(item.status(), Status::enabled);
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::enabled);
}

TEST_F(LinuxLoginItemTests, FailureNamesTheFile) {
    write(place + "/config", "a file where the folder would be");
    LinuxLoginItem item(setting);
    const auto error = item.registerItem();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->starts_with(own() + ": ")) << *error;
    EXPECT_EQ(item.status(), Status::notRegistered);
}

TEST_F(LinuxLoginItemTests, AppImageIsWhatIsRegistered) {
    const auto image = program("Trelvan.AppImage");
    const auto mounted = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    setenv("APPIMAGE", image.c_str(), 1);
    setenv("APPDIR", mounted.c_str(), 1);
    const auto command = LinuxLoginItem::present({"--config", "/x"}).command;
    unsetenv("APPIMAGE");
    unsetenv("APPDIR");
    EXPECT_EQ(command, (std::vector<std::string>{image, "--config", "/x"}));
    EXPECT_EQ(LinuxLoginItem::present({}).command.front(),
              std::filesystem::read_symlink("/proc/self/exe").string());
}

TEST_F(LinuxLoginItemTests, AppImageThatOnlyStartedTheProgramIsNotRegistered) {
    // A terminal may be one; its variables reach all that runs in it.
    const auto image = program("Terminal.AppImage");
    setenv("APPIMAGE", image.c_str(), 1);
    setenv("APPDIR", "/tmp/.mount_terminal", 1);
    const auto command = LinuxLoginItem::present({}).command;
    unsetenv("APPDIR");
    const auto withoutMount = LinuxLoginItem::present({}).command;
    unsetenv("APPIMAGE");
    const std::vector<std::string> running{std::filesystem::read_symlink("/proc/self/exe").string()};
    EXPECT_EQ(command, running);
    EXPECT_EQ(withoutMount, running);
}

}  // namespace
}  // namespace trelvan
