#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Session/SettingsWatch.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace trelvan::desktop {
namespace {

namespace fs = std::filesystem;

class SettingsWatchTest : public ServerTest {
  protected:
    SettingsWatchTest() { fs::remove_all(folder); }
    ~SettingsWatchTest() override { fs::remove_all(folder); }

    static std::string text(int value) { return "{\"key\": " + std::to_string(value) + "}"; }
    static void write(const fs::path& path, const std::string& content) { std::ofstream(path) << content; }
    /// As most editors do it.
    static void replace(const fs::path& path, const std::string& content) {
        write(path.string() + "~", content);
        fs::rename(path.string() + "~", path);
    }
    static bool arrives(const SettingsFile& settings, int value) {
        return runUntil([&] { return settings.object("key") == DefaultsValue{std::int64_t{value}}; });
    }

    const fs::path folder = desktop().folder() / "watched";
    const fs::path file = folder / "settings.json";
};

TEST_F(SettingsWatchTest, WrittenInPlaceOrReplaced_IsTakenIn) {
    fs::create_directories(folder);
    write(file, text(1));
    SettingsFile settings(folder);
    const SettingsWatch watch(settings);
    write(file, text(2));
    EXPECT_TRUE(arrives(settings, 2));
    replace(file, text(3));
    EXPECT_TRUE(arrives(settings, 3));
    write(file, text(4));
    EXPECT_TRUE(arrives(settings, 4));
    fs::remove(file);
    write(file, text(5));
    EXPECT_TRUE(arrives(settings, 5));
}

TEST_F(SettingsWatchTest, FolderThatComesLater_IsFound) {
    SettingsFile settings((folder / "deep" / "er").string());
    const SettingsWatch watch(settings);
    fs::create_directories(folder / "deep" / "er");
    write(folder / "deep" / "er" / "settings.json", text(1));
    EXPECT_TRUE(arrives(settings, 1));
    replace(folder / "deep" / "er" / "settings.json", text(2));
    EXPECT_TRUE(arrives(settings, 2));
}

TEST_F(SettingsWatchTest, FolderThatIsMovedAwayAndMadeAnew_IsFollowed) {
    fs::create_directories(folder / "config");
    write(folder / "config" / "settings.json", text(1));
    SettingsFile settings((folder / "config").string());
    const SettingsWatch watch(settings);
    fs::rename(folder / "config", folder / "old");
    fs::create_directory(folder / "config");
    write(folder / "config" / "settings.json", text(2));
    EXPECT_TRUE(arrives(settings, 2));
    write(folder / "config" / "settings.json", text(3));
    EXPECT_TRUE(arrives(settings, 3));
}

TEST_F(SettingsWatchTest, LinkAndWhatItLeadsTo_AreBothWatched) {
    fs::create_directories(folder / "dotfiles");
    write(folder / "dotfiles" / "one.json", text(1));
    write(folder / "dotfiles" / "two.json", text(2));
    fs::create_symlink("dotfiles/one.json", file);
    SettingsFile settings(folder);
    const SettingsWatch watch(settings);
    EXPECT_TRUE(arrives(settings, 1));
    replace(folder / "dotfiles" / "one.json", text(3));
    EXPECT_TRUE(arrives(settings, 3));
    fs::create_symlink("dotfiles/two.json", folder / "link");
    fs::rename(folder / "link", file);
    EXPECT_TRUE(arrives(settings, 2));
    write(folder / "dotfiles" / "two.json", text(4));
    EXPECT_TRUE(arrives(settings, 4));
}

TEST_F(SettingsWatchTest, DamagedText_IsReportedAndForgottenOnceMended) {
    fs::create_directories(folder);
    write(file, text(1));
    SettingsFile settings(folder);
    const SettingsWatch watch(settings);
    write(file, "{\"key\": ");
    EXPECT_TRUE(runUntil([&] { return settings.problem.get().has_value(); }));
    EXPECT_EQ(settings.object("key"), DefaultsValue{std::int64_t{1}});
    write(file, text(2));
    EXPECT_TRUE(arrives(settings, 2));
    EXPECT_FALSE(settings.problem.get());
}

TEST_F(SettingsWatchTest, SaveThatMetALock_IsMadeWhenTheLockIsGone) {
    fs::create_directories(folder);
    SettingsFile settings(folder);
    const SettingsWatch watch(settings);
    const int holder = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(holder, LOCK_EX), 0);
    settings.set("key", std::int64_t{1});
    EXPECT_FALSE(fs::exists(file));
    close(holder);
    EXPECT_TRUE(runUntil([&] { return fs::exists(file); }));
}

}  // namespace
}  // namespace trelvan::desktop
