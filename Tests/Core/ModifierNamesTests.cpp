#include "Core/ModifierNames.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(ModifierNamesTest, EveryShownAndStoredNameIsUnderstood) {
    for (const auto& [flag, trigger] : modifiers) {
        for (const auto name : {rawValue(trigger), displayName(trigger)}) {
            const auto found = modifierNamed(name);
            ASSERT_TRUE(found) << name;
            EXPECT_EQ(found->flag, flag) << name;
            EXPECT_EQ(found->trigger, trigger) << name;
        }
    }
}

TEST(ModifierNamesTest, NamesOfOtherSystemsAreUnderstood) {
    for (const auto* name : {"super", "meta", "Cmd", "WIN", "⌘"})
        EXPECT_EQ(readModifiers(name).flags, flag::command) << name;
    for (const auto* name : {"ctrl", "CTRL", "⌃"})
        EXPECT_EQ(readModifiers(name).flags, flag::control) << name;
    for (const auto* name : {"alt", "opt", "Opción"})
        EXPECT_EQ(readModifiers(name).flags, flag::option) << name;
    EXPECT_EQ(readModifiers("Mayús").flags, flag::shift);
    EXPECT_EQ(readModifiers("Función").flags, flag::function);
}

TEST(ModifierNamesTest, NamesAreJoinedByPlusOrComma) {
    EXPECT_EQ(readModifiers("ctrl+Shift").flags, flag::control | flag::shift);
    EXPECT_EQ(readModifiers("ctrl, alt").flags, flag::control | flag::option);
    EXPECT_EQ(readModifiers("shift,shift").flags, flag::shift);
    EXPECT_EQ(readModifiers("").flags, 0U);
    EXPECT_EQ(readModifiers("").unknown, "");
}

TEST(ModifierNamesTest, UnknownPartIsNamed) {
    EXPECT_EQ(readModifiers("shift+hyper").unknown, "hyper");
    EXPECT_EQ(readModifiers("shift++alt").unknown, "+alt");
    EXPECT_EQ(nearestModifierName("contrl"), "control");
    EXPECT_EQ(nearestModifierName("hyper"), std::nullopt);
}

TEST(ModifierNamesTest, CombinationIsWrittenWithTheShownNames) {
    EXPECT_EQ(namesOf(flag::shift | flag::control | flag::option), "Control+Alt+Shift");
    EXPECT_EQ(namesOf(0), "");
}

}  // namespace
}  // namespace trelvan
