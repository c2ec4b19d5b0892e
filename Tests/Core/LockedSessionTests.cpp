#include "Core/SmartButtonController.hpp"
#include "Support/FakePanels.hpp"
#include "Support/MapperFixture.hpp"
#include "Support/MonitorFixture.hpp"

#include <gmock/gmock.h>

// Behind a locked screen, and while another session has the screen, nothing fires.

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// How a session that is not in use came to that.
struct Away {
    const char* name;
    bool locked;
    bool active;
};
constexpr std::array ways{Away{"Locked", true, true}, Away{"Inactive", false, false},
                          Away{"LockedAndInactive", true, false}};
const auto nameOf = [](const auto& tested) { return std::string(tested.param.name); };

// Events

class LockedMonitorTest : public test::MonitorFixture, public testing::WithParamInterface<Away> {
  protected:
    LockedMonitorTest() {
        start();
        handleButtons();
    }
    void leave() { desktop.changeSession(GetParam().locked, GetParam().active); }
    void comeBack() { desktop.changeSession(false, true); }
};
INSTANTIATE_TEST_SUITE_P(Ways, LockedMonitorTest, testing::ValuesIn(ways), nameOf);

TEST_P(LockedMonitorTest, PressAndReleasePassAndAreOfferedToNobody) {
    leave();
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::leftMouseDown, 0), TapAnswer::deliver);
    EXPECT_EQ(button(EventType::rightMouseDown, 1), TapAnswer::deliver);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_P(LockedMonitorTest, TurnPassesShapedAndIsOfferedToNobody) {
    monitor->scrollSpeedVertical = 2.0;
    leave();
    EXPECT_EQ(scroll(3), TapAnswer::deliver);
    EXPECT_EQ(lastEvent().scrollDeltaAxis1, 6);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_P(LockedMonitorTest, PointerIsShapedAsEver) {
    monitor->mouseSpeed = 1.4;
    monitor->advancedMouseSpeedEnabled = false;
    leave();
    EXPECT_EQ(move(10, 0), TapAnswer::deliver);
    EXPECT_GT(lastEvent().deltaX, 10);
}

TEST_P(LockedMonitorTest, ReleaseOfAPressSwallowedBeforeIsSwallowed) {
    EXPECT_EQ(down(3), TapAnswer::swallow);
    leave();
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_EQ(calls.size(), 1U);
    // And only that one.
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::deliver);
}

TEST_P(LockedMonitorTest, ReleaseOfAPressDeclinedBeforeIsNotOfferedAgain) {
    consumes = false;
    EXPECT_EQ(down(3), TapAnswer::deliver);
    leave();
    consumes = true;
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(calls.size(), 1U);
}

TEST_P(LockedMonitorTest, ReleaseAfterUnlockingOfAPressMadeBehindTheLockFiresNothing) {
    leave();
    EXPECT_EQ(down(3), TapAnswer::deliver);
    comeBack();
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(down(3), TapAnswer::swallow);
    EXPECT_EQ(up(3), TapAnswer::swallow);
}

TEST_P(LockedMonitorTest, LostReleaseBehindTheLockDoesNotConcernTheNextPress) {
    leave();
    down(3);
    comeBack();
    consumes = false;
    down(3);
    up(3);
    // A press that was declined is offered once more on release.
    EXPECT_EQ(calls.size(), 2U);
}

TEST_P(LockedMonitorTest, ServesAgainAfterUnlockingAndSaysBoth) {
    leave();
    down(3);
    up(3);
    comeBack();
    EXPECT_EQ(down(3), TapAnswer::swallow);
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_EQ(scroll(1), TapAnswer::swallow);
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Sesión bloqueada o en segundo plano: los botones no actúan",
                            "La sesión vuelve a estar en uso: los botones actúan de nuevo"));
}

TEST_P(LockedMonitorTest, TapComesUpBehindTheLockAndFiresNothing) {
    monitor->stop();
    leave();
    start();
    handleButtons();
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_THAT(calls, IsEmpty());
}

// Actions

class LockedMapperTest : public test::MapperFixture {};

TEST_F(LockedMapperTest, NothingIsPerformed) {
    desktop.changeSession(true, true);
    EXPECT_FALSE(perform(ButtonAction::exploreAI));
    EXPECT_FALSE(perform(ButtonAction::smartButton));
    EXPECT_FALSE(perform(ButtonAction::volumeUp));
    EXPECT_FALSE(perform(ButtonAction::leftClick));
    EXPECT_THAT(desktop.all<trace::Opened>(), IsEmpty());
    EXPECT_THAT(desktop.all<trace::PostedMedia>(), IsEmpty());
    EXPECT_THAT(desktop.all<trace::PostedMouse>(), IsEmpty());
    EXPECT_THAT(menu->shown, IsEmpty());
}

TEST_F(LockedMapperTest, WhatWasToBeTypedLaterIsNotTypedToTheLocker) {
    for (const auto action : {ButtonAction::copy, ButtonAction::newNote, ButtonAction::moveDesktopLeft}) {
        profile.mappings.clear();
        map(4, action);
        EXPECT_TRUE(mapper->execute(4, 0));
        desktop.changeSession(true, true);
        desktop.time.runUntilBackgroundIsEmpty();
        EXPECT_THAT(keysDown(), IsEmpty()) << rawValue(action);
        desktop.changeSession(false, true);
    }
}

TEST_F(LockedMapperTest, SequenceThatHasBegunReleasesWhatItPressed) {
    map(4, ButtonAction::copy);
    EXPECT_TRUE(mapper->execute(4, 0));
    desktop.time.runDue();
    ASSERT_FALSE(desktop.all<trace::PostedKey>().empty());
    desktop.changeSession(true, true);
    desktop.time.runUntilBackgroundIsEmpty();
    const auto keys = desktop.all<trace::PostedKey>();
    const auto downs = std::ranges::count_if(keys, [](const auto& key) { return key.down; });
    EXPECT_EQ(static_cast<std::size_t>(downs) * 2, keys.size());
}

// The menu

class LockedMenuTest : public testing::Test {
  protected:
    LockedMenuTest() {
        SmartButtonApp app;
        app.name = "Notes";
        configuration.apps = {app};
        controller.emplace(SmartButtonController::Ports{desktop.screens(), desktop.eventPoster(),
                                                        desktop.workspace(), desktop.backgroundQueue(),
                                                        desktop.mainQueue(), desktop.sessionState()},
                           panels, desktop.logger);
    }
    test::TestDesktop desktop;
    test::FakePanels panels;
    SmartButtonConfiguration configuration;
    std::optional<SmartButtonController> controller;
};

TEST_F(LockedMenuTest, OpenMenuCloses) {
    controller->show(configuration);
    ASSERT_EQ(panels.open.size(), 1U);
    desktop.changeSession(true, true);
    EXPECT_THAT(panels.open, IsEmpty());
    EXPECT_FALSE(controller->isShown);
    desktop.changeSession(false, true);
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(LockedMenuTest, MenuDoesNotOpenUntilTheSessionIsInUseAgain) {
    desktop.changeSession(false, false);
    controller->show(configuration);
    EXPECT_EQ(panels.overlaysShown, 0);
    desktop.changeSession(false, true);
    controller->show(configuration);
    EXPECT_EQ(panels.open.size(), 1U);
}

TEST_F(LockedMenuTest, LockingAfterTheControllerIsGoneDoesNothing) {
    controller->show(configuration);
    controller.reset();
    desktop.changeSession(true, true);
    EXPECT_THAT(panels.open, IsEmpty());
}

}  // namespace
}  // namespace trelvan
