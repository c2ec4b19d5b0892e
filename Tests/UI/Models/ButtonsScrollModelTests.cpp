#include "UI/Models/EditorFixture.hpp"

namespace trelvan {
namespace {

using enum FunctionSlot;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ButtonsScrollModelTest : public test::EditorFixture {
  protected:
    void SetUp() override { open(); }
    [[nodiscard]] std::vector<std::int64_t> shown() const {
        std::vector<std::int64_t> result;
        for (const auto& row : model->rows(AppLanguage::english)) result.push_back(row.buttonNumber);
        return result;
    }
};

// Rows

TEST_F(ButtonsScrollModelTest, EachPartShowsItsMappingsInStoreOrder) {
    profiles.addScrollMappings();
    profiles.addExtraButtonMapping(7);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2, 3, 4, 7));
    model->setSubTab(ButtonsSubTab::scroll);
    EXPECT_THAT(shown(), ElementsAre(-100));
}

TEST_F(ButtonsScrollModelTest, RowsAreToldOnceForManyChanges) {
    profiles.addExtraButtonMapping(7);
    profiles.addExtraButtonMapping(8);
    EXPECT_EQ(rowsTold, 0);
    runDue();
    EXPECT_EQ(rowsTold, 1);
}

TEST_F(ButtonsScrollModelTest, OtherProfileShowsItsOwnRows) {
    profiles.setActive(profiles.createProfile("Other"));
    runDue();
    EXPECT_GT(rowsTold, 0);
    EXPECT_THAT(shown(), ElementsAre(0, 1));
}

TEST_F(ButtonsScrollModelTest, EndsOfTheListMoveOneWayOnly) {
    EXPECT_FALSE(rowOf(0).canMoveUp);
    EXPECT_TRUE(rowOf(0).canMoveDown);
    EXPECT_TRUE(rowOf(4).canMoveUp);
    EXPECT_FALSE(rowOf(4).canMoveDown);
}

TEST_F(ButtonsScrollModelTest, SecondRowOfAButtonIsShadowed) {
    auto profile = profiles.activeProfile();
    profile.mappings.push_back(ButtonMapping::unassigned(Uuid::version4({9}), 3, "x"));
    profiles.setActiveProfile(profile);
    const auto rows = model->rows(AppLanguage::english);
    EXPECT_FALSE(rows[3].isShadowed);
    EXPECT_TRUE(rows[5].isShadowed);
}

// Adding, removing, moving

TEST_F(ButtonsScrollModelTest, AddedButtonGetsTheNextNumberAndIsRevealedOpen) {
    model->remove(idOf(3));
    model->addButton();
    runDue();
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 4, 3));
    EXPECT_THAT(revealed, ElementsAre(idOf(3)));
    EXPECT_TRUE(model->isExpanded(idOf(3)));
}

TEST_F(ButtonsScrollModelTest, AddedScrollMappingIsRevealedInItsPart) {
    model->addScroll();
    model->addScroll();
    runDue();
    EXPECT_EQ(model->subTab(), ButtonsSubTab::scroll);
    EXPECT_THAT(shown(), ElementsAre(-100, -101));
    EXPECT_EQ(revealed.back(), idOf(-101));
}

TEST_F(ButtonsScrollModelTest, RemovedRowIsBroughtBackByUndoWithAllItHeld) {
    const auto id = idOf(3);
    model->setAction(id, primary, ButtonAction::copy);
    model->remove(id);
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 4));
    EXPECT_EQ(model->undoText(AppLanguage::english), "Button 3 removed.");
    EXPECT_EQ(model->undoText(AppLanguage::spanish), "Botón 3 eliminado.");
    model->undo();
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(mappingOf(3).function(primary).action, ButtonAction::copy);
    EXPECT_EQ(model->undoText(AppLanguage::english), "");
    model->undo();
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ButtonsScrollModelTest, AnotherChangeEndsTheUndo) {
    model->remove(idOf(3));
    model->setAction(idOf(4), primary, ButtonAction::copy);
    EXPECT_EQ(model->undoText(AppLanguage::english), "");
}

TEST_F(ButtonsScrollModelTest, LeftAndRightStay) {
    model->remove(idOf(0));
    model->remove(idOf(1));
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(model->undoText(AppLanguage::english), "");
}

TEST_F(ButtonsScrollModelTest, RowMovesPastWhatIsNotInSight) {
    model->addScroll();
    model->addButton();
    model->setSubTab(ButtonsSubTab::buttons);
    ASSERT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4, -100, 5));
    model->move(idOf(5), MoveDirection::towardsStart);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2, 3, 5, 4));
    model->move(idOf(4), MoveDirection::towardsEnd);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2, 3, 5, 4)) << "the last of its part stays";
    const auto before = numbers();
    model->move(idOf(0), MoveDirection::towardsStart);
    EXPECT_EQ(numbers(), before);
}

