#include "Core/SettingsCatalogue.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace trelvan {
namespace {

using Real = std::numeric_limits<double>;

TEST(SettingsCatalogue, EveryKeyIsThereOnce) {
    std::set<std::string_view> keys;
    for (const auto& row : setting::all) EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    EXPECT_EQ(keys.size(), 23U);
}

TEST(SettingsCatalogue, EveryNumbersDefaultIsInItsRange) {
    for (const auto& row : setting::all) {
        if (row.kind != SettingKind::number) continue;
        EXPECT_LT(row.minimum, row.maximum) << row.key;
        EXPECT_EQ(row.accepted(row.initial), row.initial) << row.key;
    }
}

TEST(SettingsCatalogue, NumbersAreMovedIntoTheRange) {
    const auto row = SettingRow::number("key", 1.0, 0.5, 2.0);
    EXPECT_EQ(row.accepted(1.25), 1.25);
    EXPECT_EQ(row.accepted(-1e308), 0.5);
    EXPECT_EQ(row.accepted(-0.0), 0.5);
    EXPECT_EQ(row.accepted(Real::denorm_min()), 0.5);
    EXPECT_EQ(row.accepted(Real::infinity()), 2.0);
    EXPECT_EQ(row.accepted(-Real::infinity()), 0.5);
}

TEST(SettingsCatalogue, WhatIsNoNumberIsNotTaken) {
    const auto row = SettingRow::number("key", 1.0, 0.5, 2.0);
    EXPECT_EQ(row.accepted(std::nullopt), std::nullopt);
    EXPECT_EQ(row.accepted(Real::quiet_NaN()), std::nullopt);
    EXPECT_EQ(row.accepted(-Real::signaling_NaN()), std::nullopt);
}

}  // namespace
}  // namespace trelvan
