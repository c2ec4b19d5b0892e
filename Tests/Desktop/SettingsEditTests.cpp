// The settings file in the hands of others.

#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <filesystem>
#include <string>

namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};
const KeyStroke paste{XK_v, ControlMask};

class SettingsEditTest : public DesktopTest {
  protected:
    /// Presses the mapped button until the stroke arrives; the press after an edit may come too early.
    bool presses(const KeyStroke& stroke) {
        client().forget();
        return waitUntil([&] {
            trackball().click(extra);
            return client().waitForStroke(stroke, std::chrono::milliseconds{300});
        });
    }
    void edit(const std::string& text) {
        const auto folder = std::filesystem::read_symlink("/proc/" + std::to_string(program().id()) + "/cwd");
        writeFile(folder / "config" / "settings.json", text);
    }
};

TEST_F(SettingsEditTest, ProfilesEditedByHand_AreInForceAtOnceAndSurviveTheNextSave) {
    start(Settings().map(3, "Copiar"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    auto edited = nlohmann::json::parse(Settings().map(3, "Pegar").text());
    // As a person writes it, with a value that the program writes back.
    edited["trackball_profiles"] =
        nlohmann::json::parse(edited["trackball_profiles"]["utf8"].get<std::string>());
    edited["trackball_mouse_speed"] = 1.8;
    edit(edited.dump());
    EXPECT_TRUE(presses(paste));
    EXPECT_TRUE(
        waitUntil([&] { return program().storedSettings().value("trackball_mouse_speed", 0.0) == 1.0; }));
    EXPECT_EQ(program().storedSettings()["trackball_profiles"], edited["trackball_profiles"]);
}

TEST_F(SettingsEditTest, UnfinishedEdit_LeavesTheButtonsAndIsNamedInTheLog) {
    start(Settings().map(3, "Copiar"));
    edit("{\n  \"trackball_profiles\": [\n");
    EXPECT_TRUE(program().waitForLine("línea 3, columna 1"));
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    edit(Settings().map(3, "Pegar").text());
    EXPECT_TRUE(presses(paste));
}

TEST_F(SettingsEditTest, NotANumberUnderASpeed_LeavesTheProgramRunning) {
    start(Settings()
              .map(3, "Copiar")
              .set("trackball_mouse_speed", {{"double", "nan"}})
              .set("trackball_scroll_speed_vertical", {{"double", "nan"}})
              .set("trackball_scroll_speed_horizontal", {{"double", "inf"}}));
    trackball().move(9, 9);
    trackball().scrollVertical(1);
    client().forget();
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    EXPECT_TRUE(program().isRunning());
}

TEST_F(SettingsEditTest, DamagedFile_IsNamedOnTheTerminalInItsLanguage) {
    auto environment = desktop().environment();
    environment["DISPLAY"] = ":12345";
    environment["LANG"] = "es_ES.UTF-8";
    const auto folder = desktop().folder() / "damaged";
    std::filesystem::create_directory(folder);
    writeFile(folder / "settings.json", "{\n  \"a\": oops\n}");
    const ProgramResult asked =
        runProgram(desktop(), {"explain", "--button", "3", "--config", folder.string()}, environment);
    EXPECT_EQ(asked.exitCode, 2);
    EXPECT_EQ(asked.errors, "trelvan: " + (folder / "settings.json").string() +
                                ", línea 2, columna 8: no es JSON válido\n");
}

}  // namespace
}  // namespace trelvan::desktop
