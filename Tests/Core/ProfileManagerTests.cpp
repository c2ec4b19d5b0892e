#include "Core/Model/RecordCoding.hpp"
#include "Core/ProfileManager.hpp"
#include "Support/AllocationCounter.hpp"
#include "Support/CapturingLog.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Support/SequentialUuids.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto storageKey = ProfileManager::storageKey;
constexpr auto activeKey = ProfileManager::activeKey;

TrackballProfile profileNamed(std::string name, std::uint32_t id) {
    TrackballProfile profile;
    profile.id = test::sequentialUuid(1000 + id);
    profile.name = std::move(name);
    return profile;
}

class ProfileManagerTest : public testing::Test {
  protected:
    void store(const std::vector<TrackballProfile>& profiles) {
        const auto bytes = encodeProfiles(profiles);
        ASSERT_TRUE(bytes) << bytes.error().text();
        storeText(*bytes);
    }
    void storeText(std::string bytes) {
        defaults.values.insert_or_assign(std::string(storageKey), Data{std::move(bytes)});
    }
    void storeActive(std::string text) {
        defaults.values.insert_or_assign(std::string(activeKey), std::move(text));
    }
    /// Stores three empty profiles and starts over with the second one active.
    void startWithThree() {
        store({profileNamed("A", 1), profileNamed("B", 2), profileNamed("C", 3)});
        storeActive(profileNamed("B", 2).id.text());
        start();
    }
    /// Stores one profile with mappings of these buttons and starts over.
    void startWithButtons(const std::vector<std::int64_t>& numbers) {
        auto profile = profileNamed("A", 1);
        for (const auto number : numbers) {
            const auto id = test::sequentialUuid(2000 + static_cast<std::uint32_t>(profile.mappings.size()));
            profile.mappings.push_back(ButtonMapping::unassigned(id, number, "x"));
        }
        store({profile});
        start();
    }
    void start() {
        manager.emplace(defaults, log.logger, test::sequentialUuids());
        log.lines.clear();
    }
    /// What a new start would load.
    std::vector<TrackballProfile> stored() const {
        const auto bytes = defaults.bytes(storageKey);
        if (!bytes) return {};
        const auto profiles = decodeProfiles(*bytes, test::sequentialUuids());
        return profiles ? *profiles : std::vector<TrackballProfile>{};
    }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& profile : manager->profiles.get()) result.push_back(profile.name);
        return result;
    }
    std::vector<std::pair<std::int64_t, std::string>> activeButtons() const {
        std::vector<std::pair<std::int64_t, std::string>> result;
        for (const auto& mapping : manager->activeProfile().mappings) {
            result.emplace_back(mapping.buttonNumber, mapping.buttonLabel);
        }
        return result;
    }
    std::vector<std::int64_t> activeNumbers() const {
        std::vector<std::int64_t> result;
        for (const auto& mapping : manager->activeProfile().mappings) result.push_back(mapping.buttonNumber);
        return result;
    }

    test::FakeUserDefaults defaults;
    test::CapturingLog log;
    std::optional<ProfileManager> manager;
    const Uuid unknown = test::sequentialUuid(9999);
};

class ProfileManagerLoading : public ProfileManagerTest {};

TEST_F(ProfileManagerLoading, NothingStoredGivesTheDefaultProfileAndStoresNothing) {
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(manager->profiles.get(),
                ElementsAre(TrackballProfile::defaultProfile(test::sequentialUuids())));
    EXPECT_EQ(manager->activeProfileID.get(), manager->profiles->front().id);
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(log.lines, ElementsAre(test::CapturingLog::Line{LogLevel::info,
                                                                "Perfiles cargados: 1. Activo: 'Default'"}));
}

TEST_F(ProfileManagerLoading, EmptyListIsAsNothingStored) {
    storeText("[]");
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(manager->profiles.get(),
                ElementsAre(TrackballProfile::defaultProfile(test::sequentialUuids())));
    EXPECT_THAT(log.messages(LogLevel::warning), IsEmpty());
    manager->createProfile("B");
    EXPECT_THAT(defaults.copies, IsEmpty());
}

