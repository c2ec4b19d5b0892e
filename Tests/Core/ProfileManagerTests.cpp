#include "Core/ProfileManagerTest.hpp"
#include "Support/AllocationCounter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::activeKey;
using test::ProfileManagerTest;
using test::profileNamed;
using test::storageKey;
using testing::ElementsAre;
using testing::IsEmpty;

class ProfileManagerOperations : public ProfileManagerTest {};

TEST_F(ProfileManagerOperations, SaveStoresTheListAsCompactJson) {
    startWithThree();
    manager->save();
    const auto expected = encodeProfiles(manager->profiles.get());
    ASSERT_TRUE(expected);
    EXPECT_EQ(defaults.bytes(storageKey), *expected);
    EXPECT_EQ(expected->find('\n'), std::string::npos);
}

TEST_F(ProfileManagerOperations, SaveThatCannotBeEncodedLeavesTheStoredListAndIsNotReported) {
    startWithThree();
    const auto before = defaults.bytes(storageKey);
    auto profile = manager->activeProfile();
    profile.name = "\xFF";
    manager->setActiveProfile(profile);
    EXPECT_EQ(defaults.bytes(storageKey), before);
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(ProfileManagerOperations, SetActiveStoresTheChoiceAndLogsIt) {
    startWithThree();
    manager->setActive(manager->profiles.get()[2]);
    EXPECT_EQ(manager->activeProfileID.get(), profileNamed("C", 3).id);
    EXPECT_EQ(defaults.object(activeKey), DefaultsValue(profileNamed("C", 3).id.text()));
    EXPECT_THAT(defaults.writes, ElementsAre(activeKey));
    EXPECT_THAT(log.messages(LogLevel::info), ElementsAre("Perfil activo: 'C'"));
}

TEST_F(ProfileManagerOperations, ActiveProfileIsTheFirstWhenTheChoiceNamesNone) {
    startWithThree();
    manager->setActive(profileNamed("elsewhere", 77));
    EXPECT_EQ(manager->activeProfile().name, "A");
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "A");
}

TEST_F(ProfileManagerOperations, SetActiveProfileReplacesTheOneOfThatIdentifier) {
    startWithThree();
    auto changed = profileNamed("changed", 3);
    manager->setActiveProfile(changed);
    EXPECT_THAT(names(), ElementsAre("A", "B", "changed"));
    EXPECT_EQ(stored(), manager->profiles.get());
    defaults.writes.clear();
    manager->setActiveProfile(profileNamed("elsewhere", 77));
    EXPECT_THAT(names(), ElementsAre("A", "B", "changed"));
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfileManagerOperations, CreateProfileAppendsAMinimalOneThatIsNotActive) {
    startWithThree();
    const auto created = manager->createProfile(" new ");
    EXPECT_EQ(created.name, " new ");
    ASSERT_EQ(created.mappings.size(), 2U);
    EXPECT_EQ(created.mappings[0].action(), ButtonAction::leftClick);
    EXPECT_EQ(created.mappings[1].action(), ButtonAction::rightClick);
    EXPECT_EQ(manager->profiles->back(), created);
    EXPECT_EQ(manager->activeProfile().name, "B");
    EXPECT_EQ(stored(), manager->profiles.get());
    EXPECT_THAT(defaults.writes, ElementsAre(storageKey));
    EXPECT_THAT(log.messages(LogLevel::info), ElementsAre("Perfil creado: ' new '"));
}

TEST_F(ProfileManagerOperations, CreatedProfilesHaveIdentifiersOfTheirOwnAndTheTemplatesMappings) {
    startWithThree();
    const auto one = manager->createProfile("one");
    const auto two = manager->createProfile("two");
    EXPECT_NE(one.id, two.id);
    EXPECT_EQ(one.mappings, two.mappings);
}

TEST_F(ProfileManagerOperations, RenameTrimsTheName) {
    startWithThree();
    manager->rename(profileNamed("B", 2).id, "\n Ñandú \t");
    EXPECT_THAT(names(), ElementsAre("A", "Ñandú", "C"));
    EXPECT_EQ(stored(), manager->profiles.get());
    EXPECT_THAT(log.messages(LogLevel::info), ElementsAre("Perfil renombrado: 'Ñandú'"));
}

