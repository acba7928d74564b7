#include "engine/ChannelPair.h"

#include "engine/KernelChoice.h"
#include "tests/support/EngineInput.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>

namespace {

constexpr int LongestCall = 6000;

/// Two engines with the memory that their calls share.
struct Stereo {
    explicit Stereo(const BlockKernel& kernel)
        : engines{std::make_unique<FourBandEqualizer>(kernel), std::make_unique<FourBandEqualizer>(kernel)} {}

    std::unique_ptr<FourBandEqualizer> engines[2];
    Samples memory = Samples(4 * LongestCall + 1);
};

/// Where a call's two inputs and two outputs lie, as offsets into the memory.
struct Layout {
    const char* name;
    int inputs[2];
    int outputs[2];
};

constexpr Layout Layouts[] = {
    {"separate", {0, LongestCall}, {2 * LongestCall, 3 * LongestCall}},
    {"in place", {0, LongestCall}, {0, LongestCall}},
    {"one input for both", {0, 0}, {LongestCall, 2 * LongestCall}},
    // Shifted to the side on which a part of a call would spoil what a later part reads.
    {"first output over the second input", {0, LongestCall}, {LongestCall - 1, 3 * LongestCall}},
    {"second output over the first input", {0, LongestCall}, {2 * LongestCall, 1}},
    {"crosswise", {0, LongestCall}, {LongestCall, 0}},
    {"outputs over each other", {0, LongestCall}, {2 * LongestCall, 2 * LongestCall + 700}},
    {"one array for all", {0, 0}, {0, 0}},
};

} // namespace

TEST(ChannelPair, DoesWhatTwoEnginesDoOneAfterTheOther) {
    for (const BlockKernel* kernel : availableKernels()) {
        for (const Layout& layout : Layouts) {
            SCOPED_TRACE(testing::Message() << kernel->name << ", " << layout.name);
            std::mt19937 random(1);
            Stereo pair(*kernel);
            Stereo single(*kernel);
            for (int call = 0; call < 60; ++call) {
                pair.memory = noise(random, pair.memory.size());
                single.memory = pair.memory;
                // Changes on either or both channels, now and then.
                for (const int channel : {0, 1}) {
                    if (random() % 4 != 0) continue;
                    const Values values = randomValues(random);
                    for (Stereo* stereo : {&pair, &single}) stereo->engines[channel]->setParameters(values.data());
                }
                // Once in a while the engines fall out of step.
                if (call % 20 == 19)
                    for (Stereo* stereo : {&pair, &single})
                        stereo->engines[1]->process(stereo->memory.data(), stereo->memory.data(), 100, 0);
                const int mode = random() % 4 != 0 ? 0 : static_cast<int>(random() % 4);
                const int count = std::array{0, 64, 2048, LongestCall - 1}[random() % 4];
                const float* const inputs[] = {pair.memory.data() + layout.inputs[0],
                                               pair.memory.data() + layout.inputs[1]};
                float* const outputs[] = {pair.memory.data() + layout.outputs[0],
                                          pair.memory.data() + layout.outputs[1]};
                processPair(*pair.engines[0], *pair.engines[1], inputs, outputs, count, mode);
                for (const int channel : {0, 1})
                    single.engines[channel]->process(single.memory.data() + layout.inputs[channel],
                                                     single.memory.data() + layout.outputs[channel], count, mode);
                ASSERT_EQ(pair.memory, single.memory) << "call " << call;
            }
        }
    }
}
