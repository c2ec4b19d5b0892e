#include "Core/ButtonMapper.hpp"
#include "Support/MapperFixture.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::MapperFixture;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = trace::Opened::Kind;
using Lines = std::vector<std::string>;

using ButtonMapperActionTest = MapperFixture;

TEST_F(ButtonMapperActionTest, ShortcutPressesModifiersAroundTheKeyWithPauses) {
    EXPECT_TRUE(perform(ButtonAction::copy));
    EXPECT_EQ(keys(), (Lines{"0 55 down 100000 @0", "2.5 54 down 100000 @0", "5 8 down 100000 @0",
                             "14 8 up 100000 @0", "16.5 54 up 0 @0", "19 55 up 0 @0"}));
}

TEST_F(ButtonMapperActionTest, AllModifiersArePressedInTheirOrder) {
    auto& mapping = map(4, ButtonAction::customShortcut);
    mapping.shortcut() = {
        .keyCode = 3,
        .modifiersRawValue = flag::control | flag::option | flag::shift | flag::command | flag::function,
        .displayString = "x"};
    press(4);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 58, 61, 56, 60, 55, 54, 63, 3));
    const auto posted = desktop.all<trace::PostedKey>();
    ASSERT_EQ(posted.size(), 20U);
    std::vector<int> released;
    for (std::size_t index = 11; index < posted.size(); ++index) {
        EXPECT_EQ(posted[index].flags, 0U);
        released.push_back(posted[index].keyCode);
    }
    EXPECT_THAT(released, ElementsAre(63, 54, 55, 60, 56, 61, 58, 62, 59));
}

