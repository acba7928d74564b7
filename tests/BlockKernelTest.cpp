#include "engine/BlockKernel.h"

#include "engine/KernelChoice.h"
#include "engine/PlainKernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using Samples = std::vector<float>;

constexpr int BlockSize = BlockKernel::BlockSize;
/// More alignments than any instruction set tells apart, in floats.
constexpr int Alignments = 16;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float SmallestDenormal = std::numeric_limits<float>::denorm_min();

FilterDesign designOf(float volume, float frequency, float gain, float q) {
    const float values[ParameterCount] = {volume, frequency, frequency, frequency, frequency, gain, gain,
                                          gain,   gain,      q,         q,         q,         q};
    return FilterDesign::of(values);
}

FilterDesign randomDesign(std::mt19937& random) {
    const auto pick = [&](float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); };
    // A fifth of the values lies on a limit or a NaN, which is one, too.
    const auto value = [&](float low, float high) { return random() % 5 == 0 ? NaN : pick(low, high); };
    float values[ParameterCount] = {value(-13, 13)};
    for (int i = 1; i <= BandCount; ++i) {
        values[i] = 15.0F * std::pow(1500.0F, value(0, 1));
        values[BandCount + i] = value(-11, 11);
        values[2 * BandCount + i] = value(0.5F, 11);
    }
    return FilterDesign::of(values);
}

/// What a kernel works on: two channels, with an input, an output and a design each, and a design to change to.
class Channels {
public:
    Channels(const BlockKernel& kernelUnderTest, int alignment)
        : kernel(kernelUnderTest), start(static_cast<std::size_t>(alignment)) {}

    /// One block of the first channel, or of both: what a random number asks for.
    void run(unsigned operation, const Samples& first, const Samples& second) {
        std::copy(first.begin(), first.end(), at(inputs[0]));
        std::copy(second.begin(), second.end(), at(inputs[1]));
        const FilterRun run = {at(inputs[0]), designs[0], states[0], &BandState::currentState};
        const FilterRun next = {at(inputs[0]), designs[1], states[0], &BandState::nextState};
        const FilterRun other = {at(inputs[1]), designs[1], states[1], &BandState::currentState};
        switch (operation % 5) {
        case 0:
            return kernel.filter(run, at(outputs[0]));
        case 1:
            return kernel.filterTwo(run, at(outputs[0]), other, at(outputs[1]));
        case 2:
            return kernel.change(run, next, at(outputs[0]));
        case 3:
            return kernel.fadeIn(run, at(outputs[0]));
        default:
            return kernel.fadeOut(run, at(outputs[0]));
        }
    }

    [[nodiscard]] Samples output(int channel) { return {at(outputs[channel]), at(outputs[channel]) + BlockSize}; }

    /// The surroundings of the outputs, which nobody may write to.
    [[nodiscard]] bool keptInside() const {
        for (const Samples& output : outputs)
            for (std::size_t i = 0; i < output.size(); ++i)
                if ((i < start || i >= start + BlockSize) && output[i] != Untouched) return false;
        return true;
    }

    FilterDesign designs[2] = {FilterDesign::flat(), FilterDesign::flat()};
    BandState states[2][BandCount] = {};

private:
    static constexpr float Untouched = -77;

    [[nodiscard]] float* at(Samples& samples) const { return samples.data() + start; }

    const BlockKernel& kernel;
    std::size_t start;
    Samples inputs[2] = {Samples(BlockSize + Alignments), Samples(BlockSize + Alignments)};
    Samples outputs[2] = {Samples(BlockSize + Alignments, Untouched), Samples(BlockSize + Alignments, Untouched)};
};

