// Each policy that a row can have.

#include "Core/Settings/LanguageSetting.hpp"
#include "Core/Settings/Settings.hpp"
#include "Support/FakeUserDefaults.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace make = setting::make;

class SettingTest : public testing::Test {
  protected:
    template <typename T>
    void expectLoaded(Setting<T>& setting, DefaultsValue stored, const T& expected) {
        defaults.values.insert_or_assign("key", std::move(stored));
        setting.load();
        EXPECT_EQ(setting.get(), expected);
    }

    test::FakeUserDefaults defaults;
};

// What a stored value of another type becomes

TEST_F(SettingTest, StrictBoolean_TakesBooleansOnlyAndHasItsDefaultOtherwise) {
    constexpr auto row = make::keepAwake("key", "name", make::boolean(true));
    Setting<bool> setting(row, defaults);
    for (const DefaultsValue& stored : {DefaultsValue(0.0), DefaultsValue(std::string("no")),
                                        DefaultsValue(std::int64_t{0}), DefaultsValue(Data{})}) {
        setting = false;
        expectLoaded(setting, stored, true);
    }
    expectLoaded(setting, false, false);
}

TEST_F(SettingTest, LooseBoolean_ReadsNumbersAndWordsAsTheSystemDoes) {
    constexpr auto row = make::shaping("key", "name", make::boolean(false));
    Setting<bool> setting(row, defaults);
    expectLoaded(setting, 2.0, true);
    expectLoaded(setting, 0.0, false);
    expectLoaded(setting, std::string("yes"), true);
    expectLoaded(setting, std::string("never"), false);
}

TEST_F(SettingTest, StrictNumber_IsNotReadFromABooleanAndGoesBackToItsDefault) {
    constexpr auto row = make::keepAwake("key", "name", make::number(3, 1, 120));
    Setting<double> setting(row, defaults);
    expectLoaded(setting, std::int64_t{7}, 7.0);
    expectLoaded(setting, true, 3.0);
    setting = 7.0;
    expectLoaded(setting, std::string("fast"), 3.0);
}

TEST_F(SettingTest, LooseNumber_IsReadFromABooleanAndStaysWhereNothingCanBeRead) {
    constexpr auto row = make::shaping("key", "name", make::number(0.6, 0, 2));
    Setting<double> setting(row, defaults);
    expectLoaded(setting, true, 1.0);
    expectLoaded(setting, std::string("fast"), 1.0);
    expectLoaded(setting, std::numeric_limits<double>::quiet_NaN(), 1.0);
}

// Numbers out of range

