#include "Platform/Linux/Guard/GuardWatch.hpp"
#include "Platform/Linux/XTest/PressedStateFile.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <string>

namespace trelvan {
namespace {

/// A user that is neither this one nor the superuser.
constexpr uid_t somebody = 65534;

class PressedStateFileTest : public testing::Test {
  protected:
    PressedStateFileTest() {
        std::string name = testing::TempDir() + "held-page-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
    }
    ~PressedStateFileTest() override { std::filesystem::remove_all(folder); }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    std::string folder;
};

TEST_F(PressedStateFileTest, FirstPage_OwesNothingAndIsNamedForItsDisplay) {
    PressedStateFile file(folder, ":50.0");
    EXPECT_FALSE(file.leftOver().any());
    EXPECT_FALSE(pendingReleasesIn(file.page()).any());
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(PressedStateFileTest, PageThatNobodyHoldsAnyMore_IsReadOnce) {
    {
        PressedStateFile killed(folder, ":50");
        killed.page().byPoster.keys.set(37, true);
        killed.page().putBack.set(50, true);
        killed.page().byTap.buttons.set(1, true);
        killed.page().byPoster.buttons.set(3, true);
        killed.page().lent.set(10, true);
    }
    PressedStateFile next(folder, ":50");
    EXPECT_EQ(next.leftOver().keys, CodeSet().set(37).set(50));
    EXPECT_EQ(next.leftOver().buttons, CodeSet().set(1).set(3));
    EXPECT_EQ(next.leftOver().lent, CodeSet().set(10));
    EXPECT_FALSE(pendingReleasesIn(next.page()).any());
    PressedStateFile third(folder, ":50");
    EXPECT_FALSE(third.leftOver().any());
}

TEST_F(PressedStateFileTest, PageInUse_IsLeftAlone) {
    PressedStateFile running(folder, ":50");
    running.page().byPoster.keys.set(37, true);
    PressedStateFile second(folder, ":50");
    EXPECT_FALSE(second.leftOver().any());
    EXPECT_TRUE(running.page().byPoster.keys.test(37));
    EXPECT_EQ(files(), (std::set<std::string>{"trelvan-held:50-0", "trelvan-held:50-1"}));
}

TEST_F(PressedStateFileTest, PagesOfOtherDisplays_AreLeftAlone) {
    { PressedStateFile(folder, ":51").page().byPoster.keys.set(37, true); }
    PressedStateFile file(folder, ":50");
    EXPECT_FALSE(file.leftOver().any());
}

TEST_F(PressedStateFileTest, SecondAbandonedPage_IsReadAndRemoved) {
    {
        PressedStateFile first(folder, ":50");
        PressedStateFile second(folder, ":50");
        second.page().byPoster.keys.set(37, true);
    }
    PressedStateFile file(folder, ":50");
    EXPECT_TRUE(file.leftOver().keys.test(37));
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(PressedStateFileTest, RemovedPage_LeavesNoFile) {
    PressedStateFile file(folder, ":50");
    file.remove();
    EXPECT_EQ(files(), std::set<std::string>{});
}

TEST_F(PressedStateFileTest, Removing_DoesNotTouchASuccessorsFile) {
    PressedStateFile file(folder, ":50");
    file.remove();
    PressedStateFile next(folder, ":50");
    file.remove();
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(PressedStateFileTest, FileOfAnotherVersionOrSize_IsNotRead) {
    for (const std::string& content : {std::string("short"), std::string(sizeof(PressedState), '\xFF')}) {
        std::ofstream(folder + "/trelvan-held:50-0", std::ios::binary) << content;
        PressedStateFile file(folder, ":50");
        EXPECT_FALSE(file.leftOver().any());
        EXPECT_FALSE(pendingReleasesIn(file.page()).any());
        file.remove();
    }
}

TEST_F(PressedStateFileTest, FolderThatCannotBe_GivesAPageInMemory) {
    PressedStateFile file("/dev/null/nowhere", ":50");
    EXPECT_EQ(file.path(), "");
    file.page().byPoster.keys.set(37, true);
    EXPECT_TRUE(pendingReleasesIn(file.page()).keys.test(37));
    file.remove();
}

TEST_F(PressedStateFileTest, FolderThatOthersMayWrite_GivesAPageInMemory) {
    for (const auto mode : {0770, 0707, 0777}) {
        std::filesystem::permissions(folder, static_cast<std::filesystem::perms>(mode));
        PressedStateFile file(folder, ":50");
        EXPECT_EQ(file.path(), "") << mode;
        EXPECT_EQ(files(), std::set<std::string>{});
    }
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a folder away";
    std::filesystem::permissions(folder, static_cast<std::filesystem::perms>(0755));
    ASSERT_EQ(chown(folder.c_str(), somebody, somebody), 0);
    PressedStateFile file(folder, ":50");
    EXPECT_EQ(file.path(), "");
}

TEST_F(PressedStateFileTest, FileThatOthersMayChange_IsLeftAlone) {
    const auto expectLeftAlone = [&](const char* what) {
        PressedStateFile file(folder, ":50");
        EXPECT_EQ(file.path(), folder + "/trelvan-held:50-1") << what;
        EXPECT_FALSE(file.leftOver().any()) << what;
        file.remove();
        EXPECT_TRUE(files().contains("trelvan-held:50-0")) << what;
    };
    const std::string first = folder + "/trelvan-held:50-0";
    // A page of the right size that owes something.
    { PressedStateFile(folder, ":50").page().byPoster.keys.set(37, true); }
    for (const auto mode : {0620, 0602, 0640, 0604}) {
        std::filesystem::permissions(first, static_cast<std::filesystem::perms>(mode));
        expectLeftAlone("permissions");
    }
    std::filesystem::permissions(first, static_cast<std::filesystem::perms>(0600));
    std::filesystem::create_hard_link(first, folder + "/second-name");
    expectLeftAlone("two names");
    std::filesystem::remove(first);
    std::filesystem::create_symlink(folder + "/second-name", first);
    expectLeftAlone("symbolic link");
    std::filesystem::remove(first);
    std::filesystem::create_directory(first);
    expectLeftAlone("folder");
    std::filesystem::remove(first);
    ASSERT_EQ(mkfifo(first.c_str(), 0600), 0);
    expectLeftAlone("pipe");
    std::filesystem::remove(first);
}

TEST_F(PressedStateFileTest, FileOfAnotherUser_IsLeftAlone) {
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file away";
    { PressedStateFile(folder, ":50").page().byPoster.keys.set(37, true); }
    ASSERT_EQ(chown((folder + "/trelvan-held:50-0").c_str(), somebody, somebody), 0);
    PressedStateFile file(folder, ":50");
    EXPECT_EQ(file.path(), folder + "/trelvan-held:50-1");
    EXPECT_FALSE(file.leftOver().any());
    EXPECT_TRUE(files().contains("trelvan-held:50-0"));
}

TEST_F(PressedStateFileTest, PageThatIsHandedOn_IsTheSamePage) {
    for (const std::string& place : {folder, std::string("/dev/null/nowhere")}) {
        PressedStateFile file(place, ":50");
        const auto other = PressedStateFile::handedOn(dup(file.descriptor()), file.path());
        ASSERT_NE(other, nullptr);
        file.page().byPoster.keys.set(37, true);
        EXPECT_TRUE(pendingReleasesIn(other->page()).keys.test(37));
        other->remove();
        EXPECT_EQ(files(), std::set<std::string>{});
    }
}

TEST_F(PressedStateFileTest, WhatIsNoPage_IsNotTaken) {
    const std::string path = folder + "/something";
    std::ofstream(path) << "short";
    EXPECT_EQ(PressedStateFile::handedOn(open(path.c_str(), O_RDWR | O_CLOEXEC), path), nullptr);
    EXPECT_EQ(PressedStateFile::handedOn(-1, path), nullptr);
    EXPECT_EQ(PressedStateFile::handedOn(open("/dev/null", O_RDWR | O_CLOEXEC), ""), nullptr);
}

TEST_F(PressedStateFileTest, GuardThatFindsNoServer_RemovesThePageOfAProgramThatHasEnded) {
    const char* former = std::getenv("DISPLAY");
    const std::string display = former != nullptr ? former : "";
    setenv("DISPLAY", ":4999", 1);
    PressedStateFile file(folder, ":4999");
    std::array<int, 2> ends{-1, -1};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    close(ends[0]);
    watchOver(file, ends[1]);
    close(ends[1]);
    EXPECT_EQ(files(), std::set<std::string>{});
    if (former != nullptr) {
        setenv("DISPLAY", display.c_str(), 1);
    } else {
        unsetenv("DISPLAY");
    }
}

TEST_F(PressedStateFileTest, DisplayWithSlashes_StaysInTheFolder) {
    const PressedStateFile file(folder, "/tmp/launch/org:0");
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held_tmp_launch_org:0-0"});
}

}  // namespace
}  // namespace trelvan
