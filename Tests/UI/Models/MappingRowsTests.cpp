#include "UI/Models/FunctionSlots.hpp"
#include "UI/Models/MappingRows.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using Trigger = ButtonModifierTrigger;
using enum FunctionSlot;
using testing::ElementsAre;

ButtonMapping mappingOf(std::int64_t number, std::string label = {}) {
    return ButtonMapping::unassigned(Uuid::version4({1}), number, std::move(label));
}

TEST(MappingTextTest, ScrollMappingWithoutALabelIsTitledScroll) {
    EXPECT_EQ(mappingTitle(mappingOf(-100, " \n ")), "Scroll");
    EXPECT_EQ(mappingTitle(mappingOf(-101, " Scroll Down 1\n")), "Scroll Down 1");
    EXPECT_EQ(mappingTitle(mappingOf(3, "Botón extra 1")), "B3:");
    EXPECT_EQ(spokenTitle(mappingOf(3), AppLanguage::spanish), "Botón 3");
}

TEST(MappingTextTest, NumbersBelowMinus99AreScrollMappings) {
    EXPECT_EQ(subTabOf(mappingOf(-100)), ButtonsSubTab::scroll);
    EXPECT_EQ(subTabOf(mappingOf(-99)), ButtonsSubTab::buttons);
}

TEST(MappingTextTest, IconsAreThoseOfTheButtons) {
    std::vector<std::string_view> icons;
    for (const auto number : {-100, 0, 1, 2, 3, 4, 5}) icons.push_back(buttonIcon(mappingOf(number)));
    EXPECT_THAT(icons, ElementsAre("arrow.up.arrow.down.circle", "cursorarrow.click", "cursorarrow.click.2",
                                   "circle.circle", "1.circle", "2.circle", "circle"));
}

TEST(MappingTextTest, NextButtonIsTheLowestFreeOneOf2To32OrOnePastTheLargest) {
    const auto next = [](const std::vector<std::int64_t>& numbers) {
        std::vector<ButtonMapping> mappings;
        for (const auto number : numbers) mappings.push_back(mappingOf(number));
        return nextAutoButtonNumber(mappings);
    };
    EXPECT_EQ(next({}), 2);
    EXPECT_EQ(next({2, 3, 5}), 4);
    EXPECT_EQ(next({0, 1, -100}), 2);
    std::vector<std::int64_t> all;
    for (int number = 2; number <= 32; ++number) all.push_back(number);
    EXPECT_EQ(next(all), 33);
    all.push_back(40);
    EXPECT_EQ(next(all), 41);
}

TEST(FunctionSlotsTest, FunctionWithoutKeysIsMutedAndNotDoubled) {
    auto mapping = mappingOf(3);
    mapping.functionSlots = 4;
    EXPECT_FALSE(isMuted(mapping, primary));
    EXPECT_TRUE(isMuted(mapping, secondary));
    EXPECT_FALSE(hasDuplicateFunction(mapping, secondary));
    mapping.function(secondary).trigger2 = Trigger::shift;
    EXPECT_FALSE(isMuted(mapping, secondary));
    mapping.function(quaternary).trigger1 = Trigger::shift;
    EXPECT_TRUE(hasDuplicateFunction(mapping, secondary)) << "whichever of the two pickers it is in";
    EXPECT_TRUE(hasDuplicateFunction(mapping, quaternary));
    mapping.functionSlots = 3;
    EXPECT_FALSE(hasDuplicateFunction(mapping, secondary))
        << "a function that is not in use asks for nothing";
}

TEST(FunctionSlotsTest, RemovedFunctionIsFollowedByTheOnesBehindIt) {
    auto mapping = mappingOf(3);
    mapping.functionSlots = 4;
    mapping.secondaryTrigger3 = Trigger::command;
    mapping.function(secondary).action = ButtonAction::copy;
    mapping.function(tertiary).action = ButtonAction::customShortcut;
    mapping.function(tertiary).trigger1 = Trigger::shift;
    mapping.function(tertiary).shortcut = {40, flag::control, "⌃K"};
    mapping.function(tertiary).shortcutName = "K";
    mapping.function(quaternary).action = ButtonAction::undo;
    removeFunction(mapping, secondary);
    EXPECT_EQ(mapping.functionSlots, 3);
    EXPECT_EQ(mapping.function(secondary).action, ButtonAction::customShortcut);
    EXPECT_EQ(mapping.function(secondary).trigger1, Trigger::shift);
    EXPECT_EQ(mapping.function(secondary).shortcut.displayString, "⌃K");
    EXPECT_EQ(mapping.function(secondary).shortcutName, "K");
    EXPECT_EQ(mapping.secondaryTrigger3, Trigger::none);
    EXPECT_EQ(mapping.function(tertiary).action, ButtonAction::undo);
    EXPECT_EQ(mapping.function(quaternary).action, ButtonAction::none);
    removeFunction(mapping, primary);
    removeFunction(mapping, quaternary);
    EXPECT_EQ(mapping.functionSlots, 3) << "the main function and one that is not there stay";
}

