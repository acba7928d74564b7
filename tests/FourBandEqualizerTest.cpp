#include "engine/FourBandEqualizer.h"

#include "engine/KernelChoice.h"
#include "engine/PlainKernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <complex>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

using Samples = std::vector<float>;
using Values = std::array<float, ParameterCount>;

constexpr int BlockSize = FourBandEqualizer::BlockSize;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinity = std::numeric_limits<float>::infinity();

Values flatValues() {
    return {0, 20, 200, 2000, 20000, 0, 0, 0, 0, 5, 5, 5, 5};
}

Values oneBand(float f, float gain, float q) {
    Values values = flatValues();
    values[2] = f;
    values[6] = gain;
    values[10] = q;
    return values;
}

Values randomValues(std::mt19937& random) {
    // A little beyond the limits on both sides.
    const auto pick = [&](float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); };
    Values values{};
    values[0] = pick(-13, 13);
    for (std::size_t i = 1; i <= 4; ++i) {
        values[i] = 15.0F * std::pow(1500.0F, pick(0, 1));
        values[i + 4] = pick(-11, 11);
        values[i + 8] = pick(0.5F, 11);
    }
    return values;
}

Samples noise(std::mt19937& random, std::size_t count) {
    Samples samples(count);
    std::uniform_real_distribution<float> pick(-1, 1);
    for (float& sample : samples) sample = pick(random);
    return samples;
}

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

double decibelsAt(const Samples& impulseResponse, double frequency) {
    std::complex<double> sum = 0;
    for (std::size_t n = 0; n < impulseResponse.size(); ++n) {
        sum +=
            std::polar<double>(impulseResponse[n], -2 * std::numbers::pi * frequency / 44100 * static_cast<double>(n));
    }
    return 20 * std::log10(std::abs(sum));
}

/// The settled engine's answer to a unit impulse, without the delay.
Samples impulseResponse(const Values& values) {
    FourBandEqualizer engine;
    engine.setParameters(values.data());
    run(engine, Samples(BlockSize));
    Samples impulse(64 * BlockSize);
    impulse[0] = 1;
    const Samples output = run(engine, impulse);
    return {output.begin() + BlockSize, output.end()};
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
    float untouched = 7;
    crossfade(&untouched, source.data(), 0);
    crossfade(&untouched, source.data(), -5);
    EXPECT_EQ(untouched, 7.0F);
}

