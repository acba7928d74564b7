#include "engine/FourBandEqualizer.h"

#include "engine/KernelChoice.h"
#include "engine/PlainKernel.h"
#include "tests/support/EngineInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>

namespace {

Samples run(FourBandEqualizer& engine, const Samples& input, int mode = FourBandEqualizer::Process) {
    Samples output(input.size(), -99.0F);
    engine.process(input.data(), output.data(), static_cast<int>(input.size()), mode);
    return output;
}

/// A second telling of what an engine does, block by block and without delay. Deliberately slow and plain.
class Model {
public:
    void set(const Values& values) { waiting = std::make_unique<Values>(values); }

    /// What becomes of the next 2048 input samples.
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
        if (mode == 0) return wet;
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
        if (std::isnan(value)) return low;
        return std::clamp(value, low, high);
    }

    void absorb() {
        if (!waiting) return;
        const Values& v = *waiting;
        gain = static_cast<float>(std::pow(10.0, limit(v[0], -12, 12) * 0.05));
        for (std::size_t i = 0; i < 4; ++i) {
            const double G = std::pow(10.0, limit(v[5 + i], -10, 10) * 0.05);
            const double w = limit(v[1 + i], 20, 20000) * 0.00014247585730565955;
            const double t = std::tan(w * 0.5 / limit(v[9 + i], 1, 10));
            const double H = std::min(G, 1.0);
            bands[i] = {-std::cos(w), (t - H) / (t + H), G};
        }
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

    static Samples blended(const Samples& from, const Samples& to) {
        Samples result(from.size());
        for (std::size_t i = 0; i < from.size(); ++i) {
            const double weight = static_cast<double>(2 * i + 1) / 4096;
            result[i] = static_cast<float>((1 - weight) * from[i] + weight * to[i]);
        }
        return result;
    }

    std::unique_ptr<Values> waiting;
    float gain = 1;
    // 100, 200, 400 and 800 Hz with Q 1.4.
    std::array<Band, 4> bands = {
        bandAt(0.014247585730565955, 0.005088423475202127), bandAt(0.02849517146113191, 0.010176846950404253),
        bandAt(0.05699034292226382, 0.020353693900808507), bandAt(0.11398068584452764, 0.040707387801617013)};
    std::array<State, 4> current, next;

    static Band bandAt(double w, double halfBandwidth) {
        const double t = std::tan(halfBandwidth);
        return {-std::cos(w), (t - 1) / (t + 1), 1};
    }
};

/// The same samples, where every NaN is as good as another.
void expectSame(const Samples& actual, const Samples& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (std::isnan(expected[i]) && std::isnan(actual[i])) continue;
        ASSERT_EQ(actual[i], expected[i]) << "at sample " << i;
        ASSERT_EQ(std::signbit(actual[i]), std::signbit(expected[i])) << "at sample " << i;
    }
}

} // namespace

TEST(FilterDesign, YieldsTheWorkedValues) {
    struct Row {
        float f, q, g;
        double c, k, G;
    };
    for (const Row& row : {Row{1000, 2, 10, -0.989867472780, -0.931184116890, 3.16227766017},
                           Row{1000, 2, -10, -0.989867472780, -0.797454368611, 0.316227766017},
                           Row{20, 10, 10, -0.999995940129, -0.999715088876, 3.16227766017},
                           Row{20000, 1, -10, 0.957648316030, 0.911109846895, 0.316227766017}}) {
        SCOPED_TRACE(testing::Message() << row.f << " Hz " << row.g << " dB");
        const Values values = {12, row.f, row.f, row.f, row.f, row.g, row.g, row.g, row.g, row.q, row.q, row.q, row.q};
        float array[ParameterCount];
        std::copy(values.begin(), values.end(), array);
        const FilterDesign design = FilterDesign::of(array);
        EXPECT_NEAR(design.outputGain, 3.98107170553, 1e-11);
        for (int i = 0; i < BandCount; ++i) {
            EXPECT_NEAR(design.centreCoefficient[i], row.c, 1e-12);
            EXPECT_NEAR(design.bandwidthCoefficient[i], row.k, 1e-12);
            EXPECT_NEAR(design.bandGain[i], row.G, 1e-11);
        }
    }
}

