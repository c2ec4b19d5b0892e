#include "Platform/Linux/HeldPageFile.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <string>

namespace trelvan {
namespace {

class HeldPageFileTest : public testing::Test {
  protected:
    HeldPageFileTest() {
        std::string name = testing::TempDir() + "held-page-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
    }
    ~HeldPageFileTest() override { std::filesystem::remove_all(folder); }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    std::string folder;
};

TEST_F(HeldPageFileTest, FirstPage_OwesNothingAndIsNamedForItsDisplay) {
    HeldPageFile file(folder, ":50.0");
    EXPECT_FALSE(file.leftOver().any());
    EXPECT_FALSE(owedBy(file.page()).any());
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(HeldPageFileTest, PageThatNobodyHoldsAnyMore_IsReadOnce) {
    {
        HeldPageFile killed(folder, ":50");
        killed.page().byPoster.keys.set(37, true);
        killed.page().putBack.set(50, true);
        killed.page().byTap.buttons.set(1, true);
        killed.page().byPoster.buttons.set(3, true);
        killed.page().lent.set(10, true);
    }
    HeldPageFile next(folder, ":50");
    EXPECT_EQ(next.leftOver().keys, CodeSet().set(37).set(50));
    EXPECT_EQ(next.leftOver().buttons, CodeSet().set(1).set(3));
    EXPECT_EQ(next.leftOver().lent, CodeSet().set(10));
    EXPECT_FALSE(owedBy(next.page()).any());
    HeldPageFile third(folder, ":50");
    EXPECT_FALSE(third.leftOver().any());
}

TEST_F(HeldPageFileTest, PageInUse_IsLeftAlone) {
    HeldPageFile running(folder, ":50");
    running.page().byPoster.keys.set(37, true);
    HeldPageFile second(folder, ":50");
    EXPECT_FALSE(second.leftOver().any());
    EXPECT_TRUE(running.page().byPoster.keys.test(37));
    EXPECT_EQ(files(), (std::set<std::string>{"trelvan-held:50-0", "trelvan-held:50-1"}));
}

TEST_F(HeldPageFileTest, PagesOfOtherDisplays_AreLeftAlone) {
    { HeldPageFile(folder, ":51").page().byPoster.keys.set(37, true); }
    HeldPageFile file(folder, ":50");
    EXPECT_FALSE(file.leftOver().any());
}

TEST_F(HeldPageFileTest, SecondAbandonedPage_IsReadAndRemoved) {
    {
        HeldPageFile first(folder, ":50");
        HeldPageFile second(folder, ":50");
        second.page().byPoster.keys.set(37, true);
    }
    HeldPageFile file(folder, ":50");
    EXPECT_TRUE(file.leftOver().keys.test(37));
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(HeldPageFileTest, RemovedPage_LeavesNoFile) {
    HeldPageFile file(folder, ":50");
    file.remove();
    EXPECT_EQ(files(), std::set<std::string>{});
}

TEST_F(HeldPageFileTest, Removing_DoesNotTouchASuccessorsFile) {
    HeldPageFile file(folder, ":50");
    file.remove();
    HeldPageFile next(folder, ":50");
    file.remove();
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held:50-0"});
}

TEST_F(HeldPageFileTest, FileOfAnotherVersionOrSize_IsNotRead) {
    for (const std::string& content : {std::string("short"), std::string(sizeof(HeldPage), '\xFF')}) {
        std::ofstream(folder + "/trelvan-held:50-0", std::ios::binary) << content;
        HeldPageFile file(folder, ":50");
        EXPECT_FALSE(file.leftOver().any());
        EXPECT_FALSE(owedBy(file.page()).any());
        file.remove();
    }
}

TEST_F(HeldPageFileTest, FolderThatCannotBe_GivesAPageInMemory) {
    HeldPageFile file("/dev/null/nowhere", ":50");
    EXPECT_EQ(file.descriptor(), -1);
    file.page().byPoster.keys.set(37, true);
    EXPECT_TRUE(owedBy(file.page()).keys.test(37));
    file.remove();
}

TEST_F(HeldPageFileTest, DisplayWithSlashes_StaysInTheFolder) {
    const HeldPageFile file(folder, "/tmp/launch/org:0");
    EXPECT_EQ(files(), std::set<std::string>{"trelvan-held_tmp_launch_org:0-0"});
}

}  // namespace
}  // namespace trelvan
