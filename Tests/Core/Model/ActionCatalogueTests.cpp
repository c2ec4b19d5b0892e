#include "Core/ActionDescription.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Platform/HotKeyTable.hpp"

#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Whether the enumeration has a case of that number: the compiler then writes its name, else a number.
template <ButtonAction action>
consteval bool isCase() {
    const std::string_view text = __PRETTY_FUNCTION__;
    const auto value = text.substr(text.find("action = ") + std::string_view("action = ").size());
    return value.find("ButtonAction)") == std::string_view::npos;
}

// With the check of the rows in the catalogue itself, this ties enumeration, rows and count together.
static_assert(isCase<ButtonAction::none>());
static_assert(isCase<static_cast<ButtonAction>(actionCount - 1)>());
static_assert(!isCase<static_cast<ButtonAction>(actionCount)>(), "actionCount leaves an action out");

TEST(ActionCatalogue, EveryCombinationIsThereOnEveryPlatformAndItsKeyHasAName) {
    std::size_t combinations = 0;
    for (const auto& row : actionCatalogue()) {
        const auto* const combination = catalogueCombination(row.action);
        if (combination == nullptr) continue;
        ++combinations;
        for (const auto convention : {ShortcutConvention::macOS, ShortcutConvention::linuxDesktop}) {
            const auto chord = combination->by(convention);
            EXPECT_NE(chord, KeyChord{}) << row.rawValue;
            EXPECT_THAT(describeChord(chord, AppLanguage::english), Not(HasSubstr("key "))) << row.rawValue;
            EXPECT_THAT(describeChord(chord, AppLanguage::spanish), Not(HasSubstr("tecla "))) << row.rawValue;
        }
    }
    EXPECT_EQ(combinations, 12U);
}

TEST(ActionCatalogue, CombinationsForMacGoByThePlaceOfTheKey) {
    for (const auto& row : actionCatalogue()) {
        if (const auto* const combination = catalogueCombination(row.action)) {
            EXPECT_EQ(combination->onMac.character, 0U) << row.rawValue;
        }
    }
}

TEST(ActionCatalogue, HotKeysAreTriedInTheSystemsOrder) {
    const std::map<ButtonAction, std::vector<int>> expected{
        {ButtonAction::missionControl, {32, 7, 8, 9}}, {ButtonAction::appExpose, {33, 34}},
        {ButtonAction::launchpad, {160, 161}},         {ButtonAction::showDesktop, {36, 37}},
        {ButtonAction::moveDesktopLeft, {79, 80}},     {ButtonAction::moveDesktopRight, {81, 82}},
        {ButtonAction::screenshotArea, {30}},          {ButtonAction::screenshotFull, {28}},
        {ButtonAction::screenshotTool, {184}},         {ButtonAction::emojiPanel, {1001}},
        {ButtonAction::lockWorkstation, {1000}}};
    std::map<ButtonAction, std::vector<int>> found;
    std::set<SystemView> views;
    for (const auto& row : actionCatalogue()) {
        const auto* const tool = desktopTool(row.action);
        if (tool == nullptr) continue;
        found[row.action] = {tool->hotKeys.begin(), tool->hotKeys.end()};
        EXPECT_TRUE(views.insert(tool->view).second) << row.rawValue;
    }
    EXPECT_EQ(found, expected);
}

TEST(ActionCatalogue, SectionsHoldEveryActionButNoneInTheCataloguesOrder) {
    std::map<ActionSection, std::vector<std::string>> sections;
    for (const auto& row : actionCatalogue()) {
        ASSERT_EQ(row.section.has_value(), row.action != ButtonAction::none) << row.rawValue;
        if (row.section) sections[*row.section].emplace_back(row.englishLabel);
    }
    EXPECT_THAT(sections[ActionSection::editing], ElementsAre("Copy", "Paste", "Cut", "Undo"));
    EXPECT_THAT(sections[ActionSection::windowsAndDesktops],
                ElementsAre("Back", "Forward", "Mission Control", "App Expose", "Show Desktop",
                            "Move Desktop Left", "Move Desktop Right"));
    EXPECT_THAT(sections[ActionSection::screenshots],
                ElementsAre("Area Screenshot", "Full Screenshot", "Screenshot"));
    EXPECT_THAT(sections[ActionSection::soundAndMedia],
                ElementsAre("Volume +", "Volume -", "Mute", "Play/Pause"));
    EXPECT_THAT(sections[ActionSection::applicationsAndFolders],
                ElementsAre("Launchpad", "Open Folder", "Open Explorer", "Open App"));
    EXPECT_THAT(sections[ActionSection::tools],
                ElementsAre("New Note", "Emoji", "Start Dictation", "Explore AI", "Lock Workstation",
                            "Smart Button"));
    EXPECT_THAT(sections[ActionSection::clicks], ElementsAre("Left Click", "Right Click", "Middle Click"));
    EXPECT_THAT(sections[ActionSection::custom], ElementsAre("Custom Shortcut"));
    std::set<std::string_view> labels;
    for (const auto& [section, actions] : sections) {
        EXPECT_THAT(label(section).english, Not(IsEmpty()));
        EXPECT_TRUE(labels.insert(label(section).spanish).second);
    }
    EXPECT_EQ(labels.size(), 8U);
}

TEST(ActionCatalogue, EachInputBelongsToTheActionThatWorksWithIt) {
    std::map<ActionInput, std::vector<ButtonAction>> users;
    for (const auto& row : actionCatalogue()) {
        if (row.input != ActionInput::nothing) users[row.input].push_back(row.action);
    }
    EXPECT_EQ(users, (std::map<ActionInput, std::vector<ButtonAction>>{
                         {ActionInput::shortcut, {ButtonAction::customShortcut}},
                         {ActionInput::dictationShortcut, {ButtonAction::dictation}},
                         {ActionInput::application, {ButtonAction::launchApp}},
                         {ActionInput::folder, {ButtonAction::openFolder}},
                         {ActionInput::menu, {ButtonAction::smartButton}}}));
}

}  // namespace
}  // namespace trelvan