TEST_F(ButtonMapperActionTest, NothingIsPostedWithinTheTap) {
    map(4, ButtonAction::copy);
    EXPECT_TRUE(mapper->execute(4, 0));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(ButtonMapperActionTest, BackCarriesCommandAndNumericPad) {
    perform(ButtonAction::back);
    EXPECT_EQ(keys()[2], "5 123 down 300000 @0");
    desktop.entries.clear();
    perform(ButtonAction::forward);
    EXPECT_THAT(keysDown(), ElementsAre(55, 54, 124));
}

TEST_F(ButtonMapperActionTest, ArrowOfACustomShortcutGetsTheNumericPadFlag) {
    map(4, ButtonAction::customShortcut).shortcut() = {
        .keyCode = 126, .modifiersRawValue = 0, .displayString = "↑"};
    press(4);
    EXPECT_EQ(keys(), (Lines{"0 126 down 200000 @0", "9 126 up 200000 @0"}));
}

TEST_F(ButtonMapperActionTest, CatalogueShortcutsAreTheSystemsOwn) {
    const std::vector<std::pair<ButtonAction, KeyChord>> expected{
        {ButtonAction::paste, {9, 0x100000}},
        {ButtonAction::cut, {7, 0x100000}},
        {ButtonAction::undo, {6, 0x100000}},
        {ButtonAction::screenshotArea, {21, 0x120000}},
        {ButtonAction::screenshotFull, {20, 0x120000}},
        {ButtonAction::screenshotTool, {23, 0x120000}},
        {ButtonAction::emojiPanel, {49, 0x140000}},
        {ButtonAction::lockWorkstation, {12, 0x140000}}};
    for (const auto& [action, chord] : expected) {
        desktop.entries.clear();
        perform(action);
        const auto posted = desktop.all<trace::PostedKey>();
        const auto key = posted[posted.size() / 2];
        EXPECT_EQ((KeyChord{key.keyCode, key.flags}), chord) << rawValue(action);
    }
}

TEST_F(ButtonMapperActionTest, CustomShortcutOfKeyZeroIsSentWhenItHasAText) {
    map(4, ButtonAction::customShortcut).shortcut() = {
        .keyCode = 0, .modifiersRawValue = 0, .displayString = "A"};
    EXPECT_TRUE(press(4));
    EXPECT_EQ(keys(), (Lines{"0 0 down 0 @0", "9 0 up 0 @0"}));
}

TEST_F(ButtonMapperActionTest, EmptyCustomShortcutDoesNothingButIsHandled) {
    EXPECT_TRUE(perform(ButtonAction::customShortcut));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(ButtonMapperActionTest, CustomShortcutIsThatOfTheSlot) {
    auto& mapping = map(4, ButtonAction::copy);
    mapping.functionSlots = 3;
    mapping.tertiaryAction() = ButtonAction::customShortcut;
    mapping.tertiaryTrigger1() = ButtonModifierTrigger::shift;
    mapping.tertiaryShortcut() = {.keyCode = 40, .modifiersRawValue = 0, .displayString = "K"};
    press(4, flag::shift);
    EXPECT_THAT(keysDown(), ElementsAre(40));
}

// Media keys and clicks

TEST_F(ButtonMapperActionTest, MediaKeysGoDownAndUpAtTheSessionTap) {
    const std::vector<std::pair<ButtonAction, std::int64_t>> expected{{ButtonAction::volumeUp, 0},
                                                                      {ButtonAction::volumeDown, 1},
                                                                      {ButtonAction::mute, 7},
                                                                      {ButtonAction::playPause, 16}};
    for (const auto& [action, mediaKey] : expected) {
        desktop.entries.clear();
        perform(action);
        EXPECT_THAT(desktop.all<trace::PostedMedia>(),
                    ElementsAre(trace::PostedMedia{mediaKey * 65536 + 0xA00, 0xA00, TapLocation::session},
                                trace::PostedMedia{mediaKey * 65536 + 0xB00, 0xB00, TapLocation::session}));
    }
}

TEST_F(ButtonMapperActionTest, ClicksArePostedAtThePointer) {
    desktop.pointer = {100, 40};
    perform(ButtonAction::leftClick);
    perform(ButtonAction::rightClick);
    perform(ButtonAction::middleClick);
    const auto at = [](EventType type, std::int64_t button) {
        return trace::PostedMouse{type, button, {100, 40}, 0, 0, 0, TapLocation::session};
    };
    EXPECT_THAT(desktop.all<trace::PostedMouse>(),
                ElementsAre(at(EventType::leftMouseDown, 0), at(EventType::leftMouseUp, 0),
                            at(EventType::rightMouseDown, 1), at(EventType::rightMouseUp, 1),
                            at(EventType::otherMouseDown, 2), at(EventType::otherMouseUp, 2)));
}

TEST_F(ButtonMapperActionTest, ClicksAndMediaKeysArePostedFromTheBackgroundQueue) {
    const auto posted = [this] {
        return desktop.all<trace::PostedMouse>().size() + desktop.all<trace::PostedMedia>().size();
    };
    for (const auto action : {ButtonAction::leftClick, ButtonAction::middleClick, ButtonAction::volumeUp,
                              ButtonAction::playPause}) {
        desktop.entries.clear();
        profile.mappings.clear();
        map(4, action);
        EXPECT_TRUE(mapper->execute(4, 0));
        EXPECT_EQ(posted(), 0U) << "the tap waits for its answer";
        desktop.time.runUntilBackgroundIsEmpty();
        EXPECT_EQ(posted(), 2U);
    }
}

TEST_F(ButtonMapperActionTest, ClickIsWhereThePointerWasAtThePress) {
    desktop.pointer = {100, 40};
    map(4, ButtonAction::leftClick);
    mapper->execute(4, 0);
    desktop.pointer = {500, 500};
    desktop.time.runUntilBackgroundIsEmpty();
    for (const auto& posted : desktop.all<trace::PostedMouse>())
        EXPECT_EQ(posted.location, (TopLeftPoint{100, 40}));
}

TEST_F(ButtonMapperActionTest, ClickOnAScreenLeftOfAndAboveTheMainOneIsAtThePointer) {
    desktop.screenFrames = {{0, 0, 1366, 768}, {-1920, 300, 1920, 1080}};
    desktop.pointer = {-1900, -600};
    perform(ButtonAction::leftClick);
    EXPECT_EQ(desktop.all<trace::PostedMouse>().front().location, (TopLeftPoint{-1900, -600}));
}

TEST_F(ButtonMapperActionTest, WithoutScreensTheClickIsNotFlipped) {
    desktop.screenFrames.clear();
    desktop.pointer = {100, 40};
    perform(ButtonAction::leftClick);
    EXPECT_EQ(desktop.all<trace::PostedMouse>().front().location, (Point{100, -40}));
}

// Symbolic hot keys

TEST_F(ButtonMapperActionTest, FirstHotKeyThatResolvesIsSent) {
    hotKey(32, {.enabled = false, .parameters = {65535, 126, 0x840000}});
    hotKey(7, {.enabled = true, .parameters = {65535, 65535, 0}});
    hotKey(8, {.enabled = true, .parameters = {65535, 160, 0x800000}});
    hotKey(9, {.enabled = true, .parameters = {65535, 99, 0}});
    perform(ButtonAction::missionControl);
    EXPECT_THAT(keysDown(), ElementsAre(63, 160));
    EXPECT_THAT(desktop.messages(LogLevel::warning), IsEmpty());
}

TEST_F(ButtonMapperActionTest, MistypedHotKeysAreSkipped) {
    hotKey(33, {.enabled = true, .parameters = {65535, 110}});
    hotKey(34, {.enabled = true, .parameters = {65535, std::nullopt, 0}});
    perform(ButtonAction::appExpose);
    EXPECT_THAT(keysDown(), ElementsAre(109));
    desktop.entries.clear();
    hotKey(33, {.enabled = true, .parameters = {65535, 110, -1}});
    hotKey(34, {.enabled = true, .parameters = {65535, 65534, 0}});
    perform(ButtonAction::appExpose);
    EXPECT_THAT(keysDown(), ElementsAre(65534));
}

TEST_F(ButtonMapperActionTest, MissionControlFallsBackToItsKeyAndItsApplication) {
    desktop.disk["/System/Applications/Mission Control.app"] = {SimulatedItem::Kind::application, ""};
    perform(ButtonAction::missionControl);
    EXPECT_THAT(keysDown(), ElementsAre(99));
    EXPECT_THAT(desktop.all<trace::Opened>(),
                ElementsAre(trace::Opened{Kind::application, "/System/Applications/Mission Control.app"}));
}

TEST_F(ButtonMapperActionTest, MissingMissionControlIsAWarning) {
    perform(ButtonAction::missionControl);
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("Mission Control.app no encontrado en /System/Applications"));
}

TEST_F(ButtonMapperActionTest, LaunchpadIsLookedForByBundleThenByPath) {
    perform(ButtonAction::launchpad);
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("Launchpad no disponible por bundle ni por path"));
    desktop.disk["/Applications/Launchpad.app"] = {SimulatedItem::Kind::application, ""};
    perform(ButtonAction::launchpad);
    desktop.disk["/System/Applications/Launchpad.app"] = {SimulatedItem::Kind::application, ""};
    perform(ButtonAction::launchpad);
    desktop.disk["/x/Pad.app"] = {SimulatedItem::Kind::application, "com.apple.launchpad.launcher"};
    perform(ButtonAction::launchpad);
    EXPECT_THAT(desktop.all<trace::Opened>(),
                ElementsAre(trace::Opened{Kind::application, "/Applications/Launchpad.app"},
                            trace::Opened{Kind::application, "/System/Applications/Launchpad.app"},
                            trace::Opened{Kind::application, "/x/Pad.app"}));
}

