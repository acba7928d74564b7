#include "engine/FourBandEqualizer.h"

#include "engine/kernels/KernelChoice.h"
#include "engine/kernels/Plain.h"
#include "tests/support/EngineInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <tuple>

namespace eq {

namespace {

/// A second implementation of an engine, for comparison. It processes block by block and without delay. It is slow and
/// simple on purpose.
class Model {
public:
    void set(const Values& values) { waiting = std::make_unique<Values>(values); }

    /// Returns the result for the next 2048 input samples.
    Samples block(const Samples& dry, int mode) {
        if (mode == 0 && waiting) {
            Samples before = filtered(dry, current);
            absorb();
            const Samples after = filtered(dry, next);
            current = next;
            return blended(before, after);
        }
        if (mode < 0 || mode > 2) return dry;
        absorb();
        const Samples wet = filtered(dry, current);
        if (mode == 0) return wet; // NOLINT(performance-no-automatic-move): GCC 12 reports an error for a moved value
        return mode == 1 ? blended(dry, wet) : blended(wet, dry);
    }

private:
    struct Band {
        double c, k, G;
    };
    struct State {
        double s1 = 0, s2 = 0;
    };

    static double limit(double value, double low, double high) {
        return std::isnan(value) ? low : std::clamp(value, low, high);
    }

    static Band band(double w, double q, double G) {
        const double t = std::tan(w * 0.5 / q);
        const double H = std::min(G, 1.0);
        return {-std::cos(w), (t - H) / (t + H), G};
    }

    void absorb() {
        if (!waiting) return;
        const Values& v = *waiting;
        gain = static_cast<float>(std::pow(10.0, limit(v[0], -12, 12) * 0.05));
        for (std::size_t i = 0; i < 4; ++i)
            bands[i] = band(limit(v[1 + i], 20, 20000) * 0.00014247585730565955, limit(v[9 + i], 1, 10),
                            std::pow(10.0, limit(v[5 + i], -10, 10) * 0.05));
        waiting.reset();
    }

    Samples filtered(Samples samples, std::array<State, 4>& states) const {
        for (float& sample : samples) {
            sample *= gain;
            for (std::size_t i = 0; i < 4; ++i) sample = section(sample, bands[i], states[i]);
        }
        return samples;
    }

    static float section(double x, const Band& band, State& state) {
        const State old = state;
        const double a = x + band.k * old.s2;
        state.s1 = a - band.c * old.s1;
        state.s2 = old.s1 + band.c * state.s1;
        const double allpass = old.s2 - band.k * a;
        return static_cast<float>((x - allpass) * ((band.G - 1) * 0.5) + x);
    }

    std::unique_ptr<Values> waiting;
    float gain = 1;
    // The bands of a new engine: 100, 200, 400 and 800 Hz, a Q of 1.4, and a gain of 1.
    std::array<Band, 4> bands = {band(0.014247585730565955, 1.4, 1), band(0.02849517146113191, 1.4, 1),
                                 band(0.05699034292226382, 1.4, 1), band(0.11398068584452764, 1.4, 1)};
    std::array<State, 4> current, next;
};

} // namespace

TEST(FilterDesign, HasTheValuesOfTheWorkedExamples) {
    constexpr std::tuple<float, float, float, double, double, double> Rows[] = {
        {1000, 2, 10, -0.989867472780, -0.931184116890, 3.16227766017},
        {1000, 2, -10, -0.989867472780, -0.797454368611, 0.316227766017},
        {20, 10, 10, -0.999995940129, -0.999715088876, 3.16227766017},
        {20000, 1, -10, 0.957648316030, 0.911109846895, 0.316227766017}};
    for (const auto& [f, q, g, c, k, G] : Rows) {
        SCOPED_TRACE(testing::Message() << f << " Hz " << g << " dB");
        const float values[] = {12, f, f, f, f, g, g, g, g, q, q, q, q};
        const FilterDesign design = FilterDesign::of(values);
        EXPECT_NEAR(design.outputGain, 3.98107170553, 1e-11);
        EXPECT_NEAR(design.centreCoefficient[3], c, 1e-12);
        EXPECT_NEAR(design.bandwidthCoefficient[3], k, 1e-12);
        EXPECT_NEAR(design.bandGain[3], G, 1e-11);
    }
}

TEST(FilterDesign, HasItsGainAtItsFrequencyAtEachRate) {
    const float values[] = {0, 20, 1000, 5000, 20000, -9, 6, 10, 3, 1, 2, 5, 10};
    for (const double rate : {8000.0, 22050.0, 44100.0, 48000.0, 96000.0, 192000.0, 768000.0}) {
        const FilterDesign design = FilterDesign::of(values, rate);
        for (std::size_t i = 0; i < BandCount; ++i) {
            SCOPED_TRACE(testing::Message() << rate << " Hz, band " << i + 1);
            // At low rates, the centre is limited to 20000/44100 of the rate.
            const double centre = std::min<double>(values[1 + i], rate * 20000 / 44100);
            const auto decibelsAt = [&](double hertz) {
                const std::complex<double> z = std::polar(1.0, -2 * std::numbers::pi * hertz / rate);
                const double k = design.bandwidthCoefficient[i];
                const double inner = design.centreCoefficient[i] * (1 - k);
                const auto allpass = (-k + inner * z + z * z) / (1.0 + inner * z - k * z * z);
                return 20 * std::log10(std::abs(1.0 + (design.bandGain[i] - 1) / 2 * (1.0 - allpass)));
            };
            EXPECT_NEAR(decibelsAt(centre), values[5 + i], 1e-9);
            for (const double factor : {0.9, 1.1})
                EXPECT_LT(std::abs(decibelsAt(centre * factor)), std::abs(values[5 + i]));
            EXPECT_LT(std::abs(design.bandwidthCoefficient[i]), 1);
        }
    }
}

TEST(PlainKernel, HasTheImpulseResponseOfTheWorkedExample) {
    float buffer[6] = {1};
    double s1 = 0, s2 = 0;
    runPeakSection(buffer, 6, -0.989867472780, -0.931184116890, 3.16227766017, &s1, &s2);
    const float expected[] = {1.07440F, 0.14222F, 0.12820F, 0.11263F, 0.09593F, 0.07850F};
    for (int i = 0; i < 6; ++i) EXPECT_NEAR(buffer[i], expected[i], 6e-6) << i;
}

TEST(KernelChoice, HasTheKernelsOfTheProcessorFromThePlainKernelToTheFastest) {
    std::string expected = "plain ";
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("sse2")) expected += "SSE2 ";
#endif
#ifdef __x86_64__ // 32-bit code has no AVX2 kernel
    if (__builtin_cpu_supports("avx2")) expected += "AVX2 ";
#endif
    std::string names;
    for (const BlockKernel* kernel : availableKernels()) names += std::string(kernel->name) + " ";
    EXPECT_EQ(names, expected);
}

