#include "Core/MappingResolution.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

using Trigger = ButtonModifierTrigger;

ButtonMapping fourSlots() {
    ButtonMapping mapping;
    mapping.functionSlots = 4;
    mapping.action() = ButtonAction::copy;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.tertiaryAction() = ButtonAction::cut;
    mapping.quaternaryAction() = ButtonAction::undo;
    return mapping;
}

TEST(MappingResolutionTest, OneSlotWithoutTriggersFiresWhateverIsHeld) {
    ButtonMapping mapping;
    mapping.action() = ButtonAction::copy;
    const ResolvedFunction copy{ButtonAction::copy, FunctionSlot::primary};
    EXPECT_EQ(resolvedAction(mapping, 0), copy);
    EXPECT_EQ(resolvedAction(mapping, ~EventFlags{0}), copy);
}

TEST(MappingResolutionTest, EachTriggerStandsForItsBit) {
    const std::pair<Trigger, EventFlags> bits[] = {{Trigger::shift, 0x20000},
                                                   {Trigger::control, 0x40000},
                                                   {Trigger::option, 0x80000},
                                                   {Trigger::command, 0x100000},
                                                   {Trigger::function, 0x800000}};
    for (const auto& [trigger, bit] : bits) {
        ButtonMapping mapping = fourSlots();
        mapping.secondaryTrigger1() = trigger;
        EXPECT_TRUE(areSecondaryModifiersActive(mapping, bit));
        EXPECT_FALSE(areSecondaryModifiersActive(mapping, ~bit));
    }
}

TEST(MappingResolutionTest, TwoTriggersNeedBothAndExtraOnesDoNotHurt) {
    ButtonMapping mapping = fourSlots();
    mapping.tertiaryTrigger1() = Trigger::shift;
    mapping.tertiaryTrigger2() = Trigger::command;
    EXPECT_FALSE(areTertiaryModifiersActive(mapping, flag::shift));
    EXPECT_FALSE(areTertiaryModifiersActive(mapping, flag::command));
    EXPECT_TRUE(areTertiaryModifiersActive(mapping, flag::shift | flag::command));
    EXPECT_TRUE(areTertiaryModifiersActive(mapping, flag::shift | flag::command | flag::control));
}

TEST(MappingResolutionTest, OnlyTheSecondTriggerSetCounts) {
    ButtonMapping mapping = fourSlots();
    mapping.quaternaryTrigger2() = Trigger::option;
    EXPECT_TRUE(areQuaternaryModifiersActive(mapping, flag::option));
    EXPECT_FALSE(areQuaternaryModifiersActive(mapping, 0));
}

TEST(MappingResolutionTest, SlotWithoutTriggersIsNeverActiveButThePrimaryMatches) {
    const ButtonMapping mapping = fourSlots();
    EXPECT_TRUE(isPrimaryModifiersMatch(mapping, 0));
    EXPECT_FALSE(areSecondaryModifiersActive(mapping, ~EventFlags{0}));
    EXPECT_FALSE(areTertiaryModifiersActive(mapping, ~EventFlags{0}));
    EXPECT_FALSE(areQuaternaryModifiersActive(mapping, ~EventFlags{0}));
}

TEST(MappingResolutionTest, PrimaryWithTriggerAndDefaultSecondary) {
    ButtonMapping mapping = fourSlots();
    mapping.functionSlots = 2;
    mapping.primaryTrigger1() = Trigger::shift;
    EXPECT_EQ(resolvedAction(mapping, 0), (ResolvedFunction{ButtonAction::paste, FunctionSlot::secondary}));
    EXPECT_EQ(resolvedAction(mapping, flag::shift),
              (ResolvedFunction{ButtonAction::copy, FunctionSlot::primary}));
}

TEST(MappingResolutionTest, NothingMatchesGivesNonePrimary) {
    ButtonMapping mapping;
    mapping.action() = ButtonAction::copy;
    mapping.primaryTrigger1() = Trigger::shift;
    EXPECT_EQ(resolvedAction(mapping, 0), (ResolvedFunction{ButtonAction::none, FunctionSlot::primary}));
}

TEST(MappingResolutionTest, HighestTriggeredSlotWins) {
    ButtonMapping mapping = fourSlots();
    mapping.secondaryTrigger1() = Trigger::shift;
    mapping.tertiaryTrigger1() = Trigger::command;
    mapping.quaternaryTrigger1() = Trigger::shift;
    mapping.quaternaryTrigger2() = Trigger::command;
    EXPECT_EQ(resolvedAction(mapping, flag::shift).slot, FunctionSlot::secondary);
    EXPECT_EQ(resolvedAction(mapping, flag::command).slot, FunctionSlot::tertiary);
    EXPECT_EQ(resolvedAction(mapping, flag::shift | flag::command),
              (ResolvedFunction{ButtonAction::undo, FunctionSlot::quaternary}));
}

