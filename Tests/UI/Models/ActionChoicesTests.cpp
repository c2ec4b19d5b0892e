#include "Support/TestDesktop.hpp"
#include "UI/Models/ActionChoices.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ActionChoicesTest : public testing::Test {
  protected:
    std::vector<ActionChoice> offered(const ActionFilter& filter,
                                      AppLanguage language = AppLanguage::english) {
        return matchingActions(filter, desktop.actionShortcuts(), desktop.hotKeyTable(), language);
    }
    std::vector<std::string> labels(const ActionFilter& filter, AppLanguage language = AppLanguage::english) {
        std::vector<std::string> result;
        for (const auto& choice : offered(filter, language)) result.push_back(choice.label);
        return result;
    }
    std::string sends(ButtonAction action, AppLanguage language = AppLanguage::english) {
        return shortDescription(action, desktop.actionShortcuts(), desktop.hotKeyTable(), language);
    }

    test::TestDesktop desktop{linuxShortcuts};
};

TEST_F(ActionChoicesTest, AllActionsAreOfferedInTheCataloguesOrder) {
    const auto choices = offered({});
    ASSERT_EQ(choices.size(), 33U);
    for (std::size_t index = 0; index < choices.size(); ++index)
        EXPECT_EQ(choices[index].action, static_cast<ButtonAction>(index));
    EXPECT_EQ(choices[4].label, "App Expose");
    EXPECT_EQ(offered({}, AppLanguage::spanish)[4].label, "App Exposé");
}

TEST_F(ActionChoicesTest, SearchMatchesBothLanguagesWithoutAccentsAndCapitals) {
    EXPECT_THAT(labels({.text = "atras"}), ElementsAre("Back"));
    EXPECT_THAT(labels({.text = "BACK"}, AppLanguage::spanish), ElementsAre("Atrás"));
    EXPECT_THAT(labels({.text = " area captura "}), ElementsAre("Area Screenshot"));
    EXPECT_THAT(labels({.text = "move right"}), ElementsAre("Move Desktop Right"));
    EXPECT_THAT(labels({.text = "zzz"}), IsEmpty());
}

TEST_F(ActionChoicesTest, SectionsOnlyFilterAndNoneIsInEach) {
    EXPECT_THAT(labels({.section = ActionSection::clicks}),
                ElementsAre("None", "Left Click", "Right Click", "Middle Click"));
    EXPECT_THAT(labels({.text = "izquierdo", .section = ActionSection::clicks}), ElementsAre("Left Click"));
    std::size_t counted = 1;
    for (const auto section : allActionSections) counted += offered({.section = section}).size() - 1;
    EXPECT_EQ(counted, 33U) << "each action is in one section";
}

TEST_F(ActionChoicesTest, EntriesShowWhatTheyWouldSendHere) {
    EXPECT_EQ(sends(ButtonAction::copy), "⌃C");
    EXPECT_EQ(sends(ButtonAction::back), "⌥←");
    EXPECT_EQ(sends(ButtonAction::mute, AppLanguage::spanish), "tecla multimedia");
    EXPECT_EQ(sends(ButtonAction::launchpad), "the desktop's");
    desktop.hotKeyEntries[hotkey::launchpad] = {true, {65535, 40, static_cast<std::int64_t>(flag::command)}};
    EXPECT_EQ(sends(ButtonAction::launchpad), "⌘K");
    EXPECT_EQ(sends(ButtonAction::customShortcut), "as recorded");
    EXPECT_EQ(sends(ButtonAction::none), "");
}

}  // namespace
}  // namespace trelvan