TEST_F(SettingTest, NumberOutOfRange_IsClampedByTheLoadAndNotWrittenBack) {
    constexpr auto row = make::shaping("key", "name", make::number(1, 0.2, 3));
    Setting<double> setting(row, defaults);
    expectLoaded(setting, 0.1, 0.2);
    expectLoaded(setting, 7.0, 3.0);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(SettingTest, NumberThatDoesNotSurviveAStart_IsResetAndWrittenBack) {
    constexpr auto row = make::shaping("key", "name", make::resetAbove(1.4, make::number(1, 0.5, 2)));
    Setting<double> setting(row, defaults);
    for (const double stored : {0.4, 1.41, 2.0, 2.5, std::numeric_limits<double>::infinity()}) {
        defaults.values["key"] = stored;
        EXPECT_EQ(setting.load(), Loaded::reset) << stored;
        EXPECT_EQ(setting, 1.0);
        EXPECT_EQ(defaults.values["key"], DefaultsValue(1.0));
    }
    for (const double stored : {0.5, 1.2, 1.4}) expectLoaded(setting, stored, stored);
    setting = 1.8;
    EXPECT_EQ(setting, 1.8);
}

TEST_F(SettingTest, NumberSetOutOfRange_IsClampedWhereTheRowSaysSo) {
    constexpr auto clamped = make::shaping("key", "name", make::number(1, 0.2, 3));
    constexpr auto asGiven = make::keepAwake("key", "name", make::number(3, 1, 120));
    Setting<double> shaping(clamped, defaults);
    shaping = 9.0;
    EXPECT_EQ(shaping, 3.0);
    Setting<double> minutes(asGiven, defaults);
    minutes = 500.0;
    EXPECT_EQ(minutes, 500.0);
    EXPECT_EQ(defaults.values["key"], DefaultsValue(500.0));
    minutes.load();
    EXPECT_EQ(minutes, 120.0);
}

TEST_F(SettingTest, NotANumber_IsNeverSet) {
    constexpr auto row = make::keepAwake("key", "name", make::number(3, 1, 120));
    Setting<double> minutes(row, defaults);
    minutes = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(minutes, 3.0);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

// Words

TEST_F(SettingTest, UnknownWord_BecomesTheDefaultOfAPreset) {
    constexpr auto row = make::keepAwake("key", "name", make::knownWord(AutoStopPreset::never));
    Setting<AutoStopPreset> preset(row, defaults);
    expectLoaded(preset, std::string("oneDay"), AutoStopPreset::oneDay);
    expectLoaded(preset, std::string("threeHours"), AutoStopPreset::never);
    EXPECT_FALSE(preset.take(std::string("threeHours")));
    EXPECT_TRUE(preset.take(std::string("oneHour")));
    EXPECT_EQ(preset, AutoStopPreset::oneHour);
    EXPECT_EQ(defaults.values["key"], DefaultsValue(std::string("oneHour")));
}

TEST_F(SettingTest, UnknownWord_StaysForEachReaderWhereTheRowSaysSo) {
    Setting<std::string> language(setting::row("language"), defaults);
    defaults.values["general_language"] = std::string("Klingon");
    language.load();
    EXPECT_EQ(language.get(), "Klingon");
    EXPECT_EQ(languageFromSetting(languageSetting(defaults)), AppLanguage::english);
    EXPECT_EQ(spanishUnlessEnglish(languageSetting(defaults)), AppLanguage::spanish);
}

// Keeping

TEST_F(SettingTest, WrittenOnRequest_WaitsForTheSave) {
    constexpr auto row = make::shaping("key", "name", make::boolean(false));
    Setting<bool> setting(row, defaults);
    setting = true;
    EXPECT_THAT(defaults.writes, IsEmpty());
    setting.save();
    EXPECT_EQ(defaults.values["key"], DefaultsValue(true));
}

TEST_F(SettingTest, WrittenOnChange_IsWrittenAlsoWhenItIsTheSame) {
    constexpr auto row = make::keepAwake("key", "name", make::boolean(false));
    Setting<bool> setting(row, defaults);
    setting = false;
    setting = false;
    EXPECT_THAT(defaults.writes, ElementsAre("key", "key"));
}

TEST_F(SettingTest, ReadAnew_ExportsWhatIsStoredNow) {
    constexpr auto row = make::stored("key", "name", make::boolean(true));
    const Setting<bool> setting(row, defaults);
    EXPECT_EQ(setting.exported(), DefaultsValue(true));
    defaults.values["key"] = false;
    EXPECT_EQ(setting.exported(), DefaultsValue(false));
    EXPECT_FALSE(storedValue<bool>(row, defaults));
    defaults.values["key"] = std::string("no");
    EXPECT_TRUE(storedValue<bool>(row, defaults));
}

// Observers and owners

TEST_F(SettingTest, Observers_AreToldBeforeTheChangeAndNotAfterTheirEnd) {
    constexpr auto row = make::stored("key", "name", make::number(1, 0, 10));
    Setting<double> setting(row, defaults);
    std::vector<double> told;
    auto subscription = setting.observe([&](double coming) {
        EXPECT_NE(setting, coming);
        EXPECT_THAT(defaults.writes, IsEmpty());
        told.push_back(coming);
    });
    setting = 20.0;
    subscription.reset();
    setting = 5.0;
    EXPECT_THAT(told, ElementsAre(10.0));
}

TEST_F(SettingTest, Owner_IsCalledAfterASetAndNotAfterALoad) {
    constexpr auto row = make::keepAwake("key", "name", make::boolean(false));
    int calls = 0;
    Setting<bool>* made = nullptr;
    Setting<bool> setting(row, defaults, [&] {
        ++calls;
        EXPECT_TRUE(made->get());
        EXPECT_EQ(defaults.values["key"], DefaultsValue(true));
    });
    made = &setting;
    setting = true;
    EXPECT_TRUE(setting.take(true));
    EXPECT_EQ(calls, 2);
    setting.load();
    EXPECT_EQ(calls, 2);
}

// All of them

TEST_F(SettingTest, SettingsThatNoServiceHas_AreMadeAndFollowOtherPrograms) {
    defaults.values["notify_fc_lock"] = true;
    Settings settings(defaults);
    auto& theme = settings.of<std::string>(setting::row("theme"));
    EXPECT_TRUE(settings.of<bool>(setting::row("notifyFCLock")));
    std::vector<std::string> told;
    const auto watch = theme.observe([&](const std::string& coming) { told.push_back(coming); });
    defaults.values["general_theme"] = std::string("Dark");
    defaults.tellOutsideChange({"general_theme"});
    EXPECT_EQ(theme.get(), "Dark");
    EXPECT_THAT(told, ElementsAre("Dark"));
    EXPECT_EQ(settings.named("theme"), &theme);
    EXPECT_EQ(settings.named("mouseSpeed"), nullptr);
    EXPECT_EQ(settings.named("colour"), nullptr);
}

TEST_F(SettingTest, OwnedSwitch_AsksAndTellsItsOwner) {
    bool isOn = false;
    OwnedSwitch debug(
        setting::row("debugMode"), [&] { return isOn; }, [&](bool on) { isOn = on; });
    EXPECT_FALSE(debug.take(1.0));
    EXPECT_TRUE(debug.take(true));
    EXPECT_TRUE(isOn);
    EXPECT_EQ(debug.exported(), DefaultsValue(true));
}

}  // namespace
}  // namespace trelvan
