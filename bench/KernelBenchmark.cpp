// Measures the filter. For each kernel, the program measures an ordinary block, a pair of blocks, a parameter change
// and a fade, all with signal, and a silent block after the state has decayed to denormals. It also measures the chain
// of operations that limits every kernel.
//
//     bench-kernel [TEXT]    measures only the figures whose names contain TEXT
//
// Each line of the output is a name, a tab, the least of 100 measurements in nanoseconds, a tab, and a remark. The
// measurements are in random order. This program uses no benchmark library, because Debian has none for Windows.

#include "engine/kernels/KernelChoice.h"
#include "tests/support/EngineInput.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <string>

namespace eq {

namespace {

// The measurements are many and short, so that some of them are not interrupted on a busy machine.
constexpr int Rounds = 100;
constexpr double LeastDuration = 1e6; // nanoseconds

/// Typical settings with four active bands.
constexpr float Settings[ParameterCount] = {-3, 80, 400, 2500, 9000, 4, -5, 6, -2, 1, 2, 3, 1.5F};
constexpr float OtherSettings[ParameterCount] = {-6, 100, 700, 3500, 12000, -3, 4, -6, 5, 2, 1, 2, 3};

struct Figure {
    std::string name;
    std::function<double()> measure; ///< returns nanoseconds
    std::string remark = {};
    double least = std::numeric_limits<double>::infinity();
};

double nanosecondsOf(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

/// Returns a function that measures the time of `call` in nanoseconds per sample. One call processes `samples` samples.
std::function<double()> perSample(int samples, std::function<void()> call) {
    return [=] {
        for (int calls = 1;; calls *= 2) {
            const double duration = nanosecondsOf([&] {
                for (int i = 0; i < calls; ++i) call();
            });
            if (duration >= LeastDuration) return duration / calls / samples;
        }
    };
}

Samples noiseBlock(unsigned seed) {
    std::mt19937 random(seed);
    return noise(random, BlockSize, 0.5F);
}

/// A channel whose kernel filters the same block repeatedly.
struct Channel {
    explicit Channel(unsigned seed) : input(noiseBlock(seed)) {}

    FilterRun run() { return {input.data(), design, {states[0], states[1], states[2], states[3]}}; }

    Samples input;
    Samples output = Samples(BlockSize);
    FilterDesign design = FilterDesign::of(Settings);
    double states[BandCount][2] = {};
};

Figure ordinaryBlock(const BlockKernel& kernel) {
    return {"ordinary", perSample(BlockSize, [&kernel, channel = Channel(1)]() mutable {
                kernel.filter(channel.run(), channel.output.data());
            })};
}

Figure stereoPair(const BlockKernel& kernel) {
    return {"pair", perSample(2 * BlockSize, [&kernel, left = Channel(1), right = Channel(2)]() mutable {
                kernel.filterTwo(left.run(), left.output.data(), right.run(), right.output.data());
            })};
}

/// The measured time includes the design of the new setting.
Figure changeBlock(const BlockKernel& kernel) {
    const auto engine = std::make_shared<FourBandEqualizer>(kernel);
    return {"change", perSample(BlockSize, [engine, channel = Channel(1), other = false]() mutable {
                other = !other;
                engine->setParameters(other ? OtherSettings : Settings);
                engine->process(channel.input.data(), channel.output.data(), BlockSize, FourBandEqualizer::Process);
            })};
}

Figure fadeBlock(const BlockKernel& kernel) {
    return {"fade", perSample(BlockSize, [&kernel, channel = Channel(1)]() mutable {
                kernel.fadeIn(channel.run(), channel.output.data());
            })};
}

/// Measures a silent block long after the last sound. With most settings, rounding keeps the state in the range of the
/// denormals.
Figure silence(const BlockKernel& kernel) {
    Channel channel(1);
    kernel.filter(channel.run(), channel.output.data());
    channel.input.assign(BlockSize, 0.0F);
    for (int block = 0; block < 2000; ++block) kernel.filter(channel.run(), channel.output.data());
    const auto bands = std::ranges::count_if(channel.states, [](const double(&state)[2]) {
        return std::fpclassify(state[0]) == FP_SUBNORMAL || std::fpclassify(state[1]) == FP_SUBNORMAL;
    });
    return {"silence",
            perSample(BlockSize, [&kernel, channel]() mutable { kernel.filter(channel.run(), channel.output.data()); }),
            std::to_string(bands) + " of the four bands stayed in denormals"};
}

/// Runs the chain of operations by which each sample of a band depends on the previous sample: five operations per
/// sample. All other operands are constant. Returns the last state.
[[gnu::noinline]] double runChain(double s2, double c, double k, double x, double cs1, double s1) {
    for (int n = 0; n < BlockSize; ++n) s2 = s1 + c * ((x + k * s2) - cs1);
    return s2;
}

/// Measures the chain that `runChain` runs. No kernel can filter a single block in less time. `size` is the magnitude
/// of the operands.
Figure chain(const char* name, double size) {
    return {name, perSample(BlockSize, [size, design = FilterDesign::of(Settings), s2 = 0.3 * size]() mutable {
                s2 = runChain(s2, design.centreCoefficient[1], design.bandwidthCoefficient[1], 0.2 * size, 0.01 * size,
                              0.02 * size);
            })};
}

/// Measures the copies of samples into and out of the blocks, without a filter.
Figure staging() {
    constexpr int PassMode = 3;
    const auto engine = std::make_shared<FourBandEqualizer>();
    return {"staging", perSample(BlockSize, [engine, block = noiseBlock(1)]() mutable {
                engine->process(block.data(), block.data(), BlockSize, PassMode);
            })};
}

/// The size of a call in samples. One call in 32 completes a block, and this call does all the filter work.
constexpr int Frames = 64;
constexpr int CallsPerBlock = BlockSize / Frames;

Figure meanCall() {
    const auto engine = std::make_shared<FourBandEqualizer>();
    engine->setParameters(Settings);
    const auto callAll = [engine, block = noiseBlock(1)]() mutable {
        for (int n = 0; n < BlockSize; n += Frames)
            engine->process(block.data() + n, block.data() + n, Frames, FourBandEqualizer::Process);
    };
    return {"mean_call", perSample(CallsPerBlock, callAll)};
}

Figure completingCall() {
    const auto engine = std::make_shared<FourBandEqualizer>();
    engine->setParameters(Settings);
    const auto measure = [engine, block = noiseBlock(1)]() mutable {
        std::vector<double> durations(101);
        for (double& duration : durations) {
            engine->process(block.data(), block.data(), BlockSize - Frames, FourBandEqualizer::Process);
            float* const last = block.data() + BlockSize - Frames;
            duration = nanosecondsOf([&] { engine->process(last, last, Frames, FourBandEqualizer::Process); });
        }
        // Return the median, because the system may interrupt some calls.
        std::ranges::nth_element(durations, durations.begin() + 50);
        return durations[50];
    };
    return {"completing_call", measure};
}

} // namespace

} // namespace eq

int main(int argumentCount, char** arguments) {
    using namespace eq;
    std::vector<Figure> figures = {chain("chain", 1.0), chain("chain_in_denormals", 1e-310), staging(), meanCall(),
                                   completingCall()};
    for (const BlockKernel* kernel : availableKernels())
        for (const auto make : {ordinaryBlock, stereoPair, changeBlock, fadeBlock, silence}) {
            figures.push_back(make(*kernel));
            figures.back().name += std::string("/") + kernel->name;
        }
    if (argumentCount > 1)
        std::erase_if(figures,
                      [&](const Figure& figure) { return figure.name.find(arguments[1]) == std::string::npos; });
    std::mt19937 random(1);
    for (int round = 0; round < Rounds; ++round) {
        std::ranges::shuffle(figures, random);
        for (Figure& figure : figures) figure.least = std::min(figure.least, figure.measure());
    }
    std::ranges::sort(figures, {}, &Figure::name);
    for (const Figure& figure : figures)
        std::printf("%s\t%.4f\t%s\n", figure.name.c_str(), figure.least, figure.remark.c_str());
    return 0;
}
