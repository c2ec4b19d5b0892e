// What every row of the catalogue gets without a line of its own: shown for each of them.

#include "Core/Check/SettingsCheck.hpp"
#include "Core/Settings/Settings.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Support/RowValues.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace trelvan {

void PrintTo(const SettingRow& row, std::ostream* out) {
    *out << row.name;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SettingRowTest : public testing::TestWithParam<SettingRow> {
  protected:
    const SettingRow& row = GetParam();
    const std::string key{row.key};
    const DefaultsValue initial = row.defaultValue();
    const DefaultsValue other = test::otherValue(row);
    test::FakeUserDefaults defaults;
    const std::unique_ptr<AnySetting> setting = makeSetting(row, defaults);

    DefaultsValue load(DefaultsValue stored) {
        defaults.values.insert_or_assign(key, std::move(stored));
        setting->load();
        return setting->exported();
    }
    /// What `check` finds in a file with this value.
    [[nodiscard]] Findings findingsFor(const DefaultsValue& value) const {
        nlohmann::json file;
        std::visit(
            [&](const auto& held) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(held)>, Data>) file[key] = held;
            },
            value);
        return checkSettings(file.dump(), {});
    }
};

/// The rows of numbers alone.
class NumberRowTest : public SettingRowTest {};

/// The rows whose values mean something by themselves.
class CheckedRowTest : public SettingRowTest {};

template <typename Wanted>
std::vector<SettingRow> valueRowsThat(Wanted wanted) {
    auto rows = test::valueRows();
    std::erase_if(rows, [&](const SettingRow& row) { return !wanted(row); });
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, SettingRowTest, testing::ValuesIn(test::valueRows()), test::rowName);
INSTANTIATE_TEST_SUITE_P(Catalogue, NumberRowTest, testing::ValuesIn(valueRowsThat([](const auto& row) {
                             return row.kind == SettingKind::number;
                         })),
                         test::rowName);
// The active profile is checked against the profiles.
INSTANTIATE_TEST_SUITE_P(Catalogue, CheckedRowTest, testing::ValuesIn(valueRowsThat([](const auto& row) {
                             return row.keeping != Keeping::byOwner;
                         })),
                         test::rowName);

TEST_P(SettingRowTest, NothingStored_LoadsTheDefaultAndWritesNothing) {
    EXPECT_EQ(setting->load(), Loaded::taken);
    EXPECT_EQ(setting->exported(), initial);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(SettingRowTest, GoodValueStored_IsLoadedAndNotWritten) {
    EXPECT_NE(other, initial);
    EXPECT_EQ(load(other), other);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(SettingRowTest, Set_IsInForceAndWrittenUnlessTheRowWaitsForASave) {
    EXPECT_TRUE(setting->take(other));
    if (row.keeping == Keeping::onRequest) {
        EXPECT_THAT(defaults.writes, IsEmpty());
        setting->save();
    }
    EXPECT_EQ(setting->exported(), other);
    EXPECT_EQ(defaults.values.at(key), other);
    EXPECT_THAT(defaults.writes, ElementsAre(key));
    const auto again = makeSetting(row, defaults);
    again->load();
    EXPECT_EQ(again->exported(), other);
}

TEST_P(SettingRowTest, ValueOfAnotherTypeGiven_ChangesAndWritesNothing) {
    auto wrong = test::neverOfTheType(row);
    if (row.kind == SettingKind::boolean) wrong = {1.0, std::string("true"), std::int64_t{0}};
    if (row.kind == SettingKind::number) wrong.emplace_back(true);
    for (const auto& value : wrong) EXPECT_FALSE(setting->take(value)) << value.index();
    EXPECT_EQ(setting->exported(), initial);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(SettingRowTest, ValueOfAnotherTypeStored_IsNotLoadedNorWrittenOver) {
    for (const auto& value : test::neverOfTheType(row)) {
        EXPECT_EQ(load(value), initial) << value.index();
        EXPECT_EQ(defaults.values.at(key), value);
    }
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(NumberRowTest, AnyNumberStored_IsOneInTheRangeAfterTheLoad) {
    using Real = std::numeric_limits<double>;
    for (const double number : {-1e308, 1e308, -Real::infinity(), Real::infinity(), -0.0}) {
        const double loaded = std::get<double>(load(number));
        EXPECT_TRUE(loaded >= row.minimum && loaded <= row.maximumLoaded) << number << " as " << loaded;
    }
}

TEST_P(NumberRowTest, NotANumber_IsNeitherLoadedNorTaken) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(load(none), initial);
    EXPECT_FALSE(setting->take(none));
    EXPECT_EQ(setting->exported(), initial);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(SettingRowTest, ChangedByAnotherProgram_IsFollowedAndItsRemovalToo) {
    defaults.values[key] = other;
    EXPECT_EQ(setting->follow({"another_key", key}), Loaded::taken);
    EXPECT_EQ(setting->exported(), other);
    defaults.values.clear();
    setting->follow({key});
    EXPECT_EQ(setting->exported(), initial);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_P(CheckedRowTest, Check_KnowsTheKeyAndFindsWhatIsNotTaken) {
    EXPECT_THAT(findingsFor(initial), IsEmpty());
    EXPECT_THAT(findingsFor(other), IsEmpty());
    for (const auto& value : test::neverOfTheType(row)) {
        if (std::holds_alternative<Data>(value)) continue;
        const auto findings = findingsFor(value);
        ASSERT_THAT(findings, SizeIs(1));
        EXPECT_EQ(findings[0].path, key);
    }
    if (row.kind == SettingKind::number) {
        EXPECT_THAT(findingsFor(row.maximum + 1), SizeIs(1));
    }
    if (!row.words.empty()) {
        EXPECT_THAT(findingsFor(std::string("none of them")), SizeIs(1));
    }
}

}  // namespace
}  // namespace trelvan
