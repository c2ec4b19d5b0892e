#include "Core/MappingExplanation.hpp"

#include <gmock/gmock.h>

namespace trelvan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using Trigger = ButtonModifierTrigger;

class MappingExplanationTest : public testing::Test {
  protected:
    ButtonMapping& map(std::int64_t number, ButtonAction action) {
        ButtonMapping mapping;
        mapping.buttonNumber = number;
        mapping.action() = action;
        profile.mappings.push_back(mapping);
        return profile.mappings.back();
    }
    MappingExplanation explain(std::int64_t button, EventFlags flags = 0,
                               AppLanguage language = AppLanguage::english) const {
        return explainPress(ProfileSnapshot(profile), button, flags, linuxShortcuts, language);
    }

    TrackballProfile profile{.id = {}, .name = "Work", .mappings = {}, .smartButton = {}};
};

TEST_F(MappingExplanationTest, ButtonWithoutMappingPasses) {
    const auto explanation = explain(7);
    EXPECT_FALSE(explanation.handled);
    EXPECT_THAT(explanation.why, ElementsAre("Active profile: 'Work'", "No modifier is held",
                                             "Button 7 has no mapping: the press passes"));
}

TEST_F(MappingExplanationTest, PrimaryFunctionFiresAndTheShortcutIsNamed) {
    map(3, ButtonAction::copy);
    const auto explanation = explain(3, flag::shift);
    EXPECT_TRUE(explanation.handled);
    EXPECT_EQ(explanation.function, (ResolvedFunction{ButtonAction::copy, FunctionSlot::primary}));
    EXPECT_THAT(explanation.why, ElementsAre("Active profile: 'Work'", "Held: Shift", "Functions in use: 1",
                                             "Function 1 ('Copy'): asks for no modifier",
                                             "The press is swallowed and runs 'Copy'", "Sent: Control+C",
                                             "In a terminal: Control+Shift+C, or that terminal's own way"));
}

TEST_F(MappingExplanationTest, ToolOfTheDesktopIsAskedForFirst) {
    map(3, ButtonAction::lockWorkstation);
    EXPECT_EQ(explain(3).why.back(), "Asked of the desktop; where it has no way of its own, sent: Command+L");
    EXPECT_EQ(explain(3, 0, AppLanguage::spanish).why.back(),
              "Se pide al escritorio; si no tiene forma propia, se envía: Command+L");
    EXPECT_EQ(explainPress(ProfileSnapshot(profile), 3, 0, macShortcuts, AppLanguage::english).why.back(),
              "Sent: Control+Command+Q");
}

TEST_F(MappingExplanationTest, TerminalsAreSaidToGetSomethingElse) {
    map(3, ButtonAction::cut);
    map(4, ButtonAction::undo);
    EXPECT_EQ(explain(3).why.back(), "In a terminal: Control+Shift+C, or that terminal's own way");
    EXPECT_EQ(explain(4).why.back(), "In a terminal nothing is sent: Control+Z would stop the program in it");
    EXPECT_EQ(explain(4, 0, AppLanguage::spanish).why.back(),
              "En un terminal no se envía nada: Control+Z detendría el programa que hay en él");
    EXPECT_EQ(explainPress(ProfileSnapshot(profile), 4, 0, macShortcuts, AppLanguage::english).why.back(),
              "Sent: Command+Z");
}

TEST_F(MappingExplanationTest, HotKeyOfTheDesktopIsWhatItSendsWhereItIsNotAskedItself) {
    map(3, ButtonAction::lockWorkstation);
    map(4, ButtonAction::showDesktop);
    const NamedHotKeys known = [](int id) -> std::optional<NamedHotKey> {
        if (id == hotkey::lockScreen) return NamedHotKey{flag::control | flag::option, "L"};
        if (id == 37) return NamedHotKey{flag::command, "D"};
        return std::nullopt;
    };
    const auto last = [&](std::int64_t button, AppLanguage language) {
        return explainPress(ProfileSnapshot(profile), button, 0, linuxShortcuts, language, known).why.back();
    };
    EXPECT_EQ(last(3, AppLanguage::english),
              "Asked of the desktop; where it has no way of its own, sent: its hot key Control+Alt+L");
    EXPECT_EQ(last(4, AppLanguage::spanish),
              "Se pide al escritorio; si no tiene forma propia, se envía: su atajo Command+D");
}

TEST_F(MappingExplanationTest, ViewWithoutAHotKeySendsNothingOnLinux) {
    map(3, ButtonAction::missionControl);
    EXPECT_EQ(explain(3).why.back(),
              "Asked of the desktop; where it has no way of its own, nothing is sent: it has no hot key");
    EXPECT_EQ(explainPress(ProfileSnapshot(profile), 3, 0, macShortcuts, AppLanguage::english).why.back(),
              "It has no hot key: its usual keys or application are tried");
}

TEST_F(MappingExplanationTest, NamesCannotSteerATerminal) {
    profile.name = "a\n\x1b[2J";
    EXPECT_EQ(explain(3).why.front(), R"(Active profile: 'a\n\x1b[2J')");
}

TEST_F(MappingExplanationTest, ActionWithoutKeyOrPathIsSaidToDoNothing) {
    map(3, ButtonAction::customShortcut);
    map(4, ButtonAction::dictation);
    map(5, ButtonAction::launchApp);
    map(6, ButtonAction::customShortcut).shortcut() = {
        .keyCode = 8, .modifiersRawValue = 0, .displayString = "C"};
    EXPECT_EQ(explain(3).why.back(), "Nothing is sent: no shortcut has been recorded");
    EXPECT_TRUE(explain(3).handled);
    EXPECT_EQ(explain(4).why.back(), "Nothing is sent: no shortcut has been recorded");
    EXPECT_EQ(explain(5, 0, AppLanguage::spanish).why.back(),
              "No se abre nada: no se ha elegido ninguna aplicación");
    EXPECT_EQ(explain(6).why.back(), "With: C");
}

