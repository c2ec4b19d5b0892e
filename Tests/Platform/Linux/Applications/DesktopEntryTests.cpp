#include "Platform/Linux/Applications/DesktopEntry.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

using Words = std::vector<std::string>;

Words wordsOf(const std::string& exec) {
    const auto entry = parseDesktopEntry(
        "[Desktop Entry]\nType=Application\nName=My Notes\nIcon=notes\nExec=" + exec + "\n");
    return entry ? commandLine(*entry, "/apps/notes.desktop") : Words{"(no entry)"};
}

TEST(DesktopEntry, FieldCodes_AreExpandedOrLeftOut) {
    EXPECT_EQ(wordsOf("notes %U"), (Words{"notes"}));
    EXPECT_EQ(wordsOf("notes %i --caption %c %k"),
              (Words{"notes", "--icon", "notes", "--caption", "My Notes", "/apps/notes.desktop"}));
    EXPECT_EQ(wordsOf("notes 100%% --open=%f"), (Words{"notes", "100%", "--open="}));
}

TEST(DesktopEntry, QuotedArguments_KeepTheirBlanksAndEscapes) {
    EXPECT_EQ(wordsOf(R"("/opt/my app/run" "say \\"hi\\"" "")"),
              (Words{"/opt/my app/run", R"(say "hi")", ""}));
    EXPECT_EQ(wordsOf(R"(sh -c "echo \\$HOME")"), (Words{"sh", "-c", "echo $HOME"}));
}

TEST(DesktopEntry, OpenQuote_GivesNoCommand) {
    EXPECT_EQ(wordsOf("\"notes"), Words{});
}

TEST(DesktopEntry, OtherGroupsAndComments_DoNotCount) {
    const auto entry = parseDesktopEntry(
        "# comment\n[Desktop Entry]\nType = Application\nExec=run\nPath=/srv\nTerminal=true\n"
        "[Desktop Action new]\nExec=other\n");
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->exec, "run");
    EXPECT_EQ(entry->path, "/srv");
    EXPECT_TRUE(entry->terminal);
    EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nURL=x\n").has_value());
}

TEST(DesktopEntry, ProgramToTryAndBusActivation_AreRead) {
    const auto entry = parseDesktopEntry(
        "[Desktop Entry]\nType=Application\nTryExec=/opt/notes/run\nDBusActivatable=true\n");
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->tryExec, "/opt/notes/run");
    EXPECT_TRUE(entry->dbusActivatable);
    EXPECT_EQ(desktopEntryId("/usr/share/applications/org.example.my-notes.desktop"), "org.example.my-notes");
    EXPECT_EQ(applicationObjectPath("org.example.my-notes"), "/org/example/my_notes");
}

/// A data folder with entries, named by the environment while it lives.
class DataFolder {
  public:
    DataFolder() {
        std::string name = std::filesystem::temp_directory_path() / "trelvan-entries-XXXXXX";
        path = mkdtemp(name.data());
        std::filesystem::create_directories(path / "applications");
        setenv("XDG_DATA_HOME", path.c_str(), 1);
        setenv("XDG_DATA_DIRS", "/nonexistent", 1);
    }
    ~DataFolder() {
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_DATA_DIRS");
        std::filesystem::remove_all(path);
    }
    void add(const std::string& id, const std::string& more) const {
        std::ofstream(path / "applications" / (id + ".desktop")) << "[Desktop Entry]\nType=Application\n"
                                                                 << more;
    }
    std::filesystem::path path;
};

TEST(DesktopEntry, InstalledEntry_IsFoundById) {
    const DataFolder folder;
    folder.add("org.example.Notes", "Exec=x\n");
    EXPECT_EQ(findDesktopEntry("org.example.Notes"), folder.path / "applications/org.example.Notes.desktop");
    EXPECT_EQ(findDesktopEntry("org.example.Other"), std::nullopt);
    EXPECT_EQ(findDesktopEntry("../applications/org.example.Notes"), std::nullopt);
}

TEST(DesktopEntry, EntryWithoutACommand_CountsOnlyWhenTheBusStartsIt) {
    const DataFolder folder;
    folder.add("org.example.Empty", "");
    folder.add("org.example.Bus", "DBusActivatable=true\n");
    EXPECT_EQ(findDesktopEntry("org.example.Empty"), std::nullopt);
    EXPECT_EQ(findDesktopEntry("org.example.Bus"), folder.path / "applications/org.example.Bus.desktop");
}

TEST(DesktopEntry, HiddenEntry_CountsAsNotInstalled) {
    const DataFolder folder;
    folder.add("org.example.Gone", "Exec=x\nHidden=true\n");
    EXPECT_EQ(findDesktopEntry("org.example.Gone"), std::nullopt);
}

}  // namespace
}  // namespace trelvan
