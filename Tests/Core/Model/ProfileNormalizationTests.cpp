#include "Core/Model/ProfileNormalization.hpp"
#include "Support/RandomRecords.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

/// A mapping in which every member differs from its default.
ButtonMapping fullMapping(std::int64_t buttonNumber) {
    auto mapping = ButtonMapping::unassigned(Uuid::version4({1}), buttonNumber, "label");
    mapping.primaryTrigger1() = mapping.primaryTrigger2() = ButtonModifierTrigger::shift;
    mapping.action() = ButtonAction::copy;
    mapping.functionSlots = 4;
    mapping.secondaryTrigger1() = mapping.secondaryTrigger2() = mapping.secondaryTrigger3 =
        ButtonModifierTrigger::command;
    mapping.tertiaryTrigger1() = mapping.tertiaryTrigger2() = ButtonModifierTrigger::option;
    mapping.quaternaryTrigger1() = mapping.quaternaryTrigger2() = ButtonModifierTrigger::control;
    mapping.secondaryAction() = ButtonAction::paste;
    mapping.tertiaryAction() = ButtonAction::cut;
    mapping.quaternaryAction() = ButtonAction::undo;
    mapping.shortcut() = mapping.secondaryShortcut() = mapping.tertiaryShortcut() =
        mapping.quaternaryShortcut() = mapping.dictationShortcut = {8, 0x100000, "⌘C"};
    mapping.shortcutName() = mapping.secondaryShortcutName() = mapping.tertiaryShortcutName() =
        mapping.quaternaryShortcutName() = "name";
    mapping.appPath = "/app";
    mapping.folderPath = "/folder";
    return mapping;
}

TEST(NormalizeMapping, LeftAndRightButtonsKeepOnlyWhatModifiersChoose) {
    for (const std::int64_t number : {0, 1}) {
        ButtonMapping expected = fullMapping(number);
        expected.primaryTrigger1() = expected.primaryTrigger2() = ButtonModifierTrigger::none;
        expected.action() = number == 0 ? ButtonAction::leftClick : ButtonAction::rightClick;
        expected.shortcut() = expected.secondaryShortcut() = expected.tertiaryShortcut() =
            expected.quaternaryShortcut() = expected.dictationShortcut = {};
        expected.shortcutName() = expected.secondaryShortcutName() = expected.tertiaryShortcutName() =
            expected.quaternaryShortcutName() = expected.appPath = "";
        EXPECT_EQ(normalizeMapping(fullMapping(number)), expected) << number;
    }
}

TEST(NormalizeMapping, OtherButtonsAreUnchanged) {
    for (const std::int64_t number : {-101, -100, -99, -1, 2, 3}) {
        EXPECT_EQ(normalizeMapping(fullMapping(number)), fullMapping(number)) << number;
    }
}

TrackballProfile profileWith(std::vector<std::pair<std::int64_t, std::string>> buttons) {
    TrackballProfile profile;
    for (auto& [number, label] : buttons) {
        profile.mappings.push_back(ButtonMapping::unassigned({}, number, std::move(label)));
    }
    return profile;
}

TEST(NormalizeProfile, DownOnlyScrollingBecomesUpAndABlankLabelIsFilled) {
    EXPECT_EQ(normalizeProfile(profileWith({{2, "a"}, {-101, "   "}, {-101, " "}})),
              profileWith({{2, "a"}, {-100, "Scroll 1"}, {-101, " "}}));
    EXPECT_EQ(normalizeProfile(profileWith({{-101, "\n\u00A0\t"}})), profileWith({{-100, "Scroll 1"}}));
}

TEST(NormalizeProfile, DownOnlyScrollingKeepsItsLabel) {
    EXPECT_EQ(normalizeProfile(profileWith({{-101, " mine "}})), profileWith({{-100, " mine "}}));
}

TEST(NormalizeProfile, ScrollMappingsWithAnUpOneOrWithoutTheFirstDownOneStay) {
    const auto both = profileWith({{-101, ""}, {-100, ""}});
    EXPECT_EQ(normalizeProfile(both), both);
    const auto others = profileWith({{-103, ""}, {-102, ""}});
    EXPECT_EQ(normalizeProfile(others), others);
}

TEST(NormalizeProfile, PinsEveryMappingOfAPinnedButton) {
    TrackballProfile profile;
    profile.mappings = {fullMapping(0), fullMapping(5), fullMapping(0)};
    const auto normal = normalizeProfile(profile);
    EXPECT_EQ(normal.mappings[0], normalizeMapping(fullMapping(0)));
    EXPECT_EQ(normal.mappings[1], fullMapping(5));
    EXPECT_EQ(normal.mappings[2], normalizeMapping(fullMapping(0)));
}

TEST(NormalizeProfile, TwiceIsAsGoodAsOnce) {
    test::RandomRecords random(30);
    for (int round = 0; round < 100; ++round) {
        const auto once = normalizeProfile(random.profile());
        EXPECT_EQ(normalizeProfile(once), once);
    }
}

}  // namespace
}  // namespace trelvan