TEST_F(MappingExplanationTest, SpanishSaysTheSame) {
    map(3, ButtonAction::back);
    EXPECT_THAT(explain(3, 0, AppLanguage::spanish).why,
                ElementsAre("Perfil activo: 'Work'", "No hay ningún modificador pulsado",
                            "Funciones en uso: 1", "Función 1 ('Atrás'): no pide ningún modificador",
                            "La pulsación se retiene y ejecuta 'Atrás'", "Se envía: Alt+Izquierda"));
}

TEST_F(MappingExplanationTest, TriggersThatAreNotHeldAreNamedAndHigherSlotsComeFirst) {
    auto& mapping = map(3, ButtonAction::copy);
    mapping.functionSlots = 3;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.secondaryTrigger1() = Trigger::shift;
    mapping.tertiaryAction() = ButtonAction::cut;
    mapping.tertiaryTrigger1() = Trigger::shift;
    mapping.tertiaryTrigger2() = Trigger::command;
    const auto explanation = explain(3, flag::shift);
    EXPECT_EQ(explanation.function.slot, FunctionSlot::secondary);
    EXPECT_THAT(explanation.why, ElementsAre("Active profile: 'Work'", "Held: Shift", "Functions in use: 3",
                                             "Function 3 ('Cut'): Command is not held",
                                             "Function 2 ('Paste'): Shift is held: it fires",
                                             "The press is swallowed and runs 'Paste'", "Sent: Control+V",
                                             "In a terminal: Control+Shift+V, or that terminal's own way"));
}

TEST_F(MappingExplanationTest, StandInIsSaidToBeOne) {
    auto& mapping = map(3, ButtonAction::copy);
    mapping.primaryTrigger1() = Trigger::option;
    mapping.functionSlots = 2;
    mapping.secondaryAction() = ButtonAction::paste;
    EXPECT_THAT(explain(3).why,
                ElementsAre("Active profile: 'Work'", "No modifier is held", "Functions in use: 2",
                            "Function 2 ('Paste'): has no triggers, so it can only stand in",
                            "Function 1 ('Copy'): Alt is not held",
                            "The primary's modifiers are not held: the lowest function without triggers "
                            "stands in",
                            "The press is swallowed and runs 'Paste'", "Sent: Control+V",
                            "In a terminal: Control+Shift+V, or that terminal's own way"));
}

TEST_F(MappingExplanationTest, OwnClickOfTheLeftButtonPasses) {
    map(0, ButtonAction::leftClick);
    const auto explanation = explain(0);
    EXPECT_FALSE(explanation.handled);
    EXPECT_THAT(explanation.why, Contains("Nothing fires: the press passes"));
}

TEST_F(MappingExplanationTest, SecondOfAScrollGroupIsReached) {
    map(-100, ButtonAction::none);
    map(-102, ButtonAction::undo);
    const auto explanation = explain(-100);
    EXPECT_TRUE(explanation.handled);
    EXPECT_EQ(explanation.function.action, ButtonAction::undo);
    EXPECT_FALSE(explain(-101).handled);
}

TEST_F(MappingExplanationTest, VerdictIsThatOfTheResolutionForAllSlotsAndModifiers) {
    auto& mapping = map(5, ButtonAction::copy);
    mapping.primaryTrigger1() = Trigger::control;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.tertiaryAction() = ButtonAction::cut;
    mapping.tertiaryTrigger1() = Trigger::shift;
    mapping.quaternaryAction() = ButtonAction::undo;
    mapping.quaternaryTrigger2() = Trigger::function;
    for (int slots = 1; slots <= 4; ++slots) {
        profile.mappings[0].functionSlots = slots;
        for (EventFlags flags = 0; flags <= 0xF; ++flags) {
            const EventFlags held =
                ((flags & 1U) != 0 ? flag::control : 0) | ((flags & 2U) != 0 ? flag::shift : 0) |
                ((flags & 4U) != 0 ? flag::function : 0) | ((flags & 8U) != 0 ? flag::command : 0);
            const auto expected = resolvedAction(profile.mappings[0], held);
            const auto explanation = explain(5, held);
            EXPECT_EQ(explanation.function, expected);
            EXPECT_EQ(explanation.handled, expected.action != ButtonAction::none);
            EXPECT_FALSE(explanation.why.empty());
        }
    }
}

TEST_F(MappingExplanationTest, FunctionIsExplainedAloneWithItsOwnShortcut) {
    ButtonMapping mapping;
    mapping.action() = ButtonAction::copy;
    mapping.secondaryAction() = ButtonAction::customShortcut;
    mapping.secondaryShortcut() = {40, flag::control, "⌃K"};
    mapping.tertiaryAction() = ButtonAction::launchApp;
    const auto explained = [&](FunctionSlot slot) {
        return explainFunction(mapping, slot, macShortcuts, AppLanguage::english);
    };
    EXPECT_EQ(explained(FunctionSlot::primary), std::vector<std::string>{"Sent: Command+C"});
    EXPECT_EQ(explained(FunctionSlot::secondary), std::vector<std::string>{"With: ⌃K"});
    EXPECT_EQ(explained(FunctionSlot::tertiary),
              std::vector<std::string>{"Nothing is opened: no application has been chosen"});
}

}  // namespace
}  // namespace trelvan
