// What the filter costs: each kernel on a block, on a pair of blocks and on a change, with signal and after silence has
// brought the state down to denormals; and the chain of operations that none of them can go below with one block.

#include "engine/FourBandEqualizer.h"
#include "engine/kernels/KernelChoice.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int BlockSize = BlockKernel::BlockSize;

using Block = std::vector<float>;

Block noise(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> pick(-0.5F, 0.5F);
    Block block(BlockSize);
    for (float& sample : block) sample = pick(random);
    return block;
}

/// Four bands on, as in use.
constexpr float Settings[ParameterCount] = {-3, 80, 400, 2500, 9000, 4, -5, 6, -2, 1, 2, 3, 1.5F};
constexpr float OtherSettings[ParameterCount] = {-6, 100, 700, 3500, 12000, -3, 4, -6, 5, 2, 1, 2, 3};

/// A channel that filters one block over and over.
struct Channel {
    Channel(unsigned seed, const float (&settings)[ParameterCount])
        : input(noise(seed)), output(BlockSize), design(FilterDesign::of(settings)) {}

    FilterRun run() { return {input.data(), design, {states[0], states[1], states[2], states[3]}}; }

    Block input;
    Block output;
    FilterDesign design;
    double states[BandCount][2] = {};
};

void countSamples(benchmark::State& state, int samplesPerIteration) {
    state.counters["per_sample"] = benchmark::Counter(
        samplesPerIteration, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// The five operations for which a section's next sample waits, and nothing else. What lies off the chain is constant.
[[gnu::noinline]] double runChain(double s2, double c, double k, double x, double cs1, double s1) {
    for (int n = 0; n < BlockSize; ++n) s2 = s1 + c * ((x + k * s2) - cs1);
    return s2;
}

/// What a block costs at the least, if the bands run side by side. `size` is that of the numbers.
void chain(benchmark::State& state, double size) {
    const FilterDesign design = FilterDesign::of(Settings);
    double s2 = 0.3 * size;
    for (auto _ : state)
        s2 = runChain(s2, design.centreCoefficient[1], design.bandwidthCoefficient[1], 0.2 * size, 0.01 * size,
                      0.02 * size);
    benchmark::DoNotOptimize(s2);
    countSamples(state, BlockSize);
}

void ordinaryBlock(benchmark::State& state, const BlockKernel& kernel) {
    Channel channel(1, Settings);
    for (auto _ : state) {
        kernel.filter(channel.run(), channel.output.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, BlockSize);
}

void stereoPair(benchmark::State& state, const BlockKernel& kernel) {
    Channel left(1, Settings);
    Channel right(2, Settings);
    for (auto _ : state) {
        kernel.filterTwo(left.run(), left.output.data(), right.run(), right.output.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, 2 * BlockSize);
}

/// With the design of the new setting, as in use.
void changeBlock(benchmark::State& state, const BlockKernel& kernel) {
    FourBandEqualizer engine(kernel);
    Block block = noise(1);
    Block output(BlockSize);
    for (auto _ : state) {
        engine.setParameters(state.iterations() % 2 == 0 ? Settings : OtherSettings);
        engine.process(block.data(), output.data(), BlockSize, FourBandEqualizer::Process);
        benchmark::ClobberMemory();
    }
    countSamples(state, BlockSize);
}

void fadeBlock(benchmark::State& state, const BlockKernel& kernel) {
    Channel channel(1, Settings);
    for (auto _ : state) {
        kernel.fadeIn(channel.run(), channel.output.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, BlockSize);
}

/// Long after the last sound. Most settings never come to rest: rounding keeps the state circling among denormals.
void silence(benchmark::State& state, const BlockKernel& kernel) {
    Channel channel(1, Settings);
    kernel.filter(channel.run(), channel.output.data());
    channel.input.assign(BlockSize, 0.0F);
    for (int block = 0; block < 2000; ++block) kernel.filter(channel.run(), channel.output.data());
    const auto denormal = [](const double(&s)[2]) {
        return std::fpclassify(s[0]) == FP_SUBNORMAL || std::fpclassify(s[1]) == FP_SUBNORMAL;
    };
    const auto bands = std::count_if(std::begin(channel.states), std::end(channel.states), denormal);
    state.SetLabel(std::to_string(bands) + " of the four bands stayed in denormals");
    for (auto _ : state) {
        kernel.filter(channel.run(), channel.output.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, BlockSize);
}

/// Samples in and out without a filter.
void staging(benchmark::State& state) {
    constexpr int PassMode = 3;
    FourBandEqualizer engine;
    Block block = noise(1);
    for (auto _ : state) {
        engine.process(block.data(), block.data(), BlockSize, PassMode);
        benchmark::ClobberMemory();
    }
    countSamples(state, BlockSize);
}

/// Calls of 64 samples: in one of 32 a block completes, and that one bears all the work.
void shortCalls(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    constexpr int Frames = 64;
    constexpr int CallsABlock = BlockSize / Frames;
    FourBandEqualizer engine;
    engine.setParameters(Settings);
    Block block = noise(1);
    std::vector<double> worst;
    double sum = 0;
    for (auto _ : state) {
        double longest = 0;
        for (int call = 0; call < CallsABlock; ++call) {
            float* const samples = block.data() + call * Frames;
            const auto start = Clock::now();
            engine.process(samples, samples, Frames, FourBandEqualizer::Process);
            const double duration = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
            sum += duration;
            longest = std::max(longest, duration);
        }
        worst.push_back(longest);
    }
    // The median, since a call may also be the one that the system has interrupted.
    std::nth_element(worst.begin(), worst.begin() + static_cast<std::ptrdiff_t>(worst.size() / 2), worst.end());
    state.counters["worst_ns"] = worst[worst.size() / 2];
    state.counters["mean_ns"] = sum / static_cast<double>(state.iterations()) / CallsABlock;
}

void registerAll() {
    using Measure = void(benchmark::State&, const BlockKernel&);
    const struct {
        const char* name;
        Measure* measure;
    } rows[] = {{"ordinary", ordinaryBlock},
                {"pair", stereoPair},
                {"change", changeBlock},
                {"fade", fadeBlock},
                {"silence", silence}};
    for (const auto& row : rows)
        for (const BlockKernel* kernel : availableKernels())
            benchmark::RegisterBenchmark((std::string(row.name) + "/" + kernel->name).c_str(),
                                         [=](benchmark::State& state) { row.measure(state, *kernel); });
    benchmark::RegisterBenchmark("chain", chain, 1.0);
    benchmark::RegisterBenchmark("chain_in_denormals", chain, 1e-310);
    benchmark::RegisterBenchmark("staging", staging);
    benchmark::RegisterBenchmark("short_calls", shortCalls);
}

} // namespace

#ifndef EQ_BENCHMARK_MAIN
#define EQ_BENCHMARK_MAIN main
#endif

int EQ_BENCHMARK_MAIN(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) return 1;
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
