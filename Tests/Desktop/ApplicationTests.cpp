#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/FakeService.hpp"

#include <X11/keysym.h>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);

/// "Abrir Aplicación" with what a user may choose for it.
class ApplicationTest : public DesktopTest {
  protected:
    void SetUp() override {
        DesktopTest::SetUp();
        std::filesystem::remove(trace());
    }

    std::filesystem::path trace() { return desktop().folder() / "trace"; }

    std::filesystem::path file(const std::string& name, const std::string& content,
                               bool isExecutable = false) {
        const auto path = desktop().folder() / name;
        writeFile(path, content);
        std::filesystem::permissions(
            path, isExecutable ? std::filesystem::perms::owner_all : std::filesystem::perms::owner_read);
        return path;
    }

    /// A program that writes its arguments down, one a line.
    std::filesystem::path writer(const std::string& name) {
        return file(name, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + trace().string() + "'\n", true);
    }

    void open(const std::filesystem::path& path) {
        start(Settings().map(3, "Abrir Aplicación", {{"appPath", path.string()}}));
        trackball().click(extra);
    }

    bool wrote(const std::string& content) {
        return waitUntil([&] { return readFile(trace()) == content; });
    }
};

TEST_F(ApplicationTest, DesktopEntry_RunsItsCommandWithQuotesAndFieldCodes) {
    const auto program = writer("the writer");
    open(file("writer.desktop", "[Desktop Entry]\nType=Application\nName=The Writer\nExec=\"" +
                                    program.string() + "\" --caption %c \"two words\" 100%% %U\n"));
    EXPECT_TRUE(wrote("--caption\nThe Writer\ntwo words\n100%\n")) << readFile(trace());
    std::filesystem::remove(desktop().folder() / "writer.desktop");
}

TEST_F(ApplicationTest, AppImage_IsRunAsItIs) {
    open(writer("Writer-1.0-x86_64.AppImage"));
    EXPECT_TRUE(wrote("\n"));
}

TEST_F(ApplicationTest, AppImageWithoutPermission_IsNamedInTheLog) {
    open(file("Plain.AppImage", "#!/bin/sh\n"));
    EXPECT_TRUE(program().waitForLine("Plain.AppImage: no tiene permiso de ejecución"));
    std::filesystem::remove(desktop().folder() / "Plain.AppImage");
}

TEST_F(ApplicationTest, TerminalApplication_RunsInATerminal) {
    const auto program = writer("in-terminal");
    const auto terminal = desktop().folder() / "bin/x-terminal-emulator";
    writeFile(terminal, "#!/bin/sh\n[ \"$1\" = -e ] && shift && exec \"$@\" terminal\n");
    std::filesystem::permissions(terminal, std::filesystem::perms::owner_all);
    open(file("terminal.desktop",
              "[Desktop Entry]\nType=Application\nTerminal=true\nExec=" + program.string() + " a\n"));
    EXPECT_TRUE(wrote("a\nterminal\n")) << readFile(trace());
    std::filesystem::remove(terminal);
    std::filesystem::remove(desktop().folder() / "terminal.desktop");
}

TEST_F(ApplicationTest, EntryWhoseProgramIsNotInstalled_IsNamedInTheLog) {
    const auto program = writer("present");
    const auto entry =
        file("gone.desktop",
             "[Desktop Entry]\nType=Application\nTryExec=no-such-program\nExec=" + program.string() + "\n");
    open(entry);
    EXPECT_TRUE(this->program().waitForLine("gone.desktop: no se encuentra el programa no-such-program"));
    EXPECT_FALSE(std::filesystem::exists(trace()));
    std::filesystem::remove(entry);
}

TEST_F(ApplicationTest, EntryThatTheBusActivates_IsAskedOverTheBus) {
    const FakeService notes(desktop(), "org.example.MyNotes");
    const auto program = writer("not-run");
    const auto entry =
        file("org.example.MyNotes.desktop",
             "[Desktop Entry]\nType=Application\nDBusActivatable=true\nExec=" + program.string() + "\n");
    open(entry);
    EXPECT_TRUE(notes.waitForCall("/org/example/MyNotes Activate "));
    EXPECT_FALSE(std::filesystem::exists(trace()));
    std::filesystem::remove(entry);
}

TEST_F(ApplicationTest, EntryThatTheBusDoesNotKnow_RunsItsCommand) {
    const auto program = writer("run-instead");
    const auto entry =
        file("org.example.Unknown.desktop",
             "[Desktop Entry]\nType=Application\nDBusActivatable=true\nExec=" + program.string() + " b\n");
    open(entry);
    EXPECT_TRUE(wrote("b\n"));
    std::filesystem::remove(entry);
}

}  // namespace
}  // namespace trelvan::desktop
