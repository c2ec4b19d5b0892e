#include "Tools/Simulate/Simulation.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

// Each script in this folder is run and its trace compared with the golden one beside it.

namespace trelvan {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> linesOf(const fs::path& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

std::vector<fs::path> scripts() {
    std::vector<fs::path> result;
    for (const auto& entry : fs::directory_iterator(TRELVAN_SCENARIOS)) {
        if (entry.path().extension() == ".jsonl") result.push_back(entry.path());
    }
    std::ranges::sort(result);
    return result;
}

/// A script, and the platform whose rules it runs by.
struct Scenario {
    fs::path script;
    bool isLinux = false;

    /// The golden trace; where Linux' is no other than macOS', there is one for both.
    [[nodiscard]] fs::path golden() const {
        const auto ofLinux = fs::path(script).replace_extension(".linux.trace");
        return isLinux && fs::exists(ofLinux) ? ofLinux : fs::path(script).replace_extension(".trace");
    }
};

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.script.stem().string() << (scenario.isLinux ? " on Linux" : " on macOS");
}

std::vector<Scenario> scenarios() {
    std::vector<Scenario> result;
    for (const auto& script : scripts()) {
        result.push_back({.script = script, .isLinux = false});
        result.push_back({.script = script, .isLinux = true});
    }
    return result;
}

/// Runs in a folder of its own, with what is in `files`, so that scripts may name files.
class ScenarioTest : public testing::TestWithParam<Scenario> {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "scenario-XXXXXX";
        place_ = mkdtemp(name.data());
        fs::copy(fs::path(TRELVAN_SCENARIOS) / "files", place_);
        before_ = fs::current_path();
        fs::current_path(place_);
    }
    void TearDown() override {
        fs::current_path(before_);
        fs::remove_all(place_);
    }

  private:
    fs::path place_;
    fs::path before_;
};

TEST_P(ScenarioTest, TraceIsTheGoldenOne) {
    std::vector<std::string> trace;
    StandardFiles files;
    Simulation simulation(
        GetParam().isLinux ? linuxShortcuts : macShortcuts, files,
        [&trace](std::string_view line) { trace.emplace_back(line.substr(0, line.size() - 1)); });
    const auto script = linesOf(GetParam().script);
    ASSERT_FALSE(script.empty());
    EXPECT_TRUE(script.front().starts_with(R"({"note": ")")) << "the first line does not say what it shows";
    for (std::size_t number = 0; number < script.size(); ++number) {
        const auto error = simulation.runLine(script[number]);
        ASSERT_FALSE(error) << "line " << number + 1 << ": " << *error;
    }
    simulation.finish();

    const auto golden = linesOf(GetParam().golden());
    ASSERT_FALSE(golden.empty()) << "there is no golden trace";
    const auto [found, expected] = std::ranges::mismatch(trace, golden);
    const bool same = found == trace.end() && expected == golden.end();
    EXPECT_TRUE(same) << "line " << expected - golden.begin() + 1
                      << " differs\n  is:     " << (found != trace.end() ? *found : "(the end)")
                      << "\n  golden: " << (expected != golden.end() ? *expected : "(the end)");
}

std::string nameOf(const testing::TestParamInfo<Scenario>& info) {
    std::string name = info.param.script.stem().string() + (info.param.isLinux ? "_linux" : "_macos");
    std::ranges::replace(name, '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, testing::ValuesIn(scenarios()), nameOf);

}  // namespace
}  // namespace trelvan
