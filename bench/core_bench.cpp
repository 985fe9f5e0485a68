// Reading and writing a library of 10,000 presets; goal: 50 ms each.

#include "core/netconfig/preset_library.h"

#include <benchmark/benchmark.h>

namespace {

using namespace corvane;

constexpr int presetCount = 10'000;
constexpr double goalMilliseconds = 50;

PresetLibrary largeLibrary() {
    PresetLibrary library;
    for (int i = 0; i < presetCount; ++i) {
        NetworkPreset preset;
        preset.id = Uuid::generate();
        preset.name = "Stage left, position " + std::to_string(i);
        preset.service = "USB 10/100/1000 LAN " + std::to_string(i % 40);
        preset.mode = i % 4 == 0 ? NetworkPreset::Mode::dhcp : NetworkPreset::Mode::manual;
        preset.ip = "10.20." + std::to_string(i / 250) + "." + std::to_string(i % 250 + 1);
        preset.subnet = "255.255.0.0";
        preset.router = "10.20.0.1";
        preset.dns = {"10.20.0.2", "8.8.8.8"};
        library.presets.push_back(std::move(preset));
    }
    return library;
}

void report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
    state.counters["goal_ms"] = goalMilliseconds;
}

void loadLibrary(benchmark::State& state) {
    const auto file = largeLibrary().encoded();
    for (auto _ : state) {
        auto result = PresetLibrary::decode(file);
        if (!result.library || result.library->presets.size() != presetCount) state.SkipWithError("not read");
        benchmark::DoNotOptimize(result);
    }
    report(state, file.size());
}

void saveLibrary(benchmark::State& state) {
    const auto library = largeLibrary();
    std::size_t bytes = 0;
    for (auto _ : state) {
        auto file = library.encoded();
        bytes = file.size();
        benchmark::DoNotOptimize(file);
    }
    report(state, bytes);
}

BENCHMARK(loadLibrary)->Name("load 10,000 presets")->Unit(benchmark::kMillisecond);
BENCHMARK(saveLibrary)->Name("save 10,000 presets")->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