TEST_F(ButtonMapperActionTest, ShowDesktopFallsBackToBothKeys) {
    perform(ButtonAction::showDesktop);
    EXPECT_THAT(keysDown(), ElementsAre(103, 111));
}

// Moves between desktops

TEST_F(ButtonMapperActionTest, DesktopMoveUsesTheHotKeyOfItsDirection) {
    hotKey(79, {.enabled = true, .parameters = {65535, 123, 0x840000}});
    hotKey(82, {.enabled = true, .parameters = {65535, 124, 0x840000}});
    perform(ButtonAction::moveDesktopLeft);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 63, 123));
    EXPECT_THAT(desktop.messages(LogLevel::debug), ElementsAre("Intentando mover escritorio keyCode=123"));
    desktop.entries.clear();
    perform(ButtonAction::moveDesktopRight);
    EXPECT_THAT(keysDown(), ElementsAre(59, 62, 63, 124));
    EXPECT_THAT(desktop.all<trace::Script>(), IsEmpty());
}

TEST_F(ButtonMapperActionTest, DesktopMoveWithoutHotKeyRunsTheWholeCascade) {
    perform(ButtonAction::moveDesktopLeft);
    // Session-level shortcuts run one after the other while the full ones run beside them.
    const auto all = keys();
    const auto at = [&](const char* tap) {
        Lines lines;
        for (const auto& line : all) {
            if (line.ends_with(tap)) lines.push_back(line);
        }
        return lines;
    };
    EXPECT_EQ(at("@1"), (Lines{"0 123 down 240000 @1", "9 123 up 240000 @1", "9 123 down 2C0000 @1",
                               "18 123 up 2C0000 @1", "44 59 down 40000 @1", "48 123 down 240000 @1",
                               "60 123 up 240000 @1", "64 59 up 0 @1"}));
    EXPECT_EQ(at("@2"), (Lines{"70 59 down 40000 @2", "74 123 down 240000 @2", "86 123 up 240000 @2",
                               "90 59 up 0 @2"}));
    // Two shortcuts with modifiers (6 and 10 events) and the switch at the HID tap (4).
    EXPECT_EQ(at("@0").size(), 20U);
    EXPECT_THAT(desktop.all<trace::Script>(),
                ElementsAre(trace::Script{"tell application \"System Events\"\n    key code 123 using "
                                          "control down\nend tell"}));
    EXPECT_NEAR(desktop.time.uptime().count(), 0.186, 1e-9);
}

