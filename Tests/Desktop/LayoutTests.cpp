#include "Desktop/DesktopTest.hpp"

#include <X11/XKBlib.h>
#include <X11/keysym.h>
#include <sys/wait.h>

#include <ostream>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);

/// A test that changes the keyboard layout and leaves the American one behind.
class LayoutTest : public DesktopTest {
  protected:
    void TearDown() override {
        lockGroup(0);
        setLayout({"us"});
        DesktopTest::TearDown();
    }

    void setLayout(const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"/usr/bin/setxkbmap"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        ChildProcess process(Launch{.arguments = command,
                                    .environment = desktop().environment(),
                                    .directory = desktop().folder(),
                                    .output = desktop().folder() / "setxkbmap.output",
                                    .errors = {}});
        const auto status = process.waitForEnd(timeout);
        ASSERT_TRUE(status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0)
            << readFile(desktop().folder() / "setxkbmap.output");
    }

    /// Makes another of the layouts the active one, as a switch in a panel does.
    void lockGroup(unsigned group) {
        XkbLockGroup(client().connection().get(), XkbUseCoreKbd, group);
        XSync(client().connection().get(), False);
    }

    /// Presses the button; the one key that must arrive for it.
    void expectStroke(KeyStroke stroke) {
        client().forget();
        trackball().click(extra);
        EXPECT_TRUE(client().waitForStroke(stroke));
        passSentinel();
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{stroke});
    }
};

struct LayoutCase {
    const char* name;
    std::vector<std::string> layout;
    const char* action;
    KeyStroke stroke;
};

void PrintTo(const LayoutCase& tested, std::ostream* out) {
    *out << tested.name;
}

class LetterTest : public LayoutTest, public testing::WithParamInterface<LayoutCase> {};

TEST_P(LetterTest, ActionArrivesAsItsLetter) {
    setLayout(GetParam().layout);
    useClient(Protocol::core);
    start(Settings().map(3, GetParam().action));
    expectStroke(GetParam().stroke);
}

const std::vector<std::string> spanish{"es"};
const std::vector<std::string> german{"de"};
const std::vector<std::string> french{"fr"};
const std::vector<std::string> dvorak{"us", "-variant", "dvorak"};

INSTANTIATE_TEST_SUITE_P(
    Layouts, LetterTest,
    testing::Values(LayoutCase{"SpanishCopy", spanish, "Copiar", {XK_c, ControlMask}},
                    LayoutCase{"SpanishUndo", spanish, "Deshacer", {XK_z, ControlMask}},
                    LayoutCase{"SpanishEmoji", spanish, "Emoji", {XK_period, ControlMask}},
                    LayoutCase{"GermanCopy", german, "Copiar", {XK_c, ControlMask}},
                    LayoutCase{"GermanUndo", german, "Deshacer", {XK_z, ControlMask}},
                    LayoutCase{"GermanLock", german, "Lock Workstation", {XK_l, Mod4Mask}},
                    LayoutCase{"DvorakCopy", dvorak, "Copiar", {XK_c, ControlMask}},
                    LayoutCase{"DvorakPaste", dvorak, "Pegar", {XK_v, ControlMask}},
                    LayoutCase{"DvorakCut", dvorak, "Cortar", {XK_x, ControlMask}},
                    LayoutCase{"DvorakUndo", dvorak, "Deshacer", {XK_z, ControlMask}},
                    LayoutCase{"DvorakEmoji", dvorak, "Emoji", {XK_period, ControlMask}},
                    LayoutCase{"DvorakLock", dvorak, "Lock Workstation", {XK_l, Mod4Mask}},
                    // The key of the semicolon, which types the point with Shift.
                    LayoutCase{"FrenchEmoji", french, "Emoji", {XK_semicolon, ControlMask | ShiftMask}}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(LayoutTest, LayoutChangedWhileTheProgramRuns_IsFollowed) {
    start(Settings().map(3, "Deshacer"));
    expectStroke({XK_z, ControlMask});
    for (const auto& layout : {german, dvorak, std::vector<std::string>{"us"}}) {
        setLayout(layout);
        useClient(Protocol::core);
        expectStroke({XK_z, ControlMask});
    }
}

TEST_F(LayoutTest, SecondLayoutMadeActive_IsFollowed) {
    setLayout({"us,de"});
    useClient(Protocol::core);
    start(Settings().map(3, "Deshacer"));
    expectStroke({XK_z, ControlMask});
    lockGroup(1);
    // Where the German keyboard has its Z; the client names keys by the first layout.
    expectStroke({XK_y, ControlMask});
}

TEST_F(LayoutTest, CyrillicLayout_LeavesTheLetterToTheLatinOneBesideIt) {
    setLayout({"de,ru"});
    useClient(Protocol::core);
    start(Settings().map(3, "Deshacer"));
    lockGroup(1);
    expectStroke({XK_z, ControlMask});
}

TEST_F(LayoutTest, CyrillicLayoutAlone_GetsTheLettersPlace) {
    setLayout({"ru"});
    useClient(Protocol::core);
    start(Settings().map(3, "Copiar"));
    expectStroke({XK_Cyrillic_es, ControlMask});
}

TEST_F(LayoutTest, HotKeyOfTheDesktop_IsPressedWhereTheLayoutHasItsLetter) {
    const auto shortcuts = desktop().folder() / "config/kglobalshortcutsrc";
    writeFile(shortcuts, "[plasmashell]\nactivate application launcher=Meta+Z,Meta,Launcher\n");
    setLayout(german);
    useClient(Protocol::core);
    start(Settings().map(3, "Launchpad"), {{"XDG_CURRENT_DESKTOP", "KDE"}});
    expectStroke({XK_z, Mod4Mask});
    std::filesystem::remove(shortcuts);
}

TEST_F(LayoutTest, RecordedShortcut_IsThePlaceInEveryLayout) {
    setLayout(german);
    useClient(Protocol::core);
    // The key that an American keyboard labels Z.
    start(Settings().map(
        3, "Atajo Personalizado",
        {{"shortcut", {{"keyCode", 6}, {"modifiersRawValue", 0x40000}, {"displayString", "⌃Z"}}}}));
    expectStroke({XK_y, ControlMask});
}

}  // namespace
}  // namespace trelvan::desktop
