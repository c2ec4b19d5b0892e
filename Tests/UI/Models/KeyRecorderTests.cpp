#include "Support/TestDesktop.hpp"
#include "UI/Models/KeyRecorder.hpp"
#include "UI/Models/ShortcutHolder.hpp"

#include <gmock/gmock.h>

#include <array>
#include <memory>

namespace trelvan {
namespace {

using Answer = KeyMonitors::LocalAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr KeyCode keyK = 40;
constexpr KeyCode escape = 53;
constexpr KeyCode backspace = 51;
const CustomShortcut earlier{8, flag::control, "⌃C"};

class KeyRecorderTest : public testing::Test {
  protected:
    std::unique_ptr<KeyRecorder> makeRecorder(std::string id) {
        return std::make_unique<KeyRecorder>(KeyRecorder::Ports{desktop.keyMonitors(), desktop.inputState(),
                                                                desktop.mainQueue(), desktop.logger},
                                             active, std::move(id),
                                             [this](const auto& shortcut) { recorded.push_back(shortcut); });
    }
    /// A key of the program's own window, or of another application.
    Answer press(KeyCode keyCode, EventFlags flags = 0, std::string characters = {}, bool isOwn = true) {
        desktop.bringToFront(isOwn ? "com.yourname.Trelvan" : "com.example.app");
        const auto answer = desktop.sendKey({EventType::keyDown, keyCode, flags, std::move(characters)});
        desktop.time.runDue();
        return answer;
    }

