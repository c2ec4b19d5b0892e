#include "Platform/Linux/Applications/ApplicationIdentity.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class ApplicationIdentityTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "identity-XXXXXX";
        folder_ = mkdtemp(name.data());
    }
    void TearDown() override { fs::remove_all(folder_); }

    [[nodiscard]] std::string entry(const std::string& name, const std::string& lines) const {
        const auto path = folder_ / name;
        std::ofstream(path) << "[Desktop Entry]\nType=Application\n" << lines;
        return path.string();
    }

    static long noParent(long /*process*/) { return 0; }

  private:
    fs::path folder_;
};

TEST_F(ApplicationIdentityTest, EntryIsKnownByItsClassItsIdAndItsProgram) {
    EXPECT_THAT(identityOf(entry("org.gnome.TextEditor.desktop",
                                 "Exec=/usr/bin/gnome-text-editor %U\nStartupWMClass=Gnome-Text\n"))
                    .names,
                ElementsAre("gnome-text", "org.gnome.texteditor", "texteditor", "gnome-text-editor"));
    EXPECT_THAT(identityOf(entry("pluma.desktop", "Exec=pluma %U\n")).names, ElementsAre("pluma"));
}

TEST_F(ApplicationIdentityTest, RunnerOfOthersNamesNoApplication) {
    EXPECT_THAT(identityOf(entry("notes.desktop", "Exec=python3 /usr/bin/notes\n")).names,
                ElementsAre("notes"));
    EXPECT_THAT(identityOf(entry("vi.desktop", "Exec=vim-editor\nTerminal=true\n")).names, ElementsAre("vi"));
}

TEST_F(ApplicationIdentityTest, ProgramIsKnownByItsName) {
    EXPECT_THAT(identityOf("/opt/Notes.AppImage").names, ElementsAre("notes.appimage"));
    EXPECT_THAT(identityOf("/nowhere/gone.desktop").names, IsEmpty());
}

TEST_F(ApplicationIdentityTest, EitherPartOfTheClassTellsTheWindow) {
    const ApplicationIdentity editor{.names = {"mousepad"}, .startupId = {}};
    EXPECT_TRUE(isWindowOf(editor, {.instanceName = "mousepad", .className = "Mousepad", .startupId = {}}));
    EXPECT_TRUE(isWindowOf(editor, {.instanceName = "x", .className = "Mousepad", .startupId = {}}));
    EXPECT_TRUE(isWindowOf(editor, {.instanceName = "mousepad", .className = "y", .startupId = {}}));
    EXPECT_FALSE(isWindowOf(editor, {.instanceName = "xterm", .className = "XTerm", .startupId = {}}));
    EXPECT_FALSE(isWindowOf(editor, {.instanceName = "mouse", .className = "pad", .startupId = {}}));
}

TEST_F(ApplicationIdentityTest, StartTellsTheWindowWhateverItsClass) {
    const ApplicationIdentity editor{.names = {"editor"}, .startupId = "trelvan-1-2"};
    EXPECT_TRUE(isWindowOf(editor, {.instanceName = "a", .className = "B", .startupId = "trelvan-1-2"}));
    EXPECT_FALSE(isWindowOf(editor, {.instanceName = "a", .className = "B", .startupId = "trelvan-1-3"}));
    // A window without an id is not that of an application without one.
    EXPECT_FALSE(isWindowOf({}, {}));
}

TEST_F(ApplicationIdentityTest, ProcessAndWhatItStartedTellTheWindow) {
    const ApplicationIdentity editor{.names = {}, .startupId = {}, .process = 100};
    const auto parentOf = [](long process) -> long {
        return process == 102 ? 101 : process == 101 ? 100 : 1;
    };
    const auto windowOf = [](long process) {
        return WindowTraits{.instanceName = "a", .className = "B", .startupId = {}, .process = process};
    };
    EXPECT_TRUE(isWindowOf(editor, windowOf(100), &noParent));
    EXPECT_TRUE(isWindowOf(editor, windowOf(102), parentOf));
    EXPECT_FALSE(isWindowOf(editor, windowOf(200), parentOf));
    EXPECT_FALSE(isWindowOf(editor, windowOf(0), parentOf));
    // No process was started: no process is the application's.
    EXPECT_FALSE(isWindowOf({}, windowOf(0), &noParent));
}

TEST_F(ApplicationIdentityTest, ParentComesFromTheSystem) {
    EXPECT_EQ(parentProcess(getpid()), getppid());
    EXPECT_EQ(parentProcess(0), 0);
    EXPECT_EQ(parentProcess(-5), 0);
}

}  // namespace
}  // namespace trelvan
