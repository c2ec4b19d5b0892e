#include "Tools/Simulate/Simulation.hpp"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

// Script lines through `simulate`, from the text of a line to the text of its trace.

namespace trelvan {
namespace {

void run(benchmark::State& state, const std::vector<std::string>& lines) {
    std::size_t written = 0;
    StandardFiles files;
    Simulation simulation(macShortcuts, files, [&written](std::string_view line) { written += line.size(); });
    for (const char* line : {R"({"do":"defaults","set":{"trackball_profiles":[{"name":"P","mappings":[)"
                             R"({"buttonNumber":3,"buttonLabel":"","action":"Copiar"}]}]}})",
                             R"({"do":"start"})"}) {
        if (const auto error = simulation.runLine(line)) state.SkipWithError(error->c_str());
    }
    for (auto _ : state) {
        for (const auto& line : lines) {
            if (const auto error = simulation.runLine(line)) state.SkipWithError(error->c_str());
        }
    }
    benchmark::DoNotOptimize(written);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}

void simulateMotion(benchmark::State& state) {
    run(state, {R"({"do":"event","type":5,"dx":3,"dy":-1,"x":700,"y":400})"});
}
BENCHMARK(simulateMotion);

void simulateScroll(benchmark::State& state) {
    run(state, {R"({"do":"event","type":22,"scrollY":1,"pointY":10})"});
}
BENCHMARK(simulateScroll);

void simulatePresses(benchmark::State& state) {
    run(state, {R"({"do":"event","type":25,"button":3})", R"({"do":"event","type":26,"button":3})"});
}
BENCHMARK(simulatePresses);

/// Scripts of so many operations, each of which adds a mapping; with twice as many it should take twice as
/// long.
void simulateAddedMappings(benchmark::State& state) {
    StandardFiles files;
    for (auto _ : state) {
        Simulation simulation(macShortcuts, files, [](std::string_view /*line*/) {});
        (void)simulation.runLine(R"({"do":"start"})");
        for (std::int64_t number = 0; number < state.range(0); ++number) {
            const auto error =
                simulation.runLine(R"({"do":"call","operation":"addExtraButtonMapping","button":)" +
                                   std::to_string(number + 10) + "}");
            if (error) state.SkipWithError(error->c_str());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(simulateAddedMappings)->Arg(1000)->Arg(5000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace trelvan
