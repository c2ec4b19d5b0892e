#include "Support/MapperFixture.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

/// What the desktop itself is asked for, and the combinations of another system's applications.
namespace trelvan {
namespace {

using test::MapperFixture;
using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

/// A desktop that can be asked: remembers for what, and may call for keys instead.
class AskedDesktopTest : public MapperFixture {
  protected:
    AskedDesktopTest() {
        desktop.onView = [this](SystemView view, const SystemViews::ByKeys& byKeys) {
            asked.push_back(view);
            if (wantsKeys) pressed = byKeys();
            return true;
        };
    }
    std::vector<SystemView> asked;
    bool wantsKeys = false;
    bool pressed = false;
};

TEST_F(AskedDesktopTest, DesktopThatTakesChargeGetsNoKeys) {
    hotKey(32, {.enabled = true, .parameters = {65535, 126, 0x840000}});
    hotKey(79, {.enabled = true, .parameters = {65535, 123, 0x840000}});
    for (const auto action :
         {ButtonAction::missionControl, ButtonAction::appExpose, ButtonAction::launchpad,
          ButtonAction::showDesktop, ButtonAction::moveDesktopLeft, ButtonAction::moveDesktopRight,
          ButtonAction::screenshotArea, ButtonAction::screenshotFull, ButtonAction::screenshotTool,
          ButtonAction::emojiPanel, ButtonAction::lockWorkstation}) {
        EXPECT_TRUE(perform(action));
    }
    EXPECT_THAT(
        asked, ElementsAre(SystemView::missionControl, SystemView::appExpose, SystemView::launchpad,
                           SystemView::showDesktop, SystemView::desktopLeft, SystemView::desktopRight,
                           SystemView::screenshotArea, SystemView::screenshotFull, SystemView::screenshotTool,
                           SystemView::emojiPanel, SystemView::lockScreen));
    EXPECT_THAT(keys(), IsEmpty());
    EXPECT_THAT(desktop.all<trace::Script>(), IsEmpty());
}

TEST_F(AskedDesktopTest, DesktopThatCallsForKeysGetsTheHotKey) {
    wantsKeys = true;
    hotKey(33, {.enabled = true, .parameters = {65535, 98, 0x40000}});
    hotKey(81, {.enabled = true, .parameters = {65535, 124, 0x140000}});
    perform(ButtonAction::appExpose);
    EXPECT_TRUE(pressed);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 98));
    desktop.entries.clear();
    perform(ButtonAction::moveDesktopRight);
    EXPECT_TRUE(pressed);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 55, 54, 124));
}

