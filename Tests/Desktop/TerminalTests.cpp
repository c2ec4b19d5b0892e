#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace trelvan::desktop {
namespace {

constexpr int copyButton = xButton(3);
constexpr int pasteButton = xButton(4);
constexpr int undoButton = xButton(6);
constexpr int cutButton = xButton(7);

Settings textActions() {
    return Settings().map(3, "Copiar").map(4, "Pegar").map(6, "Deshacer").map(7, "Cortar");
}

class TerminalClassTest : public DesktopTest {};

TEST_F(TerminalClassTest, TerminalInFrontGetsItsOwnCombinations) {
    useClient(Protocol::core, "Xfce4-terminal");
    start(textActions());
    for (const int button : {copyButton, pasteButton, undoButton, cutButton}) trackball().click(button);
    passSentinel();
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() >= 3; }));
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask | ShiftMask},
                                                          {XK_v, ControlMask | ShiftMask},
                                                          {XK_c, ControlMask | ShiftMask}}));
    EXPECT_TRUE(program().waitForLine("'Deshacer' no envía nada a xfce4-terminal"));
}

TEST_F(TerminalClassTest, ApplicationThatComesAfterATerminalGetsTheUsualOnes) {
    useClient(Protocol::core, "Alacritty");
    start(textActions());
    ClientWindow editor(desktop().displayName(), Protocol::core, "Editor", "Mousepad");
    activate(editor);
    // What the program is told before this it knows when the next button comes.
    trackball().click(sentinelButton);
    EXPECT_TRUE(editor.waitForButton(Kind::buttonRelease, sentinelButton, 1));
    trackball().click(copyButton);
    EXPECT_TRUE(editor.waitForStroke({XK_c, ControlMask}));
    EXPECT_EQ(editor.strokes(), (std::vector<KeyStroke>{{XK_c, ControlMask}}));
    EXPECT_TRUE(waitUntil([&] { return isNoKeyDown(); }));
}

/// A real xterm with a program in it that writes down every byte and signal that it gets.
class XtermTest : public DesktopTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(::access("/usr/bin/xterm", X_OK), 0) << "xterm is not installed";
        DesktopTest::SetUp();
        std::filesystem::remove(received());
        const auto reader = desktop().folder() / "reader";
        // Signals become words; a terminal in this mode hands each byte on as it comes.
        writeFile(reader, "#!/bin/bash\nexec 3>> '" + received().string() +
                              "'\ntrap 'printf \"<INT>\" >&3' INT\ntrap 'printf \"<TSTP>\" >&3' TSTP\n"
                              "stty -icanon -echo min 1\nyes SELECTED | head -40\nprintf '<READY>' >&3\n"
                              "while :; do IFS= read -r -n 1 byte && printf '%s' \"$byte\" >&3; done\n");
        std::filesystem::permissions(reader, std::filesystem::perms::owner_all);
        start(textActions());
        const auto before = windows();
        terminal_ = std::make_unique<ChildProcess>(
            Launch{.arguments = {"/usr/bin/xterm", "-geometry", "80x40+60+60", "-e", reader.string()},
                   .environment = desktop().environment(),
                   .directory = desktop().folder(),
                   .output = desktop().folder() / "xterm.output",
                   .errors = {}});
        ASSERT_TRUE(waitUntil([&] { return bytes() == "<READY>"; })) << bytes();
        window_ = 0;
        ASSERT_TRUE(waitUntil([&] {
            for (const long one : windows()) {
                if (std::ranges::find(before, one) == before.end()) window_ = static_cast<Window>(one);
            }
            return window_ != 0;
        }));
        client().connection().activate(window_);
        ASSERT_TRUE(waitUntil([&] {
            return client().connection().property(client().connection().root(), "_NET_ACTIVE_WINDOW") ==
                   std::vector<long>{static_cast<long>(window_)};
        }));
    }
    void TearDown() override {
        terminal_.reset();
        if (!IsSkipped()) DesktopTest::TearDown();
    }

    std::filesystem::path received() { return desktop().folder() / "received"; }
    std::string bytes() { return readFile(received()); }
    std::vector<long> windows() {
        return client().connection().property(client().connection().root(), "_NET_CLIENT_LIST");
    }
    /// Types a letter on the hardware's keyboard: what was typed before it has arrived by then.
    std::string bytesWithMark() {
        EXPECT_TRUE(waitUntil([&] { return isNoKeyDown(); }));
        desktop().keyboard().keyStroke(client().keyCode(XK_q));
        EXPECT_TRUE(waitUntil([&] { return bytes().ends_with('q'); })) << bytes();
        return bytes();
    }
    /// Selects a word as a user does.
    void selectWord() {
        client().warpPointer({90, 250});
        trackball().click(1);
        trackball().click(1);
    }

  private:
    std::unique_ptr<ChildProcess> terminal_;
    Window window_ = 0;
};

TEST_F(XtermTest, CopyCutAndUndoSendNothingAndInterruptNobody) {
    for (const int button : {copyButton, cutButton, undoButton}) trackball().click(button);
    for (const auto* action : {"Copiar", "Cortar", "Deshacer"})
        EXPECT_TRUE(program().waitForLine("'" + std::string(action) + "' no envía nada a xterm"));
    EXPECT_EQ(bytesWithMark(), "<READY>q");
}

TEST_F(XtermTest, PasteInsertsWhatIsSelected) {
    selectWord();
    trackball().click(pasteButton);
    EXPECT_TRUE(waitUntil([&] { return bytes() == "<READY>SELECTED"; })) << bytes();
    EXPECT_EQ(bytesWithMark(), "<READY>SELECTEDq");
}

}  // namespace
}  // namespace trelvan::desktop