TEST_F(ButtonsScrollModelTest, DraggedRowGoesToItsPlace) {
    model->moveTo(idOf(4), 1);
    EXPECT_THAT(shown(), ElementsAre(0, 4, 1, 2, 3));
    model->moveTo(idOf(4), 99);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2, 3, 4));
    model->moveTo(idOf(0), 2);
    EXPECT_THAT(shown(), ElementsAre(1, 2, 0, 3, 4));
}

// One mapping

TEST_F(ButtonsScrollModelTest, EditsAreStoredAndFireAtTheNextPress) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    EXPECT_EQ(press(3), TapAnswer::swallow);
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Copiar' para botón 3"));
    desktop.settleDefaults();
    EXPECT_TRUE(desktop.defaults.contains("trackball_profiles"));
}

TEST_F(ButtonsScrollModelTest, FunctionsAreAddedChosenAndRemovedWithUndo) {
    const auto id = idOf(3);
    model->addFunction(id);
    model->setAction(id, secondary, ButtonAction::paste);
    model->setTrigger(id, secondary, 0, ButtonModifierTrigger::shift);
    EXPECT_EQ(mappingOf(3).functionSlots, 2);
    EXPECT_EQ(resolvedAction(mappingOf(3), flag::shift).action, ButtonAction::paste);
    model->removeFunction(id, secondary);
    EXPECT_EQ(mappingOf(3).functionSlots, 1);
    EXPECT_EQ(model->undoText(AppLanguage::english), "Function 2 removed.");
    model->undo();
    EXPECT_EQ(resolvedAction(mappingOf(3), flag::shift).action, ButtonAction::paste);
}

TEST_F(ButtonsScrollModelTest, MainClickOfTheLeftButtonCannotBeChanged) {
    model->setAction(idOf(0), primary, ButtonAction::copy);
    EXPECT_EQ(mappingOf(0).function(primary).action, ButtonAction::leftClick);
}

TEST_F(ButtonsScrollModelTest, ShortcutsNamesAndPathsAreKept) {
    const auto id = idOf(3);
    const CustomShortcut recorded{40, flag::control, "⌃K"};
    model->addFunction(id);
    model->setShortcut(id, secondary, recorded);
    model->setShortcutName(id, secondary, "Kill");
    model->setDictationShortcut(id, recorded);
    model->setApplication(id, "/Applications/A.app");
    model->setFolder(id, "/tmp");
    EXPECT_EQ(mappingOf(3).function(secondary).shortcut, recorded);
    EXPECT_EQ(mappingOf(3).function(secondary).shortcutName, "Kill");
    EXPECT_EQ(mappingOf(3).dictationShortcut, recorded);
    EXPECT_EQ(mappingOf(3).appPath, "/Applications/A.app");
    EXPECT_EQ(mappingOf(3).folderPath, "/tmp");
    model->setShortcut(id, secondary, std::nullopt);
    EXPECT_TRUE(mappingOf(3).function(secondary).shortcut.isEmpty());
}

// Detecting

TEST_F(ButtonsScrollModelTest, DetectedNewButtonIsAddedAndRevealedAndDoesNothingElse) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    model->detect();
    EXPECT_TRUE(model->isDetecting);
    EXPECT_EQ(press(9), TapAnswer::swallow);
    EXPECT_EQ(release(9), TapAnswer::swallow);
    EXPECT_FALSE(model->isDetecting);
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4, 9));
    EXPECT_THAT(revealed, ElementsAre(idOf(9)));
    model->detect();
    EXPECT_EQ(press(3), TapAnswer::swallow);
    EXPECT_EQ(revealed.back(), idOf(3));
    EXPECT_THAT(desktop.all<trace::PostedKey>(), IsEmpty()) << "what the button is mapped to does not happen";
}

TEST_F(ButtonsScrollModelTest, DetectedDirectionIsAddedUntilItExists) {
    model->detect();
    turn(-1);
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2, 3, 4, -100, -101));
    EXPECT_EQ(model->subTab(), ButtonsSubTab::scroll);
    EXPECT_EQ(revealed.back(), idOf(-101));
    model->detect();
    turn(1);
    EXPECT_EQ(numbers().size(), 7U);
    EXPECT_EQ(revealed.back(), idOf(-100));
}

TEST_F(ButtonsScrollModelTest, DetectingIsCancelledByTheUserAndWhenTheTapStops) {
    model->detect();
    model->cancelDetecting();
    EXPECT_EQ(press(9), TapAnswer::deliver);
    model->detect();
    monitor->stop();
    runDue();
    EXPECT_FALSE(model->isDetecting);
    EXPECT_FALSE(model->canDetect());
    model->detect();
    EXPECT_FALSE(model->isDetecting) << "nothing would ever be detected";
}

TEST_F(ButtonsScrollModelTest, ClosedEditorTakesNoPress) {
    model->detect();
    model.reset();
    EXPECT_EQ(press(9), TapAnswer::deliver);
}

// Lights