template <typename Number, typename Bits>
bool same(Number a, Number b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

/// The same bits, where every NaN is as good as another.
void expectSame(Channels& actual, Channels& expected) {
    for (int channel = 0; channel < 2; ++channel) {
        const Samples samples = actual.output(channel);
        const Samples reference = expected.output(channel);
        for (std::size_t i = 0; i < samples.size(); ++i)
            ASSERT_TRUE((same<float, std::uint32_t>(samples[i], reference[i])))
                << "channel " << channel << ", sample " << i << ": " << samples[i] << " for " << reference[i];
        for (int band = 0; band < BandCount; ++band) {
            const BandState& state = actual.states[channel][band];
            const BandState& stateWanted = expected.states[channel][band];
            for (int i = 0; i < 2; ++i) {
                ASSERT_TRUE((same<double, std::uint64_t>(state.currentState[i], stateWanted.currentState[i]))) << band;
                ASSERT_TRUE((same<double, std::uint64_t>(state.nextState[i], stateWanted.nextState[i]))) << band;
            }
        }
    }
    ASSERT_TRUE(actual.keptInside());
}

Samples noise(std::mt19937& random, float level = 1) {
    Samples samples(BlockSize);
    std::uniform_real_distribution<float> pick(-level, level);
    for (float& sample : samples) sample = pick(random);
    return samples;
}

/// Noise, with `sample` at a place where the front is whole, or in the triangles at its ends.
Samples noiseWith(std::mt19937& random, float sample) {
    Samples samples = noise(random);
    const std::size_t places[] = {0, 5, 11, 12, 1000, BlockSize - 12, BlockSize - 1};
    samples[places[random() % std::size(places)]] = sample;
    return samples;
}

Samples anyBits(std::mt19937& random) {
    Samples samples(BlockSize);
    for (float& sample : samples) sample = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    return samples;
}

class EachKernel : public testing::TestWithParam<const BlockKernel*> {
protected:
    /// Runs a stream of blocks through the kernel and the plain one, which must agree after each of them.
    void expectPlainResults(int alignment, int blocks, const std::function<Samples(int)>& block,
                            const std::function<void(int, Channels&)>& beforeBlock) {
        Channels actual(*GetParam(), alignment);
        Channels expected(plainKernel, 0);
        std::mt19937 random(static_cast<unsigned>(alignment));
        for (int i = 0; i < blocks; ++i) {
            SCOPED_TRACE(testing::Message() << "alignment " << alignment << ", block " << i);
            beforeBlock(i, actual);
            std::copy_n(actual.designs, 2, expected.designs);
            const Samples first = block(i);
            const Samples second = block(i);
            const auto operation = static_cast<unsigned>(random());
            actual.run(operation, first, second);
            expected.run(operation, first, second);
            ASSERT_NO_FATAL_FAILURE(expectSame(actual, expected));
        }
    }
};

// Processors of other kinds have the plain kernel alone.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EachKernel);
INSTANTIATE_TEST_SUITE_P(BlockKernel, EachKernel,
                         testing::ValuesIn(availableKernels().begin() + 1, availableKernels().end()),
                         [](const auto& test) { return std::string(test.param->name); });

} // namespace

TEST(KernelChoice, TakesTheLastOfTheAvailableKernelsAndAlwaysHasThePlainOne) {
    EXPECT_EQ(availableKernels().front(), &plainKernel);
    EXPECT_EQ(availableKernels().back(), &fastestKernel());
#ifdef __SSE2__
    EXPECT_GE(availableKernels().size(), 2U);
#endif
#ifdef __i386__
    for (const BlockKernel* kernel : availableKernels())
        EXPECT_EQ(std::string(kernel->name).find("AVX"), std::string::npos);
#endif
}

TEST_P(EachKernel, GivesThePlainKernelsBitsForAnySettingsAndAlignment) {
    for (int alignment = 0; alignment < Alignments; ++alignment) {
        std::mt19937 random(static_cast<unsigned>(alignment) + 100);
        expectPlainResults(
            alignment, 30, [&](int) { return noise(random); },
            [&](int block, Channels& channels) {
                if (block % 4 == 0) channels.designs[random() % 2] = randomDesign(random);
            });
    }
}

TEST_P(EachKernel, GivesThePlainKernelsBitsAtTheLimitsOfTheSettings) {
    std::mt19937 random(5);
    for (const float volume : {-12.0F, 12.0F})
        for (const float frequency : {20.0F, 20000.0F})
            for (const float gain : {-10.0F, 0.0F, 10.0F})
                for (const float q : {1.0F, 10.0F})
                    expectPlainResults(
                        1, 6, [&](int block) { return noise(random, block % 2 == 0 ? Largest : 1.0F); },
                        [&](int, Channels& channels) {
                            channels.designs[0] = designOf(volume, frequency, gain, q);
                            channels.designs[1] = designOf(-volume, frequency, -gain, q);
                        });
}

// The state dies down to denormals and stays there; that takes a long time in a narrow band.
TEST_P(EachKernel, GivesThePlainKernelsBitsWhileSilenceDecaysIntoDenormals) {
    std::mt19937 random(6);
    const Samples sound = noise(random);
    expectPlainResults(
        0, 400, [&](int block) { return block == 0 ? sound : Samples(BlockSize); },
        [](int block, Channels& channels) {
            channels.designs[0] = designOf(0, 1000, 10, 1);
            channels.designs[1] = designOf(0, 150, -10, 2);
            if (block == 399) {
                EXPECT_EQ(std::fpclassify(channels.states[0][0].currentState[0]), FP_SUBNORMAL);
            }
        });
    expectPlainResults(
        2, 20, [&](int) { return noise(random, 1000 * SmallestDenormal); },
        [&](int, Channels& channels) { channels.designs[random() % 2] = randomDesign(random); });
}

TEST_P(EachKernel, GivesThePlainKernelsBitsOnceASampleIsNoNumber) {
    for (const float sample : {NaN, Infinity, -Infinity, Largest, -0.0F, SmallestDenormal}) {
        for (unsigned seed = 0; seed < 8; ++seed) {
            std::mt19937 random(seed);
            expectPlainResults(
                0, 4, [&](int block) { return block == 1 ? noiseWith(random, sample) : noise(random); },
                [&](int, Channels& channels) { channels.designs[random() % 2] = randomDesign(random); });
        }
    }
    std::mt19937 random(7);
    for (int stream = 0; stream < 10; ++stream)
        expectPlainResults(
            stream, 1, [&](int) { return anyBits(random); },
            [&](int, Channels& channels) { channels.designs[random() % 2] = randomDesign(random); });
}
