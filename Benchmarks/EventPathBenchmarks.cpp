#include "Support/AllocationCounter.hpp"
#include "Support/HotPath.hpp"

#include <benchmark/benchmark.h>

// The time from an event at the tap to the answer, on the simulated tap. What an event puts off until later
// (the debug view, a marked copy on its way back) is cleared away every thousand events, outside the measured
// time.

namespace trelvan {
namespace {

using test::allocationCount;
using test::HotPath;

constexpr TapEvent motion{.type = EventType::mouseMoved, .deltaX = 9, .deltaY = -5};
constexpr TapEvent wheel{.type = EventType::scrollWheel, .scrollDeltaAxis1 = 3};

void run(benchmark::State& state, HotPath& path, const TapEvent& event) {
    constexpr int batch = 1000;
    for (int warmUp = 0; warmUp < 2; ++warmUp) {
        for (int index = 0; index < batch; ++index) path.send(event);
        path.drain();
    }
    std::uint64_t allocations = 0;
    while (state.KeepRunningBatch(batch)) {
        const auto before = allocationCount();
        for (int index = 0; index < batch; ++index) benchmark::DoNotOptimize(path.send(event));
        allocations += allocationCount() - before;
        state.PauseTiming();
        path.drain();
        state.ResumeTiming();
    }
    state.counters["allocs/event"] =
        benchmark::Counter(static_cast<double>(allocations), benchmark::Counter::kAvgIterations);
}

void motionPassed(benchmark::State& state) {
    HotPath path;
    run(state, path, motion);
}
BENCHMARK(motionPassed);

void motionShapedSimple(benchmark::State& state) {
    HotPath path;
    path.monitor->mouseSpeed = 1.3;
    path.monitor->advancedMouseSpeedEnabled = false;
    run(state, path, motion);
}
BENCHMARK(motionShapedSimple);

void motionShapedAdvanced(benchmark::State& state) {
    HotPath path;
    path.monitor->mouseSpeed = 1.3;
    run(state, path, motion);
}
BENCHMARK(motionShapedAdvanced);

void scrollPassed(benchmark::State& state) {
    HotPath path;
    run(state, path, wheel);
}
BENCHMARK(scrollPassed);

void scrollShaped(benchmark::State& state) {
    HotPath path;
    path.monitor->scrollSpeedVertical = 2.0;
    path.monitor->swapScrollDirection = true;
    run(state, path, wheel);
}
BENCHMARK(scrollShaped);

void pressUnmapped(benchmark::State& state) {
    HotPath path;
    run(state, path, {.type = EventType::otherMouseDown, .buttonNumber = 3});
}
BENCHMARK(pressUnmapped);

/// With so many mappings in the profile.
void pressMapped(benchmark::State& state) {
    const int mappings = static_cast<int>(state.range(0));
    HotPath path(mappings);
    run(state, path, {.type = EventType::otherMouseDown, .buttonNumber = 2 + mappings / 2});
}
BENCHMARK(pressMapped)->Arg(5)->Arg(1000);

}  // namespace
}  // namespace trelvan