TEST(FilterDesign, LimitsEachValueAndTakesTheLowerLimitForNaN) {
    const auto designed = [](float volume, float f, float g, float q) {
        const float values[ParameterCount] = {volume, f, f, f, f, g, g, g, g, q, q, q, q};
        const FilterDesign d = FilterDesign::of(values);
        return std::array{d.outputGain, d.bandGain[3], d.centreCoefficient[3], d.bandwidthCoefficient[3]};
    };
    EXPECT_EQ(designed(12.5F, 30000, -15, 0.5F), designed(12, 20000, -10, 1));
    EXPECT_EQ(designed(-40, 3, 11, 99), designed(-12, 20, 10, 10));
    EXPECT_EQ(designed(NaN, NaN, NaN, NaN), designed(-12, 20, -10, 1));
    EXPECT_EQ(designed(Infinity, -Infinity, Infinity, -Infinity), designed(12, 20, 10, 1));
}

TEST(PlainKernel, PeakSectionHasTheWorkedImpulseResponse) {
    float buffer[6] = {1};
    double s1 = 0;
    double s2 = 0;
    runPeakSection(buffer, 6, -0.989867472780, -0.931184116890, 3.16227766017, &s1, &s2);
    const float expected[] = {1.07440F, 0.14222F, 0.12820F, 0.11263F, 0.09593F, 0.07850F};
    for (int i = 0; i < 6; ++i) EXPECT_NEAR(buffer[i], expected[i], 6e-6) << i;
}

TEST(PlainKernel, CrossfadeWeightsRiseFromHalfAStepAboveZeroToHalfAStepBelowOne) {
    Samples target(BlockSize, 0.0F);
    const Samples source(BlockSize, 1.0F);
    crossfade(target.data(), source.data(), BlockSize);
    for (int i = 0; i < BlockSize; ++i) {
        ASSERT_EQ(target[static_cast<std::size_t>(i)], static_cast<float>(2 * i + 1) / 4096.0F) << i;
    }
}

TEST(FourBandEqualizer, PassesItsInputBehindTheDelayWhenFlat) {
    std::mt19937 random(1);
    const Samples input = noise(random, 3 * BlockSize);
    Samples expected(BlockSize, 0.0F);
    expected.insert(expected.end(), input.begin(), input.end() - BlockSize);

    FourBandEqualizer engine;
    EXPECT_EQ(run(engine, input), expected);
    EXPECT_EQ(engine.latency(), 2048);
}

// Streams of every kind against the model, to the last bit.
TEST(FourBandEqualizer, AgreesWithTheModelForAnySettingsModesAndCallSizes) {
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
            // Noise, silence that leaves the state to decay, or samples that no filter likes.
            Samples dry = block % 5 == 3 ? Samples(BlockSize) : noise(random, BlockSize);
            if (seed >= 18 && seed % 2 == 0 && block == 6) dry[100] = NaN;
            if (seed >= 18 && seed % 2 != 0 && block == 6) dry[2000] = -Infinity;
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
        expectSame(actual, expected);
    }
}

TEST(FourBandEqualizer, ResetsToTheStateOfANewOne) {
    std::mt19937 random(4);
    const Samples input = noise(random, 4 * BlockSize);
    FourBandEqualizer used;
    used.setParameters(randomValues(random).data());
    run(used, noise(random, 3000));
    used.setParameters(randomValues(random).data());
    used.reset();
    FourBandEqualizer fresh;
    EXPECT_EQ(run(used, input, FourBandEqualizer::FadeIn), run(fresh, input, FourBandEqualizer::FadeIn));
}