TEST_F(ProfileManagerOperations, RenameToBlanksOrOfAnUnknownProfileIsRefused) {
    startWithThree();
    manager->rename(profileNamed("B", 2).id, " \n\t ");
    manager->rename(profileNamed("B", 2).id, "");
    manager->rename(unknown, "D");
    EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(ProfileManagerOperations, DuplicateAppendsANormalisedCopyThatIsNotActive) {
    startWithThree();
    auto original = profileNamed("A", 1);
    original.smartButton.isEnabled = true;
    original.mappings = {ButtonMapping::unassigned(unknown, 0, "left"),
                         ButtonMapping::unassigned(unknown, -101, "")};
    const auto copy = manager->duplicate(original);
    EXPECT_EQ(copy.name, "A (copia)");
    EXPECT_NE(copy.id, original.id);
    EXPECT_TRUE(copy.smartButton.isEnabled);
    EXPECT_EQ(copy.mappings.at(0).id, unknown);
    EXPECT_EQ(copy.mappings.at(0).action(), ButtonAction::leftClick);
    EXPECT_EQ(copy.mappings.at(1).buttonNumber, -100);
    EXPECT_EQ(manager->profiles->back(), copy);
    EXPECT_EQ(manager->activeProfile().name, "B");
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerOperations, DeletingTheActiveOneOfThreeMakesTheFirstRemainingActive) {
    startWithThree();
    manager->deleteProfile(profileNamed("B", 2).id);
    EXPECT_THAT(names(), ElementsAre("A", "C"));
    EXPECT_EQ(manager->activeProfileID.get(), profileNamed("A", 1).id);
    EXPECT_EQ(stored(), manager->profiles.get());
    EXPECT_THAT(defaults.writes, ElementsAre(storageKey));
    EXPECT_EQ(defaults.object(activeKey), DefaultsValue(profileNamed("B", 2).id.text()));
    EXPECT_THAT(log.messages(LogLevel::info), ElementsAre("Perfil eliminado: 'B'"));
}

TEST_F(ProfileManagerOperations, DeletingAnotherOneKeepsTheChoice) {
    startWithThree();
    manager->deleteProfile(manager->profiles->front().id);
    EXPECT_THAT(names(), ElementsAre("B", "C"));
    EXPECT_EQ(manager->activeProfile().name, "B");
}

TEST_F(ProfileManagerOperations, DeletingByTheIdentifierInsideTheProfileWorks) {
    startWithThree();
    manager->deleteProfile(manager->activeProfile().id);
    EXPECT_THAT(names(), ElementsAre("A", "C"));
    EXPECT_EQ(manager->activeProfile().name, "A");
}

TEST_F(ProfileManagerOperations, TheLastProfileIsNotDeleted) {
    store({profileNamed("A", 1)});
    start();
    manager->deleteProfile(profileNamed("A", 1).id);
    EXPECT_THAT(names(), ElementsAre("A"));
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(log.lines, ElementsAre(test::CapturingLog::Line{LogLevel::warning,
                                                                "No se puede eliminar el único perfil"}));
}

TEST_F(ProfileManagerOperations, DeletingAnUnknownProfileDoesNothing) {
    startWithThree();
    manager->deleteProfile(unknown);
    EXPECT_EQ(manager->profiles->size(), 3U);
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

class ProfileManagerMappings : public ProfileManagerTest {
  protected:
    [[nodiscard]] Uuid mappingAt(std::size_t place) const {
        return manager->activeProfile().mappings.at(place).id;
    }
    const Uuid profileID = profileNamed("A", 1).id;
};

TEST_F(ProfileManagerMappings, UpdateReplacesTheMappingNormalised) {
    startWithButtons({0, 3});
    auto left = manager->activeProfile().mappings[0];
    left.action() = ButtonAction::copy;
    left.tertiaryAction() = ButtonAction::cut;
    manager->updateMapping(left, profileID);
    auto extra = manager->activeProfile().mappings[1];
    extra.action() = ButtonAction::paste;
    manager->updateMapping(extra, profileID);
    const auto& mappings = manager->activeProfile().mappings;
    EXPECT_EQ(mappings[0].action(), ButtonAction::leftClick);
    EXPECT_EQ(mappings[0].tertiaryAction(), ButtonAction::cut);
    EXPECT_EQ(mappings[1], extra);
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerMappings, UpdateOfAnythingUnknownDoesNothing) {
    startWithButtons({3});
    const auto before = manager->profiles.get();
    auto mapping = manager->activeProfile().mappings[0];
    mapping.action() = ButtonAction::copy;
    manager->updateMapping(mapping, unknown);
    mapping.id = unknown;
    manager->updateMapping(mapping, profileID);
    EXPECT_EQ(manager->profiles.get(), before);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfileManagerMappings, ExtraButtonIsAddedOnceWithItsLabel) {
    startWithButtons({});
    manager->addExtraButtonMapping(5);
    EXPECT_THAT(activeButtons(), ElementsAre(std::pair(5, "Botón extra 4")));
    const auto& mapping = manager->activeProfile().mappings[0];
    EXPECT_EQ(mapping, ButtonMapping::unassigned(mapping.id, 5, "Botón extra 4"));
    EXPECT_NE(mapping.id, Uuid{});
    EXPECT_EQ(stored(), manager->profiles.get());
    defaults.writes.clear();
    manager->addExtraButtonMapping(5);
    EXPECT_EQ(activeNumbers().size(), 1U);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfileManagerMappings, ExtraButtonsStartAtTwo) {
    startWithButtons({});
    for (const std::int64_t number : {1, 0, -1, -100}) manager->addExtraButtonMapping(number);
    EXPECT_THAT(activeNumbers(), IsEmpty());
    EXPECT_THAT(defaults.writes, IsEmpty());
    manager->addExtraButtonMapping(2);
    EXPECT_THAT(activeButtons(), ElementsAre(std::pair(2, "Botón extra 1")));
}

TEST_F(ProfileManagerMappings, FirstScrollMappingsAreUpAndDown) {
    startWithButtons({});
    manager->addScrollMappings();
    EXPECT_THAT(activeButtons(), ElementsAre(std::pair(-100, "Scroll Up 1")));
    EXPECT_EQ(stored(), manager->profiles.get());
    manager->addScrollMappings();
    EXPECT_THAT(activeButtons(),
                ElementsAre(std::pair(-100, "Scroll Up 1"), std::pair(-101, "Scroll Down 1")));
}

TEST_F(ProfileManagerMappings, FurtherScrollMappingsGoOnBelowTheLowest) {
    startWithButtons({-101, 3, -100, -99});
    manager->addScrollMappings();
    manager->addScrollMappings();
    const auto buttons = activeButtons();
    EXPECT_EQ(buttons.at(4), std::pair(std::int64_t{-102}, std::string("Scroll Up 2")));
    EXPECT_EQ(buttons.at(5), std::pair(std::int64_t{-103}, std::string("Scroll Down 2")));
}

TEST_F(ProfileManagerMappings, ScrollMappingIsRefusedBelowTheLowestNumber) {
    startWithButtons({std::numeric_limits<std::int64_t>::min()});
    manager->addScrollMappings();
    EXPECT_EQ(activeNumbers().size(), 1U);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfileManagerMappings, MappingsAreAddedToTheActiveProfile) {
    startWithThree();
    manager->addExtraButtonMapping(7);
    manager->addScrollMappings();
    EXPECT_EQ(manager->profiles.get()[1].mappings.size(), 2U);
    EXPECT_THAT(manager->profiles.get()[0].mappings, IsEmpty());
}

TEST_F(ProfileManagerMappings, RemovesExtraButtonsAndScrollMappingsOnly) {
    startWithButtons({-101, -100, -99, -1, 0, 1, 2, 3});
    const auto mappings = manager->activeProfile().mappings;
    for (const auto& mapping : mappings) manager->removeExtraButtonMapping(mapping.id, profileID);
    EXPECT_THAT(activeNumbers(), ElementsAre(-99, -1, 0, 1));
    EXPECT_EQ(defaults.writes.size(), 4U);
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerMappings, RemovingAnythingUnknownDoesNothing) {
    startWithButtons({3});
    manager->removeExtraButtonMapping(unknown, profileID);
    manager->removeExtraButtonMapping(mappingAt(0), unknown);
    EXPECT_THAT(activeNumbers(), ElementsAre(3));
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(ProfileManagerMappings, MovesChangePlacesWithTheNeighbour) {
    startWithButtons({0, 1, 2});
    manager->moveMapping(mappingAt(2), profileID, MoveDirection::towardsStart);
    EXPECT_THAT(activeNumbers(), ElementsAre(0, 2, 1));
    manager->moveMapping(mappingAt(0), profileID, MoveDirection::towardsEnd);
    EXPECT_THAT(activeNumbers(), ElementsAre(2, 0, 1));
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerMappings, MovesBeyondTheEndsOrOfAnythingUnknownDoNothing) {
    startWithButtons({0, 1});
    manager->moveMapping(mappingAt(0), profileID, MoveDirection::towardsStart);
    manager->moveMapping(mappingAt(1), profileID, MoveDirection::towardsEnd);
    manager->moveMapping(unknown, profileID, MoveDirection::towardsStart);
    manager->moveMapping(mappingAt(1), unknown, MoveDirection::towardsStart);
    EXPECT_THAT(activeNumbers(), ElementsAre(0, 1));
    EXPECT_THAT(defaults.writes, IsEmpty());
}

class ProfileManagerSnapshot : public ProfileManagerTest {};

TEST_F(ProfileManagerSnapshot, IsTheSameObjectUntilSomethingChanges) {
    startWithThree();
    const auto first = manager->activeSnapshot();
    EXPECT_EQ(first->profile(), manager->activeProfile());
    const auto before = test::allocationCount();
    const auto second = manager->activeSnapshot();
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_EQ(first, second);
}

TEST_F(ProfileManagerSnapshot, IsReplacedWholeByEveryKindOfChange) {
    startWithThree();
    const auto old = manager->activeSnapshot();
    manager->addExtraButtonMapping(6);
    EXPECT_TRUE(old->mappings(6).empty());
    EXPECT_EQ(manager->activeSnapshot()->mappings(6).size(), 1U);
    manager->rename(profileNamed("B", 2).id, "new");
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "new");
    manager->setActive(manager->profiles.get()[2]);
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "C");
    manager->deleteProfile(profileNamed("C", 3).id);
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "A");
    manager->load();
    EXPECT_EQ(manager->activeSnapshot()->profile(), manager->activeProfile());
    EXPECT_EQ(old->profile(), profileNamed("B", 2));
}

TEST_F(ProfileManagerSnapshot, ObserverThatAsksBeforeTheChangeDoesNotFreezeTheOldOne) {
    startWithThree();
    std::vector<std::string> seen;
    const auto profilesTold = manager->profiles.observe(
        [&](const auto&) { seen.push_back(manager->activeSnapshot()->profile().name); });
    const auto choiceTold = manager->activeProfileID.observe(
        [&](const auto&) { seen.push_back(manager->activeSnapshot()->profile().name); });
    manager->rename(profileNamed("B", 2).id, "new");
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "new");
    manager->setActive(manager->profiles.get()[0]);
    EXPECT_EQ(manager->activeSnapshot()->profile().name, "A");
    EXPECT_THAT(seen, ElementsAre("B", "new"));
}

TEST_F(ProfileManagerSnapshot, EveryChangeIsPublished) {
    startWithThree();
    std::vector<std::size_t> sizes;
    const auto told = manager->profiles.observe([&](const auto& next) { sizes.push_back(next.size()); });
    manager->createProfile("D");
    manager->deleteProfile(profileNamed("A", 1).id);
    manager->addScrollMappings();
    EXPECT_THAT(sizes, ElementsAre(4U, 3U, 3U));
}

}  // namespace
}  // namespace trelvan
