#include "Core/ButtonMapper.hpp"
#include "Support/MapperFixture.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using test::MapperFixture;
using testing::ElementsAre;
using testing::IsEmpty;
using Trigger = ButtonModifierTrigger;

class ButtonMapperTest : public MapperFixture {};

TEST_F(ButtonMapperTest, ButtonWithoutMappingIsNotHandled) {
    EXPECT_FALSE(press(5));
    EXPECT_THAT(desktop.messages(LogLevel::debug), ElementsAre("Botón 5 sin mapeo registrado"));
    EXPECT_FALSE(press(-100));
    EXPECT_EQ(desktop.messages(LogLevel::debug).back(), "Botón -100 sin mapeo registrado");
}

TEST_F(ButtonMapperTest, PrimaryActionIsLoggedPerformedAndHandled) {
    map(4, ButtonAction::copy);
    EXPECT_TRUE(press(4));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Copiar' para botón 4"));
    EXPECT_FALSE(keys().empty());
}

TEST_F(ButtonMapperTest, OtherSlotIsLoggedAsAlternate) {
    auto& mapping = map(4, ButtonAction::copy);
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.secondaryTrigger1() = Trigger::shift;
    EXPECT_TRUE(press(4, flag::shift));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Pegar' (alterna) para botón 4"));
}

TEST_F(ButtonMapperTest, OtherSlotWithTheSameActionIsLoggedAsPrimary) {
    auto& mapping = map(4, ButtonAction::copy);
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::copy;
    mapping.secondaryTrigger1() = Trigger::shift;
    EXPECT_TRUE(press(4, flag::shift));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Copiar' para botón 4"));
}

TEST_F(ButtonMapperTest, ResolvedNoneIsLoggedAndNotHandled) {
    map(4, ButtonAction::copy).primaryTrigger1() = Trigger::shift;
    EXPECT_FALSE(press(4));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Ninguna' (alterna) para botón 4"));
    EXPECT_THAT(keys(), IsEmpty());
    profile.mappings[0] = ButtonMapping{};
    profile.mappings[0].buttonNumber = 4;
    EXPECT_FALSE(press(4));
    EXPECT_EQ(desktop.messages(LogLevel::info).back(), "Ejecutando 'Ninguna' para botón 4");
}

TEST_F(ButtonMapperTest, EitherSourceOfModifiersIsEnough) {
    auto& mapping = map(4, ButtonAction::none);
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.secondaryTrigger1() = Trigger::shift;
    mapping.secondaryTrigger2() = Trigger::command;
    EXPECT_FALSE(press(4, flag::shift));
    desktop.modifierFlags = flag::command;
    EXPECT_TRUE(press(4, flag::shift));
    desktop.modifierFlags = flag::command | flag::shift;
    EXPECT_TRUE(press(4));
}

TEST_F(ButtonMapperTest, OnlyTheFirstMappingOfAButtonIsUsed) {
    map(4, ButtonAction::none);
    map(4, ButtonAction::copy);
    EXPECT_FALSE(press(4));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(ButtonMapperTest, ProfileIsAskedAtEachPress) {
    EXPECT_FALSE(press(4));
    map(4, ButtonAction::copy);
    EXPECT_TRUE(press(4));
}

// Left and right

TEST_F(ButtonMapperTest, OwnClickPassesWithoutModifiers) {
    map(0, ButtonAction::leftClick);
    map(1, ButtonAction::rightClick);
    EXPECT_FALSE(press(0));
    EXPECT_FALSE(press(1));
    EXPECT_THAT(desktop.entries, IsEmpty());
}

TEST_F(ButtonMapperTest, AdditionalFunctionOfLeftButtonFiresByModifiers) {
    auto& mapping = map(0, ButtonAction::leftClick);
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::copy;
    mapping.secondaryTrigger1() = Trigger::control;
    EXPECT_TRUE(press(0, flag::control));
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Ejecutando 'Copiar' (adicional) para botón 0"));
    EXPECT_FALSE(keys().empty());
}

TEST_F(ButtonMapperTest, DefaultSlotOfLeftButtonNeverFires) {
    auto& mapping = map(0, ButtonAction::leftClick);
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::copy;
    EXPECT_FALSE(press(0));
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(ButtonMapperTest, LeftButtonWithAnotherPrimaryTakesTheNormalPath) {
    map(0, ButtonAction::rightClick);
    EXPECT_TRUE(press(0));
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Ejecutando 'Click Derecho' para botón 0"));
}

// Without a press

TEST_F(ButtonMapperTest, FunctionIsPerformedWithoutAPress) {
    auto& mapping = map(4, ButtonAction::none);
    mapping.secondaryAction() = ButtonAction::copy;
    EXPECT_TRUE(mapper->perform(mapping, FunctionSlot::secondary));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(desktop.messages(LogLevel::info), ElementsAre("Probando 'Copiar' del botón 4"));
    EXPECT_FALSE(keys().empty());
}

TEST_F(ButtonMapperTest, NoFunctionIsPerformedBehindALockedScreen) {
    desktop.changeSession(true, true);
    EXPECT_FALSE(mapper->perform(map(4, ButtonAction::copy), FunctionSlot::primary));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_TRUE(keys().empty());
}

// Scroll

TEST_F(ButtonMapperTest, ScrollDirectionsAreSeparateGroups) {
    map(-101, ButtonAction::paste).buttonLabel = "Scroll Down 1";
    EXPECT_FALSE(press(-100));
    EXPECT_TRUE(press(-101));
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Ejecutando 'Pegar' para scroll 'Scroll Down 1'"));
}

TEST_F(ButtonMapperTest, SecondOfTheScrollGroupRunsWhenTheFirstResolvesToNone) {
    map(-100, ButtonAction::none).buttonLabel = "Scroll Up 1";
    map(-102, ButtonAction::copy).buttonLabel = "Scroll Up 2";
    EXPECT_TRUE(press(-100));
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Ejecutando 'Copiar' para scroll 'Scroll Up 2'"));
}

TEST_F(ButtonMapperTest, ScrollGroupWithoutActionsIsNotHandled) {
    map(-100, ButtonAction::none);
    map(-102, ButtonAction::none);
    EXPECT_FALSE(press(-100));
    EXPECT_THAT(desktop.entries, IsEmpty());
}

TEST_F(ButtonMapperTest, ScrollFunctionIsChosenByModifiers) {
    map(-100, ButtonAction::copy).primaryTrigger1() = Trigger::command;
    EXPECT_FALSE(press(-100));
    EXPECT_TRUE(press(-100, flag::command));
}

}  // namespace
}  // namespace trelvan
