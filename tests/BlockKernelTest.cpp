#include "engine/BlockKernel.h"

#include "engine/KernelChoice.h"
#include "engine/PlainKernel.h"
#include "tests/support/EngineInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>

namespace {

/// More alignments than any instruction set tells apart, in floats.
constexpr unsigned Alignments = 16;

/// What a kernel works on: two channels, with an input, an output and a design each, and a design to change to.
class Channels {
public:
    Channels(const BlockKernel& kernelUnderTest, unsigned alignment) : kernel(kernelUnderTest), start(alignment) {}

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

    /// The samples in the outputs, then the states, as numbers that hold them all.
    [[nodiscard]] std::vector<double> results() {
        std::vector<double> numbers;
        for (Samples& output : outputs) numbers.insert(numbers.end(), at(output), at(output) + BlockSize);
        for (const auto& bands : states)
            for (const BandState& band : bands)
                for (const double state : std::bit_cast<std::array<double, 4>>(band)) numbers.push_back(state);
        return numbers;
    }

    /// The surroundings of the outputs, which nobody may write to.
    [[nodiscard]] bool keptInside() const {
        for (const Samples& output : outputs)
            for (std::size_t i = 0; i < output.size(); ++i)
                if ((i < start || i >= start + BlockSize) && output[i] != Untouched) return false;
        return true;
    }

    /// Where long silence leaves the states: among the denormals of double.
    void decay() {
        std::mt19937 random(1);
        for (auto& channel : states)
            for (BandState& band : channel) {
                std::array<double, 4> numbers;
                for (double& state : numbers)
                    state = std::numeric_limits<double>::denorm_min() * static_cast<double>(random() % 1000);
                band = std::bit_cast<BandState>(numbers);
            }
    }

    FilterDesign designs[2] = {FilterDesign::flat(), FilterDesign::flat()};

private:
    static constexpr float Untouched = -77;

    [[nodiscard]] float* at(Samples& samples) const { return samples.data() + start; }

    const BlockKernel& kernel;
    std::size_t start;
    BandState states[2][BandCount] = {};
    Samples inputs[2] = {Samples(BlockSize + Alignments), Samples(BlockSize + Alignments)};
    Samples outputs[2] = {Samples(BlockSize + Alignments, Untouched), Samples(BlockSize + Alignments, Untouched)};
};

/// The same bits, where every NaN is as good as another.
bool same(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

constexpr unsigned SilentStream = 3;

/// Noise, loud or of denormals; with an odd sample where a vector kernel's front is whole or at its ends; any bits.
Samples anyBlock(std::mt19937& random, unsigned stream) {
    constexpr float Largest = std::numeric_limits<float>::max();
    constexpr float SmallestDenormal = std::numeric_limits<float>::denorm_min();
    Samples samples = noise(random, BlockSize, std::array{1.0F, Largest / 2, 1000 * SmallestDenormal}[stream % 3]);
    if (stream == SilentStream) samples.assign(BlockSize, 0.0F);
    if (stream % 4 == 1) {
        const float odd[] = {NaN, Infinity, -Infinity, Largest, -0.0F, SmallestDenormal};
        const std::size_t places[] = {0, 5, 11, 12, 1000, BlockSize - 12, BlockSize - 1};
        samples[places[random() % std::size(places)]] = odd[random() % std::size(odd)];
    }
    if (stream % 4 == 2)
        for (float& sample : samples) sample = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    return samples;
}

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

TEST(BlockKernel, GivesThePlainKernelsBitsForAnySoundSettingsAndAlignment) {
    for (const BlockKernel* kernel : availableKernels()) {
        for (unsigned stream = 0; stream < 12 * Alignments; ++stream) {
            SCOPED_TRACE(testing::Message() << kernel->name << ", stream " << stream);
            std::mt19937 random(stream);
            Channels actual(*kernel, stream % Alignments);
            Channels expected(plainKernel, 0);
            if (stream / Alignments == SilentStream) {
                actual.decay();
                expected.decay();
            }
            for (int block = 0; block < 8; ++block) {
                if (block % 3 == 0) {
                    const std::size_t which = random() % 2;
                    float values[ParameterCount];
                    std::ranges::copy(randomValues(random), values);
                    actual.designs[which] = expected.designs[which] = FilterDesign::of(values);
                }
                const Samples first = anyBlock(random, stream / Alignments);
                const Samples second = anyBlock(random, stream / Alignments);
                const auto operation = static_cast<unsigned>(random());
                actual.run(operation, first, second);
                expected.run(operation, first, second);
                ASSERT_TRUE(std::ranges::equal(actual.results(), expected.results(), same)) << "block " << block;
                ASSERT_TRUE(actual.keptInside());
            }
        }
    }
}
