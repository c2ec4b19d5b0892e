#include "Platform/Files.hpp"
#include "Platform/Shared/AtomicFile.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <vector>

namespace trelvan {
namespace {

class StandardFilesTest : public testing::Test {
  protected:
    StandardFilesTest() {
        std::string name = testing::TempDir() + "files-XXXXXX";
        place = mkdtemp(name.data());
    }
    ~StandardFilesTest() override { std::filesystem::remove_all(place); }

    std::string readError(const std::string& path) {
        const auto result = files.read(path);
        const auto* error = std::get_if<FileError>(&result);
        return error != nullptr ? error->text : "(none)";
    }

    mode_t modeOf(const std::string& name) const {
        struct stat info {};
        return stat((place + name).c_str(), &info) == 0 ? info.st_mode & 07777U : 0;
    }
    static void makeOld(const std::string& path) {
        const timespec hourAgo{.tv_sec = std::time(nullptr) - 3600, .tv_nsec = 0};
        const timespec times[]{hourAgo, hourAgo};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }
    static std::vector<std::string> namesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename());
        return names;
    }

    std::string place;
    StandardFiles files;
};

TEST_F(StandardFilesTest, WhatIsWrittenIsRead) {
    const std::string bytes("a\0b\n\xff", 5);
    EXPECT_FALSE(files.write(place + "/f", "first"));
    EXPECT_FALSE(files.write(place + "/f", bytes));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f")), bytes);
    EXPECT_EQ(namesIn(place), std::vector<std::string>{"f"});
}

TEST_F(StandardFilesTest, EmptyFileIsEmpty) {
    EXPECT_FALSE(files.write(place + "/f", ""));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f")), "");
}

TEST_F(StandardFilesTest, MissingFileIsNamed) {
    EXPECT_TRUE(readError(place + "/none").starts_with(place + "/none: "));
}

TEST_F(StandardFilesTest, FolderAndDeviceAreNoFiles) {
    EXPECT_EQ(readError(place), place + ": Is a directory");
    EXPECT_TRUE(readError("/dev/zero").starts_with("/dev/zero: "));
}

TEST_F(StandardFilesTest, WhatIsNoFileIsNotReplacedByOne) {
    const std::string pipe = place + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto error = files.write(pipe, "x");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->text.starts_with(pipe + ": "));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_NE(readError(pipe), "(none)");
}

TEST_F(StandardFilesTest, LinkStaysAndWhatItLeadsToIsWritten) {
    std::filesystem::create_directory(place + "/far");
    EXPECT_FALSE(files.write(place + "/far/f", "first"));
    std::filesystem::create_symlink("far/f", place + "/link");
    EXPECT_FALSE(files.write(place + "/link", "second"));
    EXPECT_TRUE(std::filesystem::is_symlink(place + "/link"));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/far/f")), "second");
}

TEST_F(StandardFilesTest, NeighbouringFileIsLeftAlone) {
    EXPECT_FALSE(files.write(place + "/f.new", "mine"));
    EXPECT_FALSE(files.write(place + "/f", "x"));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f.new")), "mine");
}

TEST_F(StandardFilesTest, ImmenseFileIsRefused) {
    std::ofstream(place + "/big").close();
    std::filesystem::resize_file(place + "/big", Files::largest + 1);
    EXPECT_TRUE(readError(place + "/big").starts_with(place + "/big: "));
}

TEST_F(StandardFilesTest, WriteThatFailsLeavesTheFile) {
    const auto error = files.write(place + "/no/f", "x");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->text.starts_with(place + "/no/f: ")) << error->text;
    std::filesystem::create_directory(place + "/taken");
    std::ofstream(place + "/taken/inside").close();
    EXPECT_TRUE(files.write(place + "/taken", "x"));
    EXPECT_TRUE(std::filesystem::exists(place + "/taken/inside"));
    EXPECT_EQ(namesIn(place), std::vector<std::string>{"taken"});
}

TEST_F(StandardFilesTest, FileThatIsReplaced_KeepsItsPermissions) {
    for (const mode_t mode : {0600U, 0640U, 0644U}) {
        EXPECT_FALSE(files.write(place + "/f", "first"));
        ASSERT_EQ(chmod((place + "/f").c_str(), mode), 0);
        EXPECT_FALSE(files.write(place + "/f", "second"));
        EXPECT_EQ(modeOf("/f"), mode);
    }
}

TEST_F(StandardFilesTest, NewFile_HasThePermissionsThatTheUserWants) {
    const mode_t before = umask(0027);
    EXPECT_FALSE(files.write(place + "/f", "x"));
    umask(before);
    EXPECT_EQ(modeOf("/f"), 0640U);
}

TEST_F(StandardFilesTest, PlantedLinkUnderTheTemporaryName_IsNotFollowed) {
    EXPECT_FALSE(files.write(place + "/victim", "safe"));
    // The name that could be guessed once.
    std::filesystem::create_symlink("victim", place + "/f.new");
    EXPECT_FALSE(files.write(place + "/f", "x"));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/victim")), "safe");
    EXPECT_FALSE(std::filesystem::is_symlink(place + "/f"));
}

TEST_F(StandardFilesTest, LinkToItself_IsAnError) {
    std::filesystem::create_symlink("loop", place + "/loop");
    EXPECT_TRUE(files.write(place + "/loop", "x"));
    EXPECT_TRUE(std::filesystem::is_symlink(place + "/loop"));
}

TEST_F(StandardFilesTest, WhatKilledWritesLeftBehind_IsRemovedOnceItIsOldAndNobodys) {
    const std::string prefix = temporaryPrefix(place + "/f");
    for (const char* name : {"old", "young", "held"}) std::ofstream(prefix + name) << "half";
    std::ofstream(place + "/.f.trelvan") << "mine";
    for (const std::string& path : {prefix + "old", prefix + "held", place + "/.f.trelvan"}) makeOld(path);
    const int held = open((prefix + "held").c_str(), O_RDONLY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_FALSE(files.write(place + "/f", "x"));
    EXPECT_FALSE(std::filesystem::exists(prefix + "old"));
    EXPECT_TRUE(std::filesystem::exists(prefix + "young"));
    EXPECT_TRUE(std::filesystem::exists(prefix + "held"));
    EXPECT_TRUE(std::filesystem::exists(place + "/.f.trelvan"));
    close(held);
    EXPECT_FALSE(files.write(place + "/f", "y"));
    EXPECT_FALSE(std::filesystem::exists(prefix + "held"));
}

TEST_F(StandardFilesTest, WriteBeyondTheSizeLimit_IsAnErrorThatLeavesTheFile) {
    EXPECT_FALSE(files.write(place + "/f", "first"));
    signal(SIGXFSZ, [](int) {});
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit tight{.rlim_cur = 1000, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    const auto error = files.write(place + "/f", std::string(5000, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->text, place + "/f: File too large");
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f")), "first");
    EXPECT_EQ(namesIn(place), std::vector<std::string>{"f"});
}

}  // namespace
}  // namespace trelvan
