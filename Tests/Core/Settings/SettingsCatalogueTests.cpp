#include "Core/Settings/SettingsCatalogue.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <set>
#include <vector>

namespace trelvan {
namespace {

using Real = std::numeric_limits<double>;

TEST(SettingsCatalogue, EveryKeyAndNameIsThereOnce) {
    std::set<std::string_view> keys;
    std::set<std::string_view> names;
    for (const auto& row : setting::all) {
        if (row.isStored()) {
            EXPECT_TRUE(keys.insert(row.key).second) << row.key;
        }
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
    }
    EXPECT_EQ(keys.size(), 23U);
}

TEST(SettingsCatalogue, BackupHasItsSeventeenNames) {
    std::vector<std::string_view> names;
    for (const auto& row : setting::all) {
        if (row.isInBackup()) names.push_back(row.backupName);
    }
    EXPECT_THAT(names,
                testing::UnorderedElementsAre(
                    "notifyLowBattery", "notifyCapsLock", "notifyFCLock", "notifyMicMuteUnmute",
                    "privacyStoreLocalOnly", "privacyShareUsageData", "generalThemeRawValue",
                    "generalLanguageRawValue", "scrollSpeedVertical", "horizontalScrollEnabled",
                    "scrollSpeedHorizontal", "swapScrollDirection", "mouseSpeed", "advancedMouseSpeedEnabled",
                    "mouseAcceleration", "debugMode", "launchAtLoginEnabled"));
}

TEST(SettingsCatalogue, EveryNumbersDefaultIsInItsRange) {
    for (const auto& row : setting::all) {
        if (row.kind != SettingKind::number) continue;
        EXPECT_LT(row.minimum, row.maximum) << row.key;
        EXPECT_LE(row.maximumLoaded, row.maximum) << row.key;
        EXPECT_FALSE(row.isReset(row.initial)) << row.key;
        EXPECT_EQ(row.accepted(row.initial), row.initial) << row.key;
    }
}

TEST(SettingsCatalogue, NumbersAreMovedIntoTheRange) {
    const auto row = setting::make::number(1.0, 0.5, 2.0);
    EXPECT_EQ(row.accepted(1.25), 1.25);
    EXPECT_EQ(row.accepted(-1e308), 0.5);
    EXPECT_EQ(row.accepted(-0.0), 0.5);
    EXPECT_EQ(row.accepted(Real::denorm_min()), 0.5);
    EXPECT_EQ(row.accepted(Real::infinity()), 2.0);
    EXPECT_EQ(row.accepted(-Real::infinity()), 0.5);
}

TEST(SettingsCatalogue, WhatIsNoNumberIsNotTaken) {
    const auto row = setting::make::number(1.0, 0.5, 2.0);
    EXPECT_EQ(row.accepted(std::nullopt), std::nullopt);
    EXPECT_EQ(row.accepted(Real::quiet_NaN()), std::nullopt);
    EXPECT_EQ(row.accepted(-Real::signaling_NaN()), std::nullopt);
}

TEST(SettingsCatalogue, DefaultOfAStringIsOneOfItsWords) {
    for (const auto& row : setting::all) EXPECT_TRUE(row.isWord(row.text)) << row.name;
    EXPECT_TRUE(setting::row("language").isWord("Espan\xCC\x83ol"));
    EXPECT_FALSE(setting::row("language").isWord("español"));
}

}  // namespace
}  // namespace trelvan