TEST_F(ButtonMapperActionTest, FailedScriptGoesThroughMissionControl) {
    desktop.failures.scriptRun = true;
    perform(ButtonAction::moveDesktopRight);
    EXPECT_THAT(desktop.messages(LogLevel::warning),
                ElementsAre("AppleScript mover escritorio falló: simulated failure"));
    const auto all = keys();
    ASSERT_GE(all.size(), 6U);
    EXPECT_EQ(Lines(all.end() - 6, all.end()),
              (Lines{"186 99 down 0 @1", "195 99 up 0 @1", "305 124 down 200000 @1", "314 124 up 200000 @1",
                     "354 36 down 0 @1", "363 36 up 0 @1"}));
}

TEST_F(ButtonMapperActionTest, ScriptThatCannotBeBuiltGoesThroughMissionControlSilently) {
    desktop.failures.scriptCreate = true;
    perform(ButtonAction::moveDesktopRight);
    EXPECT_THAT(desktop.messages(LogLevel::warning), IsEmpty());
    EXPECT_EQ(keys().back(), "363 36 up 0 @1");
}

TEST_F(ButtonMapperActionTest, EventsThatCannotBeMadeAreSkippedInTheCascade) {
    desktop.failures.eventCreate = true;
    perform(ButtonAction::moveDesktopLeft);
    EXPECT_THAT(keys(), IsEmpty());
    EXPECT_EQ(desktop.all<trace::Script>().size(), 1U);
}

// Applications and folders

TEST_F(ButtonMapperActionTest, FolderThatExistsIsOpened) {
    desktop.disk["/Users/me/Docs"] = {SimulatedItem::Kind::folder, ""};
    map(4, ButtonAction::openFolder).folderPath = "/Users/me/Docs";
    press(4);
    EXPECT_THAT(desktop.all<trace::Opened>(), ElementsAre(trace::Opened{Kind::folder, "/Users/me/Docs"}));
}

TEST_F(ButtonMapperActionTest, MissingOrEmptyFolderOpensTheHomeFolder) {
    auto& mapping = map(4, ButtonAction::openFolder);
    press(4);
    mapping.folderPath = "/gone";
    press(4);
    EXPECT_THAT(desktop.all<trace::Opened>(), ElementsAre(trace::Opened{Kind::folder, "/Users/me"},
                                                          trace::Opened{Kind::folder, "/Users/me"}));
}