    test::TestDesktop desktop;
    ActiveRecorderID active;
    std::vector<std::optional<CustomShortcut>> recorded;
    std::unique_ptr<KeyRecorder> recorder = makeRecorder("a-main");
};

TEST_F(KeyRecorderTest, TextsAreThoseOfTheControlInEachState) {
    EXPECT_EQ(recorder->label(), "Clic para asignar");
    EXPECT_EQ(recorder->help(), "Clic para asignar un atajo");
    recorder->toggleRecording();
    EXPECT_EQ(recorder->label(), "Presiona teclas…");
    EXPECT_EQ(recorder->help(), "Esc = cancelar | Backspace = borrar atajo");
    press(keyK, flag::control, "k");
    EXPECT_EQ(recorder->label(), "⌃K");
}

TEST_F(KeyRecorderTest, KeyWithItsModifiersIsRecordedSwallowedAndLogged) {
    recorder->toggleRecording();
    EXPECT_EQ(press(keyK, flag::command | flag::option | flag::alphaShift, "k"), Answer::consume);
    ASSERT_EQ(recorded.size(), 1U);
    EXPECT_EQ(recorded[0], (CustomShortcut{keyK, 0x180000, "⌥⌘K"}));
    EXPECT_EQ(recorder->shortcut.get(), recorded[0]);
    EXPECT_FALSE(recorder->isRecording);
    EXPECT_EQ(active.get(), std::nullopt);
    EXPECT_THAT(desktop.messages(LogLevel::debug),
                ElementsAre("Shortcut grabado: ⌥⌘K keyCode=40 flags=1572864"));
    EXPECT_EQ(press(keyK), Answer::passOn) << "the monitors are gone";
}

TEST_F(KeyRecorderTest, AllModifiersAreWrittenInTheirOrder) {
    recorder->toggleRecording();
    press(keyK, flag::shift | flag::control | flag::option | flag::command | flag::function, "k");
    EXPECT_EQ(recorder->shortcut->value().displayString, "⌃⌥⇧⌘fnK");
    EXPECT_EQ(recorder->shortcut->value().modifiersRawValue, 0x9E0000U);
}

TEST_F(KeyRecorderTest, ModifiersHeldAtThisMomentAndSeenBeforeCountToo) {
    recorder->toggleRecording();
    desktop.bringToFront("com.yourname.Trelvan");
    desktop.sendKey({EventType::flagsChanged, 0, flag::shift, {}});
    desktop.time.runDue();
    desktop.modifierFlags = flag::control;
    press(keyK, flag::option, "k");
    EXPECT_EQ(recorder->shortcut->value().displayString, "⌃⌥⇧K");
}

TEST_F(KeyRecorderTest, NamesAreThoseOfTheTableElseTheCharactersInUpperCase) {
    std::vector<std::string> names;
    for (const KeyCode keyCode : std::array<KeyCode, 9>{123, 124, 125, 126, 36, 48, 49, 51, 53})
        names.push_back(keyName(keyCode, "x"));
    EXPECT_THAT(names, ElementsAre("←", "→", "↓", "↑", "↩", "⇥", "Space", "⌫", "Esc"));
    EXPECT_EQ(keyName(keyK, "ñ"), "Ñ");
    EXPECT_EQ(keyName(keyK, "л"), "Л");
    EXPECT_EQ(keyName(keyK, ""), "?");
}

TEST_F(KeyRecorderTest, EscapeLeavesTheShortcutAsItWas) {
    recorder->shortcut = earlier;
    recorder->toggleRecording();
    EXPECT_EQ(press(escape, flag::shift), Answer::consume);
    EXPECT_FALSE(recorder->isRecording);
    EXPECT_EQ(recorder->shortcut.get(), earlier);
    EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(KeyRecorderTest, BackspaceAloneTakesTheShortcutAwayAndWithAModifierIsRecorded) {
    recorder->shortcut = earlier;
    recorder->toggleRecording();
    EXPECT_EQ(press(backspace, flag::alphaShift), Answer::consume);
    EXPECT_EQ(recorder->shortcut.get(), std::nullopt);
    EXPECT_FALSE(recorder->isRecording);
    recorder->toggleRecording();
    press(backspace, flag::shift);
    EXPECT_EQ(recorder->shortcut->value(), (CustomShortcut{backspace, flag::shift, "⇧⌫"}));
    EXPECT_EQ(recorded.size(), 2U);
}

TEST_F(KeyRecorderTest, KeyOfAnotherApplicationIsRecordedAndReachesItToo) {
    recorder->toggleRecording();
    EXPECT_EQ(press(keyK, flag::control, "k", false), Answer::passOn);
    EXPECT_EQ(recorder->shortcut->value().displayString, "⌃K");
}

TEST_F(KeyRecorderTest, BareKeyIsAShortcut) {
    recorder->toggleRecording();
    press(keyK, 0, "k");
    EXPECT_EQ(recorder->shortcut->value(), (CustomShortcut{keyK, 0, "K"}));
}

TEST_F(KeyRecorderTest, OnlyOneRecordsAtATime) {
    const auto second = makeRecorder("a-secondary");
    recorder->toggleRecording();
    second->toggleRecording();
    EXPECT_FALSE(second->isRecording);
    EXPECT_EQ(active.get(), "a-main");
    recorder->toggleRecording();
    EXPECT_FALSE(recorder->isRecording);
    second->toggleRecording();
    EXPECT_TRUE(second->isRecording);
    EXPECT_EQ(active.get(), "a-secondary");
}

TEST_F(KeyRecorderTest, SecondKeyInTheSameTurnIsNotRecorded) {
    recorder->toggleRecording();
    desktop.bringToFront("com.yourname.Trelvan");
    desktop.sendKey({EventType::keyDown, keyK, 0, "k"});
    EXPECT_EQ(desktop.sendKey({EventType::keyDown, 0, 0, "a"}), Answer::consume);
    desktop.time.runDue();
    EXPECT_EQ(recorder->shortcut->value().displayString, "K");
    EXPECT_EQ(recorded.size(), 1U);
}

TEST_F(KeyRecorderTest, RecorderThatGoesAwayLeavesKeysAndItsPlaceFree) {
    recorder->toggleRecording();
    desktop.bringToFront("com.yourname.Trelvan");
    desktop.sendKey({EventType::keyDown, keyK, 0, "k"});
    recorder.reset();
    desktop.time.runDue();
    EXPECT_EQ(active.get(), std::nullopt);
    EXPECT_THAT(recorded, IsEmpty());
    EXPECT_EQ(press(keyK), Answer::passOn);
}

TEST_F(KeyRecorderTest, WhoIsToldMayLetGoOfTheRecorder) {
    std::unique_ptr<KeyRecorder> own;
    own = std::make_unique<KeyRecorder>(
        KeyRecorder::Ports{desktop.keyMonitors(), desktop.inputState(), desktop.mainQueue(), desktop.logger},
        active, "b-main", [&own](const auto&) { own.reset(); });
    own->toggleRecording();
    press(keyK, 0, "k");
    EXPECT_EQ(own, nullptr);
    EXPECT_EQ(active.get(), std::nullopt);
}

TEST_F(KeyRecorderTest, CombinationThatTheDesktopHoldsIsNamed) {
    desktop.hotKeyEntries[hotkey::launchpad] = {true, {65535, keyK, 0x180000 | flag::numericPad}};
    const CustomShortcut held{keyK, 0x180000, "⌥⌘K"};
    EXPECT_EQ(desktopHolderOf(held, desktop.hotKeyTable()), ButtonAction::launchpad);
    EXPECT_EQ(desktopWarning(held, desktop.hotKeyTable(), AppLanguage::english),
              "The desktop itself uses ⌥⌘K for Launchpad: it may not arrive");
    EXPECT_EQ(desktopWarning(held, desktop.hotKeyTable(), AppLanguage::spanish),
              "El propio escritorio usa ⌥⌘K para Launchpad: puede que no llegue");
    EXPECT_EQ(desktopWarning({keyK, flag::option, "⌥K"}, desktop.hotKeyTable(), AppLanguage::english),
              std::nullopt);
    EXPECT_EQ(desktopHolderOf({}, desktop.hotKeyTable()), std::nullopt);
}

}  // namespace
}  // namespace trelvan
