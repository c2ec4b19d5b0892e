#include "UI/Models/FunctionSlots.hpp"
#include "UI/Models/TriggerSentence.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace trelvan {
namespace {

using Trigger = ButtonModifierTrigger;
using enum FunctionSlot;

class TriggerSentenceTest : public testing::Test {
  protected:
    TriggerSentenceTest() { mapping.buttonNumber = 3; }

    void function(FunctionSlot slot, ButtonAction action, Trigger first = Trigger::none,
                  Trigger second = Trigger::none) {
        mapping.function(slot).action = action;
        mapping.function(slot).trigger1 = first;
        mapping.function(slot).trigger2 = second;
        mapping.functionSlots = std::max<std::int64_t>(mapping.functionSlots, static_cast<int>(slot) + 1);
    }
    std::string english(FunctionSlot slot) const {
        return triggerSentence(mapping, slot, AppLanguage::english).text;
    }
    std::string spanish(FunctionSlot slot) const {
        return triggerSentence(mapping, slot, AppLanguage::spanish).text;
    }

    ButtonMapping mapping;
};

TEST_F(TriggerSentenceTest, OnlyFunctionWithoutKeysFiresAtEveryPress) {
    function(primary, ButtonAction::copy);
    EXPECT_EQ(english(primary), "At every press");
    EXPECT_EQ(spanish(primary), "En cada pulsación");
    mapping.buttonNumber = -100;
    EXPECT_EQ(english(primary), "At every turn");
}

TEST_F(TriggerSentenceTest, MainFunctionGivesWayToTheKeysOfTheOthers) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste, Trigger::shift);
    function(tertiary, ButtonAction::cut, Trigger::command, Trigger::shift);
    EXPECT_EQ(english(primary), "At every press, unless the keys of function 2 or function 3 are held");
    EXPECT_EQ(english(secondary), "While Shift is held, unless the keys of function 3 are held");
    EXPECT_EQ(english(tertiary), "While Shift and Command are held");
    EXPECT_EQ(spanish(tertiary), "Mientras se mantienen Shift y Command");
    EXPECT_EQ(spanish(secondary),
              "Mientras se mantiene Shift, salvo que se mantengan las teclas de la función 3");
}

TEST_F(TriggerSentenceTest, OptionIsNamedByItsKeyToo) {
    function(primary, ButtonAction::copy, Trigger::option);
    EXPECT_EQ(english(primary), "While Option (Alt) is held");
}

TEST_F(TriggerSentenceTest, MutedFunctionNeverFiresBesideAMainFunctionWithoutKeys) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste);
    const auto sentence = triggerSentence(mapping, secondary, AppLanguage::english);
    EXPECT_FALSE(sentence.fires);
    EXPECT_EQ(sentence.text, "Never: the main function asks for no key and comes first");
}

TEST_F(TriggerSentenceTest, MutedFunctionStandsInWhereTheMainFunctionAsksForKeys) {
    function(primary, ButtonAction::copy, Trigger::shift);
    function(secondary, ButtonAction::paste);
    function(tertiary, ButtonAction::cut);
    function(quaternary, ButtonAction::undo, Trigger::command);
    const auto sentence = triggerSentence(mapping, secondary, AppLanguage::english);
    EXPECT_TRUE(sentence.fires);
    EXPECT_EQ(sentence.text,
              "When the main function's keys are not held, unless the keys of function 4 are held");
    EXPECT_EQ(english(tertiary), "Never: function 2 asks for no key either and comes first");
}

TEST_F(TriggerSentenceTest, OfTwoThatAskForTheSameTheHigherFires) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste, Trigger::shift, Trigger::command);
    function(tertiary, ButtonAction::cut, Trigger::command, Trigger::shift);
    EXPECT_EQ(english(secondary), "Never: function 3 asks for the same and comes first");
    EXPECT_EQ(english(tertiary),
              "While Shift and Command are held. Function 2 asks for the same and gives way");
    EXPECT_EQ(spanish(tertiary), "Mientras se mantienen Shift y Command. La función 2 pide lo mismo y cede");
}

TEST_F(TriggerSentenceTest, HigherFunctionThatNeedsLessLeavesNothing) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste, Trigger::shift, Trigger::command);
    function(quaternary, ButtonAction::cut, Trigger::shift);
    EXPECT_EQ(english(secondary), "Never: function 4 needs only Shift and comes first");
}

TEST_F(TriggerSentenceTest, HigherFunctionWithoutAnActionIsInNobodysWay) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste, Trigger::shift);
    function(tertiary, ButtonAction::none, Trigger::command);
    EXPECT_EQ(english(secondary), "While Shift is held");
    EXPECT_EQ(english(tertiary), "Never, until an action is chosen");
}

TEST_F(TriggerSentenceTest, LeftButtonKeepsItsClickAndNeedsKeysForTheOthers) {
    mapping.buttonNumber = 0;
    function(primary, ButtonAction::leftClick);
    function(secondary, ButtonAction::paste);
    function(tertiary, ButtonAction::cut, Trigger::control);
    EXPECT_EQ(english(primary), "At every press, unless the keys of function 3 are held");
    EXPECT_EQ(english(secondary), "Never: this button keeps its own click, so a key must be chosen");
    EXPECT_EQ(english(tertiary), "While Control is held");
}

TEST_F(TriggerSentenceTest, KeyThatIsNotReportedHereNeverFires) {
    function(primary, ButtonAction::copy);
    function(secondary, ButtonAction::paste, Trigger::shift, Trigger::function);
    EXPECT_EQ(
        triggerSentence(mapping, secondary, AppLanguage::english, combinationModifiers & ~flag::function)
            .text,
        "Never here: this system does not report Fn");
}

/// Every mapping of a small world: what the sentence says about firing is what the resolution does.
TEST_F(TriggerSentenceTest, FiresAgreesWithTheResolutionForAllTriggersOfTwoKeys) {
    constexpr std::array triggers{Trigger::none, Trigger::shift, Trigger::command};
    constexpr std::array<EventFlags, 4> held{0, flag::shift, flag::command, flag::shift | flag::command};
    for (int code = 0; code < 3 * 3 * 3 * 3 * 3 * 3; ++code) {
        mapping = {};
        mapping.buttonNumber = 3;
        int rest = code;
        for (const auto slot : {primary, secondary, tertiary}) {
            const auto first = triggers[static_cast<std::size_t>(rest % 3)];
            rest /= 3;
            const auto second = triggers[static_cast<std::size_t>(rest % 3)];
            rest /= 3;
            function(slot, ButtonAction::copy, first, second);
        }
        for (const auto slot : {primary, secondary, tertiary}) {
            const bool fires = std::ranges::any_of(held, [&](EventFlags flags) {
                return resolvedAction(mapping, flags) == ResolvedFunction{ButtonAction::copy, slot};
            });
            EXPECT_EQ(triggerSentence(mapping, slot, AppLanguage::english).fires, fires) << code;
        }
    }
}

}  // namespace
}  // namespace trelvan