TEST(FourBandEqualizer, PassesItsInputBehindTheDelayWhenFlat) {
    std::mt19937 random(1);
    const Samples input = noise(random, 3 * BlockSize);
    Samples expected(BlockSize, 0.0F);
    expected.insert(expected.end(), input.begin(), input.end() - BlockSize);

    FourBandEqualizer untouched;
    EXPECT_EQ(run(untouched, input), expected);
    FourBandEqualizer set;
    set.setParameters(flatValues().data());
    EXPECT_EQ(run(set, input), expected);
    EXPECT_EQ(set.latency(), 2048);
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
        Samples input;
        for (int block = 0; block < 12; ++block) {
            // Noise, silence that leaves the state to decay, or samples that no filter likes.
            Samples dry = block % 5 == 3 ? Samples(BlockSize) : noise(random, BlockSize);
            if (seed >= 18 && seed % 2 == 0 && block == 6) dry[100] = NaN;
            if (seed >= 18 && seed % 2 != 0 && block == 6) dry[2000] = -Infinity;
            const int mode = random() % 3 != 0 ? 0 : static_cast<int>(random() % 5) - 1;
            for (auto changes = random() % 3; changes > 0; --changes) {
                const Values values = randomValues(random);
                engine.setParameters(values.data());
                model.set(values);
            }
            for (int done = 0; done < BlockSize;) {
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

TEST(FourBandEqualizer, GivesTheSameStreamHoweverItIsCut) {
    std::mt19937 random(2);
    const Samples input = noise(random, 50000);
    const auto cut = [&](int size) {
        FourBandEqualizer engine;
        engine.setParameters(oneBand(1000, 10, 2).data());
        Samples output = input;
        const int total = static_cast<int>(input.size());
        for (int done = 0; done < total;) {
            const int count = std::min(total - done, size > 0 ? size : static_cast<int>(random() % 6000));
            engine.process(output.data() + done, output.data() + done, count, FourBandEqualizer::Process);
            done += count;
        }
        return output;
    };
    const Samples whole = cut(50000);
    for (const int size : {1, 64, 2047, 2048, 5000, 0}) EXPECT_EQ(cut(size), whole) << size;
}

TEST(FourBandEqualizer, HasTheDesignedResponse) {
    const Samples boost = impulseResponse(oneBand(1000, 10, 2));
    EXPECT_NEAR(decibelsAt(boost, 1000), 10, 1e-4);
    EXPECT_NEAR(decibelsAt(boost, 0), 0, 1e-4);
    EXPECT_NEAR(decibelsAt(boost, 22050), 0, 1e-4);
    const Samples cut = impulseResponse(oneBand(1000, -10, 2));
    for (const double f : {50.0, 700.0, 1000.0, 1300.0, 9000.0}) {
        EXPECT_NEAR(decibelsAt(cut, f), -decibelsAt(boost, f), 1e-4) << f;
    }
    // f/q apart, the allpass shifts by 90 degrees: there |H| = |1 + (G - 1)/2 (1 -+ j)|.
    const double G = std::pow(10.0, 0.5);
    const double edge = 20 * std::log10(std::abs(std::complex(1 + (G - 1) / 2, (G - 1) / 2)));
    const double tangent = std::tan(std::numbers::pi * 500 / 44100);
    const double w = 2 * std::numbers::pi * 1000 / 44100;
    // The edges of a digital band of width W at w: cos(w) = cos(upper - W/2) / cos(W/2), by the bilinear allpass.
    const double half = std::atan(tangent);
    const double middle = std::acos(std::cos(w) * std::cos(half));
    EXPECT_NEAR(decibelsAt(boost, (middle + half) * 44100 / (2 * std::numbers::pi)), edge, 1e-4);
    EXPECT_NEAR(decibelsAt(boost, (middle - half) * 44100 / (2 * std::numbers::pi)), edge, 1e-4);
}

TEST(FourBandEqualizer, IsFlatWhenABoostAndTheSameCutAreInSeries) {
    Values values = oneBand(1000, 10, 2);
    values[3] = 1000;
    values[7] = -10;
    values[11] = 2;
    const Samples response = impulseResponse(values);
    EXPECT_NEAR(response[0], 1, 1e-6);
    for (std::size_t i = 1; i < response.size(); ++i) ASSERT_NEAR(response[i], 0, 1e-6) << i;
}

TEST(FourBandEqualizer, RunsABandAtZeroDecibelsSoThatItsStateIsHeardLater) {
    std::mt19937 random(3);
    const auto silenceAfter = [](const Samples& first) {
        FourBandEqualizer engine;
        engine.setParameters(flatValues().data());
        run(engine, first);
        engine.setParameters(oneBand(200, 10, 5).data());
        run(engine, Samples(BlockSize));
        return run(engine, Samples(BlockSize));
    };
    EXPECT_EQ(silenceAfter(Samples(BlockSize)), Samples(BlockSize));
    EXPECT_NE(silenceAfter(noise(random, BlockSize)), Samples(BlockSize));
}

TEST(FourBandEqualizer, LeavesAChangePendingInPassModeAndInCallsThatCompleteNoBlock) {
    const Values loud = [] {
        Values values = flatValues();
        values[0] = 6;
        return values;
    }();
    const float gain = static_cast<float>(std::pow(10.0, 6 * 0.05));
    const Samples ones(BlockSize, 1.0F);
    FourBandEqualizer engine;
    engine.setParameters(loud.data());
    engine.process(nullptr, nullptr, 0, 0);
    run(engine, ones, 3);                      // passed
    run(engine, Samples(BlockSize - 1, 1.0F)); // completes nothing
    EXPECT_EQ(run(engine, {1.0F, 1.0F, 1.0F})[1], 1.0F * static_cast<float>(4095.0 / 4096 + gain / 4096.0));
    run(engine, Samples(BlockSize - 2, 1.0F)); // the crossfade goes out, the next block is ordinary
    EXPECT_EQ(run(engine, ones), Samples(BlockSize, gain));
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

TEST(FourBandEqualizer, AbsorbsTheNewestArrayWhileSeveralThreadsWrite) {
    FourBandEqualizer engine;
    std::atomic<bool> stop{false};
    std::vector<std::thread> writers;
    for (unsigned i = 0; i < 3; ++i) {
        writers.emplace_back([&, i] {
            std::mt19937 random(i);
            while (!stop) engine.setParameters(randomValues(random).data());
        });
    }
    std::mt19937 random(9);
    for (int i = 0; i < 40; ++i) {
        for (const float sample : run(engine, noise(random, 3000))) ASSERT_TRUE(std::isfinite(sample));
    }
    stop = true;
    for (std::thread& writer : writers) writer.join();

    Values last = flatValues();
    last[0] = -6;
    engine.setParameters(last.data());
    // Two blocks of a change and three of silence, after which only the volume is left to hear.
    run(engine, Samples(400 * BlockSize));
    const Samples output = run(engine, Samples(2 * BlockSize, 1.0F));
    EXPECT_NEAR(output.back(), std::pow(10.0, -0.3), 1e-6);
}
