#include "Desktop/DesktopTest.hpp"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>

#include <ostream>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);

struct StrokeCase {
    const char* name;
    const char* action;
    KeyStroke stroke;
};

void PrintTo(const StrokeCase& tested, std::ostream* out) {
    *out << tested.name;
}

class StrokeActionTest : public DesktopTest, public testing::WithParamInterface<StrokeCase> {};

TEST_P(StrokeActionTest, PressArrivesAsTheKeyThatApplicationsKnow) {
    start(Settings().map(3, GetParam().action));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(GetParam().stroke));
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{GetParam().stroke});
}

INSTANTIATE_TEST_SUITE_P(Actions, StrokeActionTest,
                         testing::Values(StrokeCase{"Copy", "Copiar", {XK_c, ControlMask}},
                                         StrokeCase{"Paste", "Pegar", {XK_v, ControlMask}},
                                         StrokeCase{"Cut", "Cortar", {XK_x, ControlMask}},
                                         StrokeCase{"Undo", "Deshacer", {XK_z, ControlMask}},
                                         StrokeCase{"Back", "Atrás", {XK_Left, Mod1Mask}},
                                         StrokeCase{"Forward", "Adelante", {XK_Right, Mod1Mask}},
                                         StrokeCase{"Screenshot", "Captura Completa", {XK_Print, 0}},
                                         StrokeCase{
                                             "ScreenshotOfAnArea", "Captura de Área", {XK_Print, ShiftMask}},
                                         StrokeCase{"Lock", "Lock Workstation", {XK_l, Mod4Mask}},
                                         StrokeCase{"VolumeUp", "Volumen +", {XF86XK_AudioRaiseVolume, 0}},
                                         StrokeCase{"VolumeDown", "Volumen -", {XF86XK_AudioLowerVolume, 0}},
                                         StrokeCase{"Mute", "Silencio", {XF86XK_AudioMute, 0}},
                                         StrokeCase{"Play", "Play/Pause", {XF86XK_AudioPlay, 0}}),
                         [](const auto& tested) { return tested.param.name; });

struct ClickCase {
    const char* name;
    const char* action;
    unsigned button;
};

void PrintTo(const ClickCase& tested, std::ostream* out) {
    *out << tested.name;
}

class ClickActionTest : public DesktopTest, public testing::WithParamInterface<ClickCase> {};

TEST_P(ClickActionTest, PressArrivesAsAClickOfTheOtherButton) {
    start(Settings().map(3, GetParam().action));
    const Position place = client().pointer();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, GetParam().button));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{GetParam().button});
    EXPECT_EQ(client().pointer(), place);
}

INSTANTIATE_TEST_SUITE_P(Actions, ClickActionTest,
                         testing::Values(ClickCase{"Left", "Click Izquierdo", 1},
                                         ClickCase{"Right", "Click Derecho", 3},
                                         ClickCase{"Middle", "Click Medio", 2}),
                         [](const auto& tested) { return tested.param.name; });

class ActionTest : public DesktopTest {
  protected:
    /// An executable that leaves a file behind when it runs.
    std::filesystem::path makeProgram(const std::filesystem::path& trace) {
        const auto path = desktop().folder() / "leave-a-trace";
        writeFile(path, "#!/bin/sh\n: > '" + trace.string() + "'\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    void expectOpened(const std::filesystem::path& folder) {
        // A file address or a plain path, with or without the last slash.
        const auto wasOpened = [&] {
            std::string line = desktop().opened();
            while (!line.empty() && (line.back() == '\n' || line.back() == '/')) line.pop_back();
            return line == folder.string() || line == "file://" + folder.string();
        };
        EXPECT_TRUE(waitUntil(wasOpened)) << "opened instead: " << desktop().opened();
    }
};

TEST_F(ActionTest, RecordedShortcutIsSentExactlyAsRecorded) {
    // The K key with Control, Shift and Command.
    start(Settings().map(
        3, "Atajo Personalizado",
        {{"shortcut", {{"keyCode", 40}, {"modifiersRawValue", 0x160000}, {"displayString", "⌃⇧⌘K"}}}}));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_k, ControlMask | ShiftMask | Mod4Mask}));
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{{XK_k, ControlMask | ShiftMask | Mod4Mask}}));
}

TEST_F(ActionTest, RecordedCommandShortcutIsNotTakenForTheActionOfTheSameKeys) {
    start(Settings().map(
        3, "Atajo Personalizado",
        {{"shortcut", {{"keyCode", 8}, {"modifiersRawValue", 0x100000}, {"displayString", "⌘C"}}}}));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke({XK_c, Mod4Mask}));
}

TEST_F(ActionTest, LaunchAppRunsTheProgram) {
    const auto trace = desktop().folder() / "trace";
    std::filesystem::remove(trace);
    start(Settings().map(3, "Abrir Aplicación", {{"appPath", makeProgram(trace).string()}}));
    trackball().click(extra);
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(trace); }));
    EXPECT_TRUE(program().waitForLine("Abriendo app: leave-a-trace"));
}

TEST_F(ActionTest, LaunchAppOfNothingLeavesTheProgramServing) {
    start(Settings().map(3, "Abrir Aplicación", {{"appPath", "/nowhere/at/all"}}).map(4, "Copiar"));
    trackball().click(extra);
    trackball().click(xButton(4));
    EXPECT_TRUE(client().waitForStroke({XK_c, ControlMask}));
    EXPECT_TRUE(program().isRunning());
}

TEST_F(ActionTest, OpenFolderOpensTheFolder) {
    const auto folder = desktop().folder() / "data";
    start(Settings().map(3, "Abrir carpeta", {{"folderPath", folder.string()}}));
    trackball().click(extra);
    expectOpened(folder);
}

TEST_F(ActionTest, OpenFolderThatIsGoneOpensTheHomeFolder) {
    start(Settings().map(3, "Abrir carpeta", {{"folderPath", "/nowhere/at/all"}}));
    trackball().click(extra);
    expectOpened(desktop().folder() / "home");
    EXPECT_TRUE(program().isRunning());
}

TEST_F(ActionTest, MoveDesktopGoesToTheNeighbour) {
    start(Settings().map(3, "Mover escritorio derecha").map(4, "Mover escritorio izquierda"));
    const auto isOn = [&](long number) {
        auto& connection = client().connection();
        return waitUntil([&] {
            return connection.property(connection.root(), "_NET_CURRENT_DESKTOP") ==
                   std::vector<long>{number};
        });
    };
    trackball().click(extra);
    EXPECT_TRUE(isOn(1));
    trackball().click(xButton(4));
    EXPECT_TRUE(isOn(0));
}

}  // namespace
}  // namespace trelvan::desktop