TEST_F(ButtonsScrollModelTest, HeldButtonIsLitUntilItsRelease) {
    press(4);
    EXPECT_TRUE(model->lights.isLit(4));
    EXPECT_FALSE(model->lights.isLit(3));
    runFor(10);
    EXPECT_TRUE(model->lights.isLit(4));
    release(4);
    EXPECT_FALSE(model->lights.isLit(4));
}

TEST_F(ButtonsScrollModelTest, WheelAndLeftButtonAreLitForAMoment) {
    turn(1);
    send(EventType::leftMouseDown, 0);
    EXPECT_TRUE(model->lights.isLit(-100));
    EXPECT_TRUE(model->lights.isLit(-102)) << "all mappings of the direction";
    EXPECT_FALSE(model->lights.isLit(-101));
    EXPECT_TRUE(model->lights.isLit(0));
    runFor(0.2);
    turn(1);
    runFor(0.25);
    EXPECT_TRUE(model->lights.isLit(-100)) << "turned on";
    EXPECT_FALSE(model->lights.isLit(0));
    runFor(0.3);
    EXPECT_FALSE(model->lights.isLit(-100));
}

TEST_F(ButtonsScrollModelTest, LightsGoOutWithTheTap) {
    press(4);
    monitor->stop();
    runDue();
    EXPECT_FALSE(model->lights.isLit(4));
}

// Why

TEST_F(ButtonsScrollModelTest, PressOfAnOpenRowIsExplainedWithItsModifiers) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    press(3);
    EXPECT_THAT(model->why(idOf(3), AppLanguage::english), IsEmpty()) << "the row is closed";
    model->toggleExpanded(idOf(3));
    press(3, flag::shift);
    const auto steps = model->why(idOf(3), AppLanguage::english);
    EXPECT_THAT(steps, testing::Contains("Held: Shift"));
    EXPECT_THAT(steps, testing::Contains("The press is swallowed and runs 'Copy'"));
    EXPECT_THAT(model->why(idOf(3), AppLanguage::spanish), testing::Contains("Pulsados: Shift"));
    EXPECT_THAT(model->why(idOf(4), AppLanguage::english), IsEmpty());
    model->setAction(idOf(3), primary, ButtonAction::paste);
    EXPECT_EQ(model->why(idOf(3), AppLanguage::english), steps) << "that very press";
}

// Try it

TEST_F(ButtonsScrollModelTest, FunctionIsPerformedOnceAfterTwoSecondsAndTheSentenceSaysWhatWasSent) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    model->trial.toggle(idOf(3), primary);
    EXPECT_TRUE(model->isBusy());
    EXPECT_EQ(model->trial.sentence(AppLanguage::english), "Performed in 2 s");
    runFor(1.5);
    EXPECT_EQ(model->trial.sentence(AppLanguage::spanish), "Se ejecuta en 1 s");
    EXPECT_THAT(desktop.all<trace::PostedKey>(), IsEmpty());
    runFor(0.6);
    desktop.time.runUntilBackgroundIsEmpty();
    const auto sent = desktop.all<trace::PostedKey>().size();
    EXPECT_GT(sent, 0U);
    EXPECT_EQ(model->trial.sentence(AppLanguage::english), "Copy. Sent: Control+C.");
    EXPECT_EQ(model->trial.sentence(AppLanguage::spanish), "Copiar. Se envió: Control+C.");
    EXPECT_FALSE(model->isBusy());
    runFor(10);
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_EQ(desktop.all<trace::PostedKey>().size(), sent);
}

TEST_F(ButtonsScrollModelTest, TrialSaysWhatATerminalGets) {
    desktop.bringToFront("gnome-terminal-server");
    model->setAction(idOf(3), primary, ButtonAction::copy);
    model->trial.toggle(idOf(3), primary);
    runFor(2.1);
    EXPECT_EQ(model->trial.sentence(AppLanguage::english), "Copy. Sent to a terminal: Control+Shift+C.");
}

TEST_F(ButtonsScrollModelTest, SecondClickCancelsTheTrialAndSoDoesRemovingTheRow) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    model->trial.toggle(idOf(3), primary);
    model->trial.toggle(idOf(3), primary);
    EXPECT_FALSE(model->trial.isCountingDown());
    model->trial.toggle(idOf(3), primary);
    model->remove(idOf(3));
    runFor(3);
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(desktop.all<trace::PostedKey>(), IsEmpty());
    EXPECT_EQ(model->trial.sentence(AppLanguage::english), "");
}

TEST_F(ButtonsScrollModelTest, TrialBehindALockedScreenSaysThatNothingWasDone) {
    model->setAction(idOf(3), primary, ButtonAction::copy);
    model->trial.toggle(idOf(3), primary);
    desktop.changeSession(true, true);
    runFor(3);
    EXPECT_EQ(model->trial.sentence(AppLanguage::english), "Nothing was done: the session is not in use");
}

}  // namespace
}  // namespace trelvan