TEST(FourBandEqualizer, IsLikeANewOneWithItsDesignRateAfterAReset) {
    const Values values = {3, 100, 800, 3000, 9000, 6, -7, 8, -9, 2, 3, 4, 5};
    Values halved = values;
    for (std::size_t i = 1; i <= BandCount; ++i) halved[i] /= 2;
    std::mt19937 random(1);
    FourBandEqualizer usual;
    FourBandEqualizer slow(FilterDesign::DefaultRate / 2);
    for (const std::size_t count : {3000U, 100U}) { // the second array waits for a block boundary at the reset
        slow.setParameters(randomValues(random).data());
        Samples sound = noise(random, count);
        slow.process(sound.data(), sound.data(), static_cast<int>(count), 0);
    }
    slow.reset();
    const auto output = [](FourBandEqualizer& engine, const Values& later, Samples samples) {
        engine.process(samples.data(), samples.data(), 2 * BlockSize, 0); // without parameters
        engine.setParameters(later.data());
        engine.process(&samples[2 * BlockSize], &samples[2 * BlockSize], 3 * BlockSize, 0);
        return samples;
    };
    const Samples input = noise(random, std::size_t{5} * BlockSize);
    const Samples expected = output(usual, values, input);
    EXPECT_EQ(firstDifference(output(slow, halved, input), expected), -1);
    EXPECT_TRUE(std::equal(&input[0], &input[BlockSize], &expected[BlockSize])) << "a new engine changes its input";
}

// Compares the engine's output with the model's output to the last bit.
TEST(FourBandEqualizer, HasTheOutputOfTheModelForAnySettingsModesAndCallSizes) {
    for (unsigned seed = 0; seed < 24; ++seed) {
        const BlockKernel& kernel = *availableKernels()[seed / 2 % availableKernels().size()];
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", kernel " << kernel.name);
        std::mt19937 random(seed);
        FourBandEqualizer engine(kernel);
        Model model;
        const bool inPlace = seed % 2 != 0;
        Samples expected(BlockSize, 0.0F);
        Samples actual;
        for (int block = 0; block < 12; ++block) {
            // The input is noise, or silence in which the state decays, or noise with a NaN or an infinity.
            Samples dry = block % 5 == 3 ? Samples(BlockSize) : noise(random, BlockSize);
            if (seed >= 18 && block == 6) dry[1500] = seed % 2 == 0 ? NaN : -Infinity;
            const int mode = random() % 3 != 0 ? 0 : static_cast<int>(random() % 5) - 1;
            for (int done = 0; done < BlockSize;) {
                if (random() % 8 == 0) {
                    const Values values = randomValues(random);
                    engine.setParameters(values.data());
                    model.set(values);
                }
                const int most = std::array{1, 64, 700, BlockSize}[random() % 4];
                const int count = std::min(BlockSize - done, most);
                const float* from = dry.data() + done;
                Samples out(from, from + count);
                engine.process(inPlace ? out.data() : from, out.data(), count, mode);
                actual.insert(actual.end(), out.begin(), out.end());
                done += count;
            }
            const Samples wet = model.block(dry, mode);
            expected.insert(expected.end(), wet.begin(), wet.end());
        }
        expected.resize(actual.size());
        ASSERT_EQ(firstDifference(actual, expected), -1);
    }
}

} // namespace eq
