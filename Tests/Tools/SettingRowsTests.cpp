// What the tools do for every row of the catalogue without a line of its own.

#include "Support/RowValues.hpp"
#include "Support/TestDesktop.hpp"
#include "Tools/Record/RecordedSettings.hpp"
#include "Tools/Simulate/Simulation.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace trelvan {

void PrintTo(const SettingRow& row, std::ostream* out) {
    *out << row.name;
}

namespace {

using testing::HasSubstr;

nlohmann::json jsonOf(const DefaultsValue& value) {
    return std::visit(
        [](const auto& held) -> nlohmann::json {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, Data>) {
                return held.bytes;
            } else {
                return held;
            }
        },
        value);
}

class ToolsSettingRowTest : public testing::TestWithParam<SettingRow> {
  protected:
    std::string run(const nlohmann::json& line) { return simulation.runLine(line.dump()).value_or(""); }
    std::string set(const nlohmann::json& value) {
        return run({{"do", "call"}, {"operation", "setSetting"}, {"name", row.name}, {"value", value}});
    }
    nlohmann::json state(const char* what) {
        EXPECT_EQ(run({{"do", "print"}, {"what", what}}), "");
        return nlohmann::json::parse(trace.back()).at("value");
    }

    const SettingRow& row = GetParam();
    const std::string key{row.key};
    const std::string name{row.name};
    const nlohmann::json other = jsonOf(test::otherValue(row));
    std::vector<std::string> trace;
    StandardFiles files;
    Simulation simulation{macShortcuts, files, [this](std::string_view line) { trace.emplace_back(line); }};
};

INSTANTIATE_TEST_SUITE_P(Catalogue, ToolsSettingRowTest, testing::ValuesIn(test::settableRows()),
                         test::rowName);

TEST_P(ToolsSettingRowTest, Script_SetsItByItsNameAndRefusesAnotherType) {
    run({{"do", "start"}});
    EXPECT_EQ(set(other), "");
    EXPECT_THAT(set(nlohmann::json::array()), HasSubstr("value: expected"));
    if (row.keeping == Keeping::onRequest) {
        EXPECT_EQ(run({{"do", "call"}, {"operation", "persistSpeedSettings"}}), "");
    }
    if (row.isStored()) {
        EXPECT_EQ(state("defaults").at(key), other);
    }
    if (row.keeping == Keeping::onRequest) {
        EXPECT_EQ(state("monitor").at(name), other);
    }
    if (row.keeping == Keeping::onChange) {
        EXPECT_EQ(state("keepAwake").at(name), other);
    }
}

TEST_P(ToolsSettingRowTest, Recording_HasItIfItDecidesWhatBecomesOfAnEvent) {
    test::TestDesktop desktop;
    if (row.isStored()) desktop.defaults[key] = test::otherValue(row);
    const auto recorded = recordedSettings(desktop.userDefaults(), desktop.workspace());
    EXPECT_EQ(recorded.defaults.contains(key), row.isRecorded);
    if (row.isRecorded) {
        EXPECT_EQ(recorded.defaults.at(key).dump(), other.dump());
    }
}

}  // namespace
}  // namespace trelvan