TEST_F(ProfileManagerLoading, StoredProfilesAndChoiceAreRead) {
    store({profileNamed("A", 1), profileNamed("B", 2)});
    storeActive(profileNamed("B", 2).id.text());
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    EXPECT_EQ(manager->activeProfile().name, "B");
    EXPECT_THAT(log.messages(LogLevel::info), ElementsAre("Perfiles cargados: 2. Activo: 'B'"));
}

TEST_F(ProfileManagerLoading, ChoiceInLowerCaseIsRead) {
    auto second = profileNamed("B", 2);
    second.id = *Uuid::parse("abcdefab-cdef-4abc-8def-abcdefabcdef");
    store({profileNamed("A", 1), second});
    storeActive("abcdefab-cdef-4abc-8def-abcdefabcdef");
    start();
    EXPECT_EQ(manager->activeProfileID.get(), second.id);
}

TEST_F(ProfileManagerLoading, ChoiceThatIsNoUuidOrNamesNoProfileFallsBackToTheFirst) {
    store({profileNamed("A", 1), profileNamed("B", 2)});
    for (const auto& text : {std::string("B"), unknown.text(), std::string()}) {
        storeActive(text);
        start();
        EXPECT_EQ(manager->activeProfileID.get(), profileNamed("A", 1).id) << text;
    }
    defaults.values[std::string(activeKey)] = DefaultsValue(std::int64_t{3});
    start();
    EXPECT_EQ(manager->activeProfileID.get(), profileNamed("A", 1).id);
}

TEST_F(ProfileManagerLoading, PinnedButtonLosesItsPrimaryFunctionOnly) {
    auto profile = profileNamed("A", 1);
    auto mapping = ButtonMapping::unassigned(unknown, 0, "left");
    mapping.action = ButtonAction::copy;
    mapping.shortcut = {8, 0x100000, "⌘C"};
    mapping.secondaryAction = ButtonAction::paste;
    profile.mappings = {mapping};
    store({profile});
    start();
    const auto& loaded = manager->activeProfile().mappings.at(0);
    EXPECT_EQ(loaded.action, ButtonAction::leftClick);
    EXPECT_TRUE(loaded.shortcut.isEmpty());
    EXPECT_EQ(loaded.secondaryAction, ButtonAction::paste);
}

TEST_F(ProfileManagerLoading, BlankDownOnlyScrollMappingBecomesUp) {
    auto profile = profileNamed("A", 1);
    profile.mappings = {ButtonMapping::unassigned(unknown, -101, "   ")};
    store({profile});
    start();
    EXPECT_THAT(activeButtons(), ElementsAre(std::pair(-100, "Scroll 1")));
}

TEST_F(ProfileManagerLoading, LoadingAgainDropsWhatIsInMemoryOnly) {
    startWithThree();
    store({profileNamed("Z", 26)});
    manager->load();
    EXPECT_THAT(names(), ElementsAre("Z"));
    EXPECT_EQ(manager->activeProfileID.get(), profileNamed("Z", 26).id);
}

class ProfileManagerUnreadable : public ProfileManagerTest {
  protected:
    const std::string unreadable = R"([{"name":"A","mappings":[]},{"mappings":[]}])";
};

TEST_F(ProfileManagerUnreadable, GivesTheDefaultProfileAndWarnsNamingTheKey) {
    storeText(unreadable);
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(names(), ElementsAre("Default"));
    EXPECT_THAT(
        log.messages(LogLevel::warning),
        ElementsAre("No se pudieron leer los perfiles guardados: dato no válido en '[1].name'. Se usa el "
                    "perfil por defecto y se conservan los datos"));
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(defaults.copies, IsEmpty());
    EXPECT_EQ(defaults.bytes(storageKey), unreadable);
}

TEST_F(ProfileManagerUnreadable, WhatIsNotJsonIsReportedByItsPlace) {
    storeText("[\n{]");
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(log.messages(LogLevel::warning),
                ElementsAre(testing::HasSubstr("no es JSON válido en la línea 2, columna 2")));
}