TEST_F(ButtonMapperActionTest, ApplicationIsOpenedAndLoggedByItsLastComponent) {
    map(4, ButtonAction::launchApp).appPath = "/Applications/Notes.app";
    EXPECT_TRUE(press(4));
    EXPECT_THAT(desktop.all<trace::Opened>(),
                ElementsAre(trace::Opened{Kind::application, "/Applications/Notes.app"}));
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "Abriendo app: Notes.app");
}

TEST_F(ButtonMapperActionTest, EmptyApplicationPathDoesNothingAndLogsNothing) {
    EXPECT_TRUE(perform(ButtonAction::launchApp));
    EXPECT_THAT(desktop.all<trace::Opened>(), IsEmpty());
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Abrir Aplicación' para botón 4"));
}

TEST_F(ButtonMapperActionTest, ExplorerRevealsTheHomeFolder) {
    perform(ButtonAction::openExplorer);
    EXPECT_THAT(desktop.all<trace::Opened>(), ElementsAre(trace::Opened{Kind::reveal, "/Users/me"}));
}

TEST_F(ButtonMapperActionTest, ExploreAIOpensAnAddress) {
    perform(ButtonAction::exploreAI);
    const auto opened = desktop.all<trace::Opened>();
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_EQ(opened[0].kind, Kind::url);
    EXPECT_TRUE(opened[0].target.starts_with("https://"));
}

TEST_F(ButtonMapperActionTest, NewNoteOpensTheApplicationThenTypesTheShortcut) {
    desktop.disk["/System/Applications/Notes.app"] = {SimulatedItem::Kind::application, "com.apple.Notes"};
    perform(ButtonAction::newNote);
    EXPECT_THAT(desktop.all<trace::Opened>(),
                ElementsAre(trace::Opened{Kind::application, "/System/Applications/Notes.app"}));
    EXPECT_EQ(keys()[0], "250 55 down 100000 @0");
    EXPECT_THAT(keysDown(), ElementsAre(55, 54, 45));
}

TEST_F(ButtonMapperActionTest, NewNoteWithoutTheApplicationIsAWarningAndStillTypes) {
    perform(ButtonAction::newNote);
    EXPECT_THAT(desktop.messages(LogLevel::warning), ElementsAre("App no encontrada: com.apple.Notes"));
    EXPECT_THAT(keysDown(), ElementsAre(55, 54, 45));
}

TEST_F(ButtonMapperActionTest, DictationWithoutShortcutIsAWarning) {
    perform(ButtonAction::dictation);
    EXPECT_THAT(desktop.messages(LogLevel::warning), ElementsAre("Dictado necesita un atajo configurado"));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(ButtonMapperActionTest, DictationSendsItsShortcutFromAnySlot) {
    auto& mapping = map(4, ButtonAction::dictation);
    mapping.dictationShortcut = {.keyCode = 63, .modifiersRawValue = 0, .displayString = "Fn"};
    press(4);
    EXPECT_THAT(keysDown(), ElementsAre(63));
}

// Smart Button

TEST_F(ButtonMapperActionTest, SmartButtonShowsTheActiveProfilesEntriesOnTheMainQueue) {
    profile.smartButton.apps.resize(2);
    map(4, ButtonAction::smartButton);
    EXPECT_TRUE(mapper->execute(4, 0));
    EXPECT_THAT(menu->shown, IsEmpty());
    desktop.time.runDue();
    ASSERT_EQ(menu->shown.size(), 1U);
    EXPECT_EQ(menu->shown[0].apps.size(), 2U);
}

TEST_F(ButtonMapperActionTest, SmartButtonAfterMapperOrMenuAreGoneDoesNothing) {
    map(4, ButtonAction::smartButton);
    mapper->execute(4, 0);
    const std::weak_ptr<ButtonMapper> watched = mapper;
    mapper.reset();
    EXPECT_TRUE(watched.expired());
    desktop.time.runDue();
    EXPECT_THAT(menu->shown, IsEmpty());
}

TEST_F(ButtonMapperActionTest, SmartButtonWithoutMenuDoesNothing) {
    menu.reset();
    EXPECT_TRUE(perform(ButtonAction::smartButton));
}

}  // namespace
}  // namespace trelvan