TEST(MappingResolutionTest, SlotsBeyondTheNumberInUseAreNeverConsidered) {
    ButtonMapping mapping = fourSlots();
    mapping.secondaryTrigger1() = mapping.tertiaryTrigger1() = mapping.quaternaryTrigger1() = Trigger::shift;
    const FunctionSlot expected[] = {FunctionSlot::primary, FunctionSlot::secondary, FunctionSlot::tertiary,
                                     FunctionSlot::quaternary};
    for (int slots = 1; slots <= 4; ++slots) {
        mapping.functionSlots = slots;
        EXPECT_EQ(resolvedAction(mapping, flag::shift).slot, expected[slots - 1]) << slots;
    }
}

TEST(MappingResolutionTest, SlotWithoutActionNeverFires) {
    ButtonMapping mapping = fourSlots();
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::none;
    mapping.secondaryTrigger1() = Trigger::shift;
    EXPECT_EQ(resolvedAction(mapping, flag::shift).slot, FunctionSlot::primary);
    EXPECT_EQ(resolvedAlternateAction(mapping, flag::shift), std::nullopt);
}

TEST(MappingResolutionTest, ThirdSecondaryTriggerHasNoEffect) {
    ButtonMapping mapping = fourSlots();
    mapping.functionSlots = 2;
    mapping.secondaryTrigger3 = Trigger::command;
    EXPECT_EQ(resolvedAction(mapping, flag::command).slot, FunctionSlot::primary);
    EXPECT_EQ(resolvedAlternateAction(mapping, flag::command), std::nullopt);
    // Nor does it keep the slot from being a default one.
    mapping.primaryTrigger1() = Trigger::shift;
    EXPECT_EQ(resolvedAction(mapping, 0).slot, FunctionSlot::secondary);
}

TEST(MappingResolutionTest, LowestDefaultSlotWins) {
    ButtonMapping mapping = fourSlots();
    mapping.primaryTrigger1() = Trigger::shift;
    EXPECT_EQ(resolvedAction(mapping, 0).slot, FunctionSlot::secondary);
    mapping.secondaryTrigger2() = Trigger::option;
    EXPECT_EQ(resolvedAction(mapping, 0).slot, FunctionSlot::tertiary);
    mapping.tertiaryAction() = ButtonAction::none;
    EXPECT_EQ(resolvedAction(mapping, 0).slot, FunctionSlot::quaternary);
    mapping.functionSlots = 3;
    EXPECT_EQ(resolvedAction(mapping, 0), (ResolvedFunction{ButtonAction::none, FunctionSlot::primary}));
}

TEST(MappingResolutionTest, MatchingPrimaryWithoutActionBeatsDefaultSlots) {
    ButtonMapping mapping = fourSlots();
    mapping.action() = ButtonAction::none;
    EXPECT_EQ(resolvedAction(mapping, 0), (ResolvedFunction{ButtonAction::none, FunctionSlot::primary}));
}

TEST(MappingResolutionTest, AlternateHasNeitherPrimaryNorDefaultSlots) {
    ButtonMapping mapping = fourSlots();
    EXPECT_EQ(resolvedAlternateAction(mapping, 0), std::nullopt);
    mapping.quaternaryTrigger1() = Trigger::control;
    EXPECT_EQ(resolvedAlternateAction(mapping, flag::control),
              (ResolvedFunction{ButtonAction::undo, FunctionSlot::quaternary}));
    mapping.functionSlots = 1;
    EXPECT_EQ(resolvedAlternateAction(mapping, flag::control), std::nullopt);
}

TEST(MappingResolutionTest, EachSlotHasItsOwnShortcut) {
    ButtonMapping mapping;
    mapping.shortcut().keyCode = 1;
    mapping.secondaryShortcut().keyCode = 2;
    mapping.tertiaryShortcut().keyCode = 3;
    mapping.quaternaryShortcut().keyCode = 4;
    EXPECT_EQ(mapping.function(FunctionSlot::primary).shortcut.keyCode, 1);
    EXPECT_EQ(mapping.function(FunctionSlot::secondary).shortcut.keyCode, 2);
    EXPECT_EQ(mapping.function(FunctionSlot::tertiary).shortcut.keyCode, 3);
    EXPECT_EQ(mapping.function(FunctionSlot::quaternary).shortcut.keyCode, 4);
}

}  // namespace
}  // namespace trelvan