TEST_F(ProfileManagerUnreadable, WhatIsNoListIsReportedAsSuch) {
    storeText("{}");
    manager.emplace(defaults, log.logger, test::sequentialUuids());
    EXPECT_THAT(log.messages(LogLevel::warning),
                ElementsAre(testing::HasSubstr("no es una lista de perfiles legible")));
    manager->save();
    ASSERT_EQ(defaults.copies.size(), 1U);
    EXPECT_EQ(defaults.copies[0].data.bytes, "{}");
}

TEST_F(ProfileManagerUnreadable, IsCopiedAsideOnceBeforeTheFirstSave) {
    storeText(unreadable);
    start();
    manager->createProfile("B");
    ASSERT_EQ(defaults.copies.size(), 1U);
    EXPECT_EQ(defaults.copies[0].key, storageKey);
    EXPECT_EQ(defaults.copies[0].data.bytes, unreadable);
    EXPECT_THAT(log.messages(LogLevel::warning),
                ElementsAre("Los perfiles ilegibles se han copiado en '/settings/trackball_profiles.copy'"));
    EXPECT_EQ(stored(), manager->profiles.get());
    manager->createProfile("C");
    EXPECT_EQ(defaults.copies.size(), 1U);
}

TEST_F(ProfileManagerUnreadable, NothingIsStoredUntilTheCopyCanBeMade) {
    storeText(unreadable);
    start();
    defaults.failsToPutAside = true;
    manager->createProfile("B");
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_EQ(defaults.bytes(storageKey), unreadable);
    EXPECT_THAT(log.messages(LogLevel::error),
                ElementsAre("No se pudieron copiar los perfiles ilegibles; no se guardan los cambios"));
    defaults.failsToPutAside = false;
    manager->save();
    ASSERT_EQ(defaults.copies.size(), 1U);
    EXPECT_EQ(defaults.copies[0].data.bytes, unreadable);
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerUnreadable, ValueThatIsNotDataIsCopiedAsText) {
    const std::vector<std::pair<DefaultsValue, std::string>> kinds = {
        {DefaultsValue(std::string("[]")), "[]"},
        {DefaultsValue(std::int64_t{-3}), "-3"},
        {DefaultsValue(true), "true"},
    };
    for (const auto& [value, text] : kinds) {
        defaults.copies.clear();
        defaults.values.insert_or_assign(std::string(storageKey), value);
        start();
        EXPECT_THAT(names(), ElementsAre("Default"));
        manager->save();
        ASSERT_EQ(defaults.copies.size(), 1U) << text;
        EXPECT_EQ(defaults.copies[0].data.bytes, text);
    }
}

TEST_F(ProfileManagerUnreadable, ReadableProfilesLoadedLaterNeedNoCopy) {
    storeText(unreadable);
    start();
    store({profileNamed("A", 1)});
    manager->load();
    manager->createProfile("B");
    EXPECT_THAT(defaults.copies, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("A", "B"));
}

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
    EXPECT_EQ(created.mappings[0].action, ButtonAction::leftClick);
    EXPECT_EQ(created.mappings[1].action, ButtonAction::rightClick);
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
    EXPECT_EQ(copy.mappings.at(0).action, ButtonAction::leftClick);
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
    left.action = ButtonAction::copy;
    left.tertiaryAction = ButtonAction::cut;
    manager->updateMapping(left, profileID);
    auto extra = manager->activeProfile().mappings[1];
    extra.action = ButtonAction::paste;
    manager->updateMapping(extra, profileID);
    const auto& mappings = manager->activeProfile().mappings;
    EXPECT_EQ(mappings[0].action, ButtonAction::leftClick);
    EXPECT_EQ(mappings[0].tertiaryAction, ButtonAction::cut);
    EXPECT_EQ(mappings[1], extra);
    EXPECT_EQ(stored(), manager->profiles.get());
}

TEST_F(ProfileManagerMappings, UpdateOfAnythingUnknownDoesNothing) {
    startWithButtons({3});
    const auto before = manager->profiles.get();
    auto mapping = manager->activeProfile().mappings[0];
    mapping.action = ButtonAction::copy;
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
