#include "engine/ChannelPair.h"

#include "engine/kernels/KernelChoice.h"
#include "engine/kernels/Plain.h"
#include "tests/support/EngineInput.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <new>

namespace eq {

namespace {

constexpr int LongestCall = 6000;

/// Two engines, and the memory for the samples of both. `place` selects one of the possible alignments of an engine.
struct Stereo {
    Stereo(const BlockKernel& kernel, unsigned place) {
        for (const int i : {0, 1})
            engines[i] = new (&rooms[i][place * alignof(FourBandEqualizer)]) FourBandEqualizer(kernel);
    }

    alignas(64) std::byte rooms[2][sizeof(FourBandEqualizer) + 64];
    FourBandEqualizer* engines[2];
    Samples memory = Samples(4 * LongestCall + 1);
};

/// The places of a call's two inputs and two outputs, as offsets into the memory.
struct Layout {
    const char* name;
    int inputs[2];
    int outputs[2];
};

constexpr Layout Layouts[] = {
    {"separate", {0, LongestCall}, {2 * LongestCall, 3 * LongestCall}},
    {"in place", {0, LongestCall}, {0, LongestCall}},
    {"one input for both", {0, 0}, {LongestCall, 2 * LongestCall}},
    // In the next two rows, an early part of a call would overwrite samples that a later part reads.
    {"first output over the second input", {0, LongestCall}, {LongestCall - 1, 3 * LongestCall}},
    {"second output over the first input", {0, LongestCall}, {2 * LongestCall, 1}},
    {"crosswise", {0, LongestCall}, {LongestCall, 0}},
    {"outputs over each other", {0, LongestCall}, {2 * LongestCall, 2 * LongestCall + 700}},
    {"one array for all", {0, 0}, {0, 0}},
};

/// The kinds of noise: of moderate level, of denormals, loud, or with one special value. The special value is in the
/// middle of a block, or near its start or end, where a vector kernel runs only some of the bands.
enum Sound : unsigned { Moderate, Denormal, Loud, Odd, SoundCount };

Samples anySamples(std::mt19937& random, std::size_t count, unsigned sound) {
    constexpr float Levels[] = {1, 1000 * FLT_TRUE_MIN, FLT_MAX / 2, 1};
    Samples samples = noise(random, count, Levels[sound]);
    if (sound == Odd && random() % 4 == 0) {
        const float odd[] = {NaN, Infinity, -Infinity, FLT_MAX, -0.0F, FLT_TRUE_MIN};
        const std::size_t places[] = {0, 5, 11, 12, 1000, BlockSize - 12, BlockSize - 1};
        const std::size_t channel = random() % 2 * LongestCall;
        samples[channel + places[random() % std::size(places)]] = odd[random() % std::size(odd)];
    }
    return samples;
}

} // namespace

TEST(ChannelPair, HasTheOutputOfTwoPlainEnginesWithEachKernel) {
    for (const BlockKernel* kernel : availableKernels()) {
        for (unsigned stream = 0; stream < 2 * std::size(Layouts) * SoundCount; ++stream) {
            const Layout& layout = Layouts[stream % std::size(Layouts)];
            const unsigned sound = stream / std::size(Layouts) % SoundCount;
            SCOPED_TRACE(testing::Message() << kernel->name << ", " << layout.name << ", stream " << stream);
            std::mt19937 random(stream);
            Stereo pair(*kernel, random() % (64 / alignof(FourBandEqualizer)));
            Stereo single(PlainKernel, 0);
            for (int call = 0; call < 30; ++call) {
                pair.memory = anySamples(random, pair.memory.size(), sound);
                single.memory = pair.memory;
                // Reset the engines sometimes, because the states after an infinity hide later differences.
                if (call % 5 == 0)
                    for (Stereo* stereo : {&pair, &single})
                        for (FourBandEqualizer* const engine : stereo->engines) engine->reset();
                // Sometimes change the parameters of one channel or of both channels.
                for (const int channel : {0, 1}) {
                    if (random() % 4 != 0) continue;
                    const Values values = randomValues(random);
                    for (Stereo* stereo : {&pair, &single}) stereo->engines[channel]->setParameters(values.data());
                }
                // Sometimes shift the block boundaries of the second engine against the boundaries of the first engine.
                if (call % 20 == 19)
                    for (Stereo* stereo : {&pair, &single})
                        stereo->engines[1]->process(stereo->memory.data(), stereo->memory.data(), 100, 0);
                const int mode = random() % 4 != 0 ? 0 : static_cast<int>(random() % 4);
                const int count = sound == Odd ? BlockSize : std::array{0, 64, 2048, LongestCall - 1}[random() % 4];
                const float* const inputs[] = {&pair.memory[layout.inputs[0]], &pair.memory[layout.inputs[1]]};
                float* const outputs[] = {&pair.memory[layout.outputs[0]], &pair.memory[layout.outputs[1]]};
                ChannelPair(*pair.engines[0], *pair.engines[1]).process(inputs, outputs, count, mode);
                for (const int channel : {0, 1})
                    single.engines[channel]->process(&single.memory[layout.inputs[channel]],
                                                     &single.memory[layout.outputs[channel]], count, mode);
                ASSERT_EQ(firstDifference(pair.memory, single.memory), -1) << "call " << call;
            }
        }
    }
}

} // namespace eq