TEST_F(AskedDesktopTest, ViewWithoutAHotKeyIsNotGuessed) {
    wantsKeys = true;
    for (const auto action : {ButtonAction::missionControl, ButtonAction::moveDesktopLeft}) {
        pressed = true;
        perform(action);
        EXPECT_FALSE(pressed);
    }
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(AskedDesktopTest, ToolWithoutAHotKeyIsTheCataloguesShortcut) {
    wantsKeys = true;
    perform(ButtonAction::screenshotArea);
    EXPECT_TRUE(pressed);
    EXPECT_THAT(keysDown(), ElementsAre(56, 60, 55, 54, 21));
    desktop.entries.clear();
    hotKey(hotkey::screenshotArea, {.enabled = true, .parameters = {65535, 105, 0}});
    perform(ButtonAction::screenshotArea);
    EXPECT_THAT(keysDown(), ElementsAre(105));
}

using DesktopWithoutViewsTest = MapperFixture;

TEST_F(DesktopWithoutViewsTest, ToolsAreTheCataloguesShortcuts) {
    hotKey(hotkey::screenshotArea, {.enabled = true, .parameters = {65535, 105, 0}});
    perform(ButtonAction::screenshotArea);
    EXPECT_THAT(keysDown(), ElementsAre(56, 60, 55, 54, 21));
}

/// The same actions with the combinations that Linux applications know.
class LinuxShortcutTest : public MapperFixture {
  protected:
    LinuxShortcutTest() : MapperFixture(linuxShortcuts) {}
};

TEST_F(LinuxShortcutTest, CopyIsControlC) {
    perform(ButtonAction::copy);
    EXPECT_EQ(keys(), (Lines{"0 59 down 40000 @0", "2.5 62 down 40000 @0", "5 8 down 40000 @0",
                             "14 8 up 40000 @0", "16.5 62 up 0 @0", "19 59 up 0 @0"}));
}

TEST_F(LinuxShortcutTest, LetterIsPressedWhereTheLayoutHasIt) {
    desktop.layout = {{U'z', {.keyCode = 16}}, {U'.', {.keyCode = 43, .flags = flag::shift}}};
    perform(ButtonAction::undo);
    EXPECT_EQ(keys()[2], "5 16 down 40000 @0");
    desktop.entries.clear();
    perform(ButtonAction::emojiPanel);
    EXPECT_TRUE(keys()[4].ends_with(" 43 down 60000 @0")) << keys()[4];
}

TEST_F(LinuxShortcutTest, LetterThatTheLayoutLacksIsPressedAtItsPlace) {
    desktop.layout = {{U'z', {.keyCode = 16}}};
    perform(ButtonAction::copy);
    EXPECT_EQ(keys()[2], "5 8 down 40000 @0");
}

TEST_F(LinuxShortcutTest, BackIsAltLeft) {
    perform(ButtonAction::back);
    EXPECT_EQ(keys()[2], "5 123 down 280000 @0");
}

// Terminals

class TerminalTest : public LinuxShortcutTest {
  protected:
    /// What the action types with this application in front: the key codes that go down.
    std::vector<int> typedIn(const char* windowClass, ButtonAction action) {
        desktop.frontmost = windowClass;
        desktop.entries.clear();
        EXPECT_TRUE(perform(action));
        return keysDown();
    }
};

TEST_F(TerminalTest, CopyCutAndPasteAreWhatTheTerminalUnderstands) {
    for (const auto* usual : {"Xfce4-terminal", "konsole", "kitty", "Alacritty"}) {
        EXPECT_THAT(typedIn(usual, ButtonAction::copy), ElementsAre(59, 62, 56, 60, 8)) << usual;
        EXPECT_THAT(typedIn(usual, ButtonAction::cut), ElementsAre(59, 62, 56, 60, 8)) << usual;
        EXPECT_THAT(typedIn(usual, ButtonAction::paste), ElementsAre(59, 62, 56, 60, 9)) << usual;
    }
    EXPECT_THAT(typedIn("URxvt", ButtonAction::copy), ElementsAre(59, 62, 58, 61, 8));
    EXPECT_THAT(typedIn("URxvt", ButtonAction::paste), ElementsAre(59, 62, 58, 61, 9));
    EXPECT_THAT(typedIn("Mousepad", ButtonAction::copy), ElementsAre(59, 62, 8));
}

TEST_F(TerminalTest, TerminalThatCopiesBySelectingGetsNothingForCopy) {
    EXPECT_THAT(typedIn("XTerm", ButtonAction::copy), IsEmpty());
    EXPECT_EQ(desktop.messages(LogLevel::info).back(),
              "'Copiar' no envía nada a xterm: lo seleccionado ya está copiado");
    EXPECT_THAT(typedIn("XTerm", ButtonAction::cut), IsEmpty());
    EXPECT_THAT(typedIn("XTerm", ButtonAction::paste), ElementsAre(56, 60, 114));
}

TEST_F(TerminalTest, UndoSendsNothingAndSaysSo) {
    for (const auto* terminal : {"XTerm", "Gnome-terminal", "URxvt"}) {
        EXPECT_THAT(typedIn(terminal, ButtonAction::undo), IsEmpty()) << terminal;
        EXPECT_TRUE(desktop.messages(LogLevel::info).back().starts_with("'Deshacer' no envía nada a "));
    }
    EXPECT_THAT(typedIn("Mousepad", ButtonAction::undo), ElementsAre(59, 62, 6));
}

TEST_F(TerminalTest, LetterIsPressedWhereTheLayoutHasIt) {
    desktop.layout = {{U'c', {.keyCode = 34}}};
    EXPECT_THAT(typedIn("kitty", ButtonAction::copy), ElementsAre(59, 62, 56, 60, 34));
}

TEST_F(TerminalTest, RecordedShortcutIsSentAsRecorded) {
    desktop.frontmost = "XTerm";
    map(4, ButtonAction::customShortcut).shortcut() = {
        .keyCode = 8, .modifiersRawValue = flag::control, .displayString = "⌃C"};
    press(4);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 8));
}

