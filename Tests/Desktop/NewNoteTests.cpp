#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <memory>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
constexpr KeyStroke newDocument{XK_n, ControlMask};

/// An editor whose window appears when the test says so, and an application in front meanwhile.
class NewNoteTest : public DesktopTest {
  protected:
    void SetUp() override {
        DesktopTest::SetUp();
        std::filesystem::remove(trace());
        std::filesystem::create_directories(applications());
    }
    void TearDown() override {
        editor_.reset();
        std::filesystem::remove_all(applications());
        DesktopTest::TearDown();
    }

    std::filesystem::path applications() { return desktop().folder() / "data/applications"; }
    std::filesystem::path trace() { return desktop().folder() / "trace"; }

    /// Installs an application that writes down that it was started, and does nothing more.
    void install(const std::string& id, const std::string& more = "") {
        const auto program = desktop().folder() / ("start-" + id);
        writeFile(program, "#!/bin/sh\necho '" + id + "' >> '" + trace().string() + "'\n" +
                               "echo \"$DESKTOP_STARTUP_ID\" > '" + trace().string() + ".id'\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        writeFile(applications() / (id + ".desktop"),
                  "[Desktop Entry]\nType=Application\nExec=" + program.string() + "\n" + more);
    }
    bool wasStarted(const std::string& id) {
        return waitUntil([&] { return readFile(trace()) == id + "\n"; });
    }
    /// The editor's window comes up and takes the focus.
    ClientWindow& openEditor(const std::string& windowClass) {
        editor_ =
            std::make_unique<ClientWindow>(desktop().displayName(), Protocol::core, "Editor", windowClass);
        return *editor_;
    }

    /// With no editors but those that the test installs.
    void pressNewNote(std::map<std::string, std::string> more = {}) {
        more["XDG_DATA_DIRS"] = "/nonexistent";
        start(Settings().map(3, "New Note").map(4, "Adelante"), more);
        trackball().click(extra);
    }
    /// The window has got all that was typed before this.
    static void expectOnlyStroke(ClientWindow& window, HardwareDevice& trackball, KeyStroke stroke) {
        EXPECT_TRUE(window.waitForStroke(stroke));
        trackball.click(xButton(4));
        EXPECT_TRUE(window.waitForStroke({XK_Right, Mod1Mask}));
        EXPECT_EQ(window.strokes(), (std::vector<KeyStroke>{stroke, {XK_Right, Mod1Mask}}));
    }

  private:
    std::unique_ptr<ClientWindow> editor_;
};

TEST_F(NewNoteTest, EditorThatStartsSlowlyGetsTheKeysAndNobodyElse) {
    install("org.gnome.TextEditor", "StartupWMClass=Slow-Editor\n");
    pressNewNote();
    ASSERT_TRUE(wasStarted("org.gnome.TextEditor"));
    // Far longer than the application in front would once have been given.
    EXPECT_FALSE(client().waitForStroke(newDocument, std::chrono::milliseconds{700}));
    EXPECT_TRUE(client().strokes().empty());
    expectOnlyStroke(openEditor("Slow-Editor"), trackball(), newDocument);
    EXPECT_TRUE(client().strokes().empty());
}

TEST_F(NewNoteTest, AnotherWindowThatComesToTheFrontIsNotTypedInto) {
    install("org.gnome.TextEditor");
    pressNewNote();
    ASSERT_TRUE(wasStarted("org.gnome.TextEditor"));
    {
        ClientWindow other(desktop().displayName(), Protocol::core, "Other", "Other-Program");
        EXPECT_FALSE(other.waitForStroke(newDocument, std::chrono::milliseconds{300}));
    }
    expectOnlyStroke(openEditor("org.gnome.TextEditor"), trackball(), newDocument);
}

TEST_F(NewNoteTest, EditorThatComesTooLateGetsNothing) {
    install("org.gnome.TextEditor");
    pressNewNote();
    EXPECT_TRUE(program().waitForLine("org.gnome.TextEditor.desktop no recibió el foco a tiempo"));
    ClientWindow& editor = openEditor("org.gnome.TextEditor");
    trackball().click(xButton(4));
    EXPECT_TRUE(editor.waitForStroke({XK_Right, Mod1Mask}));
    EXPECT_EQ(editor.strokes(), (std::vector<KeyStroke>{{XK_Right, Mod1Mask}}));
}

TEST_F(NewNoteTest, EditorThatRunsAndIsRaisedGetsTheKeys) {
    install("org.gnome.TextEditor");
    ClientWindow& editor = openEditor("org.gnome.TextEditor");
    useClient(Protocol::core);
    pressNewNote();
    ASSERT_TRUE(wasStarted("org.gnome.TextEditor"));
    EXPECT_FALSE(editor.waitForStroke(newDocument, std::chrono::milliseconds{300}));
    editor.connection().activate(editor.window());
    expectOnlyStroke(editor, trackball(), newDocument);
    EXPECT_TRUE(client().strokes().empty());
}

TEST_F(NewNoteTest, EditorThatIsInFrontAlreadyGetsTheKeysAtOnce) {
    install("org.gnome.TextEditor");
    useClient(Protocol::core, "org.gnome.TextEditor");
    pressNewNote();
    EXPECT_TRUE(client().waitForStroke(newDocument));
}

TEST_F(NewNoteTest, EditorThatNamesItsStartIsKnownWhateverItsClass) {
    install("org.gnome.TextEditor");
    pressNewNote();
    ASSERT_TRUE(wasStarted("org.gnome.TextEditor"));
    const auto idFile = trace().string() + ".id";
    ASSERT_TRUE(waitUntil([&] { return readFile(idFile).size() > 1; }));
    std::string id = readFile(idFile);
    id.pop_back();
    ClientWindow& editor = openEditor("Something-Else");
    // The window manager gives a new window the focus in its own time.
    activate(editor);
    EXPECT_TRUE(editor.strokes().empty());
    // Named only once something else is in front: the program types as soon as it knows the window there.
    activate(client());
    passSentinel();
    editor.connection().setText(editor.window(), "_NET_STARTUP_ID", id);
    activate(editor);
    EXPECT_TRUE(editor.waitForStroke(newDocument));
    EXPECT_TRUE(client().strokes().empty());
}

TEST_F(NewNoteTest, EditorOfTheDesktopGoesBeforeANoteTaker) {
    install("org.gnome.Notes");
    install("org.xfce.mousepad");
    pressNewNote({{"XDG_CURRENT_DESKTOP", "XFCE"}});
    EXPECT_TRUE(wasStarted("org.xfce.mousepad"));
}

TEST_F(NewNoteTest, WithoutAnyEditorNothingIsTyped) {
    pressNewNote();
    EXPECT_TRUE(program().waitForLine("App no encontrada: com.apple.Notes"));
    EXPECT_FALSE(client().waitForStroke(newDocument, std::chrono::milliseconds{700}));
    EXPECT_TRUE(client().strokes().empty());
}

}  // namespace
}  // namespace trelvan::desktop
