#include "Core/Model/ButtonModifierTrigger.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

struct TriggerRow {
    ButtonModifierTrigger trigger;
    std::string_view rawValue;
    std::string_view displayName;
};

constexpr TriggerRow triggers[] = {
    {ButtonModifierTrigger::none, "Ninguno", "Ninguno"},
    {ButtonModifierTrigger::shift, "Shift", "Shift"},
    {ButtonModifierTrigger::option, "Option", "Alt"},
    {ButtonModifierTrigger::control, "Control", "Control"},
    {ButtonModifierTrigger::command, "Command", "Command"},
    {ButtonModifierTrigger::function, "Fn", "Fn"},
};

TEST(ButtonModifierTrigger, EveryCaseInOrderWithItsNames) {
    const auto cases = allCases<ButtonModifierTrigger>();
    ASSERT_EQ(cases.size(), std::size(triggers));
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(cases[index], triggers[index].trigger);
        EXPECT_EQ(rawValue(cases[index]), triggers[index].rawValue);
        EXPECT_EQ(displayName(cases[index]), triggers[index].displayName);
        EXPECT_EQ(fromRawValue<ButtonModifierTrigger>(triggers[index].rawValue), cases[index]);
    }
}

TEST(ButtonModifierTriggerFromRawValue, DisplayNameOfOptionIsNoTrigger) {
    EXPECT_EQ(fromRawValue<ButtonModifierTrigger>("Alt"), std::nullopt);
}

TEST(ButtonModifierTriggerFromRawValue, ActionTextIsNoTrigger) {
    EXPECT_EQ(fromRawValue<ButtonModifierTrigger>("Ninguna"), std::nullopt);
}

}  // namespace
}  // namespace trelvan