TEST(FunctionSlotsTest, AddedFunctionIsEmptyWhateverTheSlotHeld) {
    auto mapping = mappingOf(3);
    mapping.function(secondary).action = ButtonAction::copy;
    addFunction(mapping);
    EXPECT_EQ(mapping.functionSlots, 2);
    EXPECT_EQ(mapping.function(secondary).action, ButtonAction::none);
    for (int times = 0; times < 4; ++times) addFunction(mapping);
    EXPECT_EQ(mapping.functionSlots, 4);
}

TEST(MappingRowsTest, ClosedRowSumsItsFunctionsUp) {
    auto mapping = mappingOf(3);
    mapping.functionSlots = 3;
    mapping.function(primary).action = ButtonAction::copy;
    mapping.function(secondary).action = ButtonAction::customShortcut;
    mapping.function(secondary).trigger1 = Trigger::command;
    mapping.function(secondary).trigger2 = Trigger::shift;
    mapping.function(secondary).shortcutName = "Find";
    mapping.function(tertiary).action = ButtonAction::paste;
    const auto row = makeRow(mapping, false, AppLanguage::spanish);
    EXPECT_THAT(row.summary,
                ElementsAre(FunctionSummary{"", "Copiar", false}, FunctionSummary{"⇧⌘", "Find", false},
                            FunctionSummary{"", "Pegar", true}));
    EXPECT_TRUE(row.sections.empty());
    EXPECT_TRUE(row.canRemove);
    EXPECT_FALSE(row.isLocked);
}

TEST(MappingRowsTest, OpenRowShowsEachFunctionUnderItsTitle) {
    auto mapping = mappingOf(3);
    mapping.functionSlots = 4;
    const auto titles = [&](AppLanguage language) {
        std::vector<std::string_view> result;
        for (const auto& section : makeRow(mapping, true, language).sections) result.push_back(section.title);
        return result;
    };
    EXPECT_THAT(titles(AppLanguage::english),
                ElementsAre("Main Function", "Second Function", "Third Function", "Fourth Function"));
    EXPECT_THAT(titles(AppLanguage::spanish),
                ElementsAre("Función principal", "Función secundaria", "Función tercera", "Función cuarta"));
    const auto row = makeRow(mapping, true, AppLanguage::spanish);
    EXPECT_FALSE(row.canAddFunction);
    EXPECT_EQ(row.sections[3].removeHelp, "Quitar función cuarta");
    EXPECT_EQ(row.sections[0].removeHelp, "");
    EXPECT_EQ(row.sections[1].recorderLabel, "Shortcut 2:");
    EXPECT_EQ(row.sections[1].recorderID, mapping.id.text() + "-secondary");
    EXPECT_EQ(row.sections[0].recorderID, mapping.id.text() + "-main");
}

TEST(MappingRowsTest, ExtraEditorsFollowTheAction) {
    auto mapping = mappingOf(3);
    const auto editorFor = [&](ButtonAction action) {
        mapping.function(primary).action = action;
        return extraEditorFor(mapping, primary);
    };
    EXPECT_EQ(editorFor(ButtonAction::customShortcut), ExtraEditor::shortcut);
    EXPECT_EQ(editorFor(ButtonAction::launchApp), ExtraEditor::application);
    EXPECT_EQ(editorFor(ButtonAction::openFolder), ExtraEditor::folder);
    EXPECT_EQ(editorFor(ButtonAction::dictation), ExtraEditor::dictation);
    EXPECT_EQ(editorFor(ButtonAction::copy), ExtraEditor::none);
}

TEST(MappingRowsTest, LeftAndRightAreLockedAndKeepNoShortcut) {
    for (const auto number : {0, 1}) {
        auto mapping = mappingOf(number);
        mapping.functionSlots = 2;
        mapping.function(secondary).action = ButtonAction::customShortcut;
        const auto row = makeRow(mapping, true, AppLanguage::english);
        EXPECT_TRUE(row.isLocked);
        EXPECT_FALSE(row.canRemove);
        EXPECT_TRUE(row.sections[0].isLocked);
        EXPECT_FALSE(row.sections[1].isLocked);
        EXPECT_EQ(row.sections[1].editor, ExtraEditor::notKept);
    }
}

}  // namespace
}  // namespace trelvan
