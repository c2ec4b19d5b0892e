#include "Core/ProfileManagerTest.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    mapping.action() = ButtonAction::copy;
    mapping.shortcut() = {8, 0x100000, "⌘C"};
    mapping.secondaryAction() = ButtonAction::paste;
    profile.mappings = {mapping};
    store({profile});
    start();
    const auto& loaded = manager->activeProfile().mappings.at(0);
    EXPECT_EQ(loaded.action(), ButtonAction::leftClick);
    EXPECT_TRUE(loaded.shortcut().isEmpty());
    EXPECT_EQ(loaded.secondaryAction(), ButtonAction::paste);
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

}  // namespace
}  // namespace trelvan