using MacTerminalTest = MapperFixture;

TEST_F(MacTerminalTest, TerminalGetsWhatEveryApplicationGets) {
    desktop.frontmost = "XTerm";
    perform(ButtonAction::copy);
    EXPECT_THAT(keysDown(), ElementsAre(55, 54, 8));
}

// What is typed after a start

class NewNoteTest : public LinuxShortcutTest {
  protected:
    NewNoteTest() { desktop.disk["/n.desktop"] = {SimulatedItem::Kind::application, "com.apple.Notes"}; }

    static constexpr auto notes = "com.apple.Notes";
};

TEST_F(NewNoteTest, NothingIsTypedUntilTheApplicationIsInFront) {
    perform(ButtonAction::newNote);
    EXPECT_EQ(desktop.all<trace::Opened>().size(), 1U);
    desktop.time.runFor(Seconds{3});
    EXPECT_THAT(keys(), IsEmpty());
    desktop.bringToFront("another");
    desktop.time.runFor(Seconds{1});
    EXPECT_THAT(keys(), IsEmpty());
    desktop.bringToFront(notes);
    desktop.time.runFor(Seconds{0.1});
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 45));
    // Once.
    desktop.bringToFront("another");
    desktop.bringToFront(notes);
    desktop.time.runFor(Seconds{10});
    EXPECT_EQ(keysDown().size(), 3U);
    EXPECT_THAT(desktop.messages(LogLevel::warning), IsEmpty());
}

TEST_F(NewNoteTest, NothingIsTypedIntoAnApplicationThatComesTooLate) {
    perform(ButtonAction::newNote);
    desktop.time.runFor(Seconds{5.1});
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("n.desktop no recibió el foco a tiempo: no se le escribe nada"));
    desktop.bringToFront(notes);
    desktop.time.runFor(Seconds{10});
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(NewNoteTest, ApplicationThatIsInFrontAlreadyIsTypedInto) {
    desktop.bringToFront(notes);
    perform(ButtonAction::newNote);
    desktop.time.runFor(Seconds{0.1});
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 45));
}

TEST_F(NewNoteTest, SecondPressMeansOneNote) {
    perform(ButtonAction::newNote);
    desktop.time.runFor(Seconds{4});
    perform(ButtonAction::newNote);
    desktop.time.runFor(Seconds{4});
    desktop.bringToFront(notes);
    desktop.time.runFor(Seconds{10});
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 45));
    EXPECT_THAT(desktop.messages(LogLevel::warning), IsEmpty());
}

TEST_F(NewNoteTest, WithoutAnyEditorNothingIsTyped) {
    desktop.disk.clear();
    perform(ButtonAction::newNote);
    desktop.time.runFor(Seconds{10});
    EXPECT_THAT(desktop.messages(LogLevel::warning), ElementsAre("App no encontrada: com.apple.Notes"));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(LinuxShortcutTest, RecordedShortcutIsSentAsRecorded) {
    map(4, ButtonAction::customShortcut).shortcut() = {
        .keyCode = 8, .modifiersRawValue = flag::command, .displayString = "⌘C"};
    desktop.layout = {{U'c', {.keyCode = 34}}};
    press(4);
    EXPECT_EQ(keys()[2], "5 8 down 100000 @0");
}

}  // namespace
}  // namespace trelvan
