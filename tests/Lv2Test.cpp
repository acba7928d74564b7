// Tests the LV2 plug-in as a host uses it: loads the built library, and calls its export.

#include "tests/support/EqualizerReference.h"
#include "tests/support/Lv2Host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

namespace eq {

namespace {

constexpr std::size_t Block = BlockSize;
const Values Loud = {6, 60, 700, 3000, 9000, 9, -8, 10, 7, 1, 2, 10, 5};
const Values Quiet = {-9, 1000, 100, 5000, 300, -10, 4, -6, 10, 3, 8, 1, 6};

const LoadedLibrary& library() {
    static const LoadedLibrary loaded(EQ_LV2_LIBRARY);
    return loaded;
}

/// Returns the engine's values for values of the ports. These values pass through the effect's normalised parameters.
Values mapped(const Values& ports) {
    Values p;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const double v = ports[i];
        p[i] = static_cast<float>(i == 0  ? (12 - v) / 24
                                  : i < 5 ? std::log(20000 / v) / std::log(20000.0 / 20)
                                  : i < 9 ? (10 - v) / 20
                                          : (10 - v) / 9);
    }
    return engineValues(p);
}

Samples part(const Samples& samples, std::size_t start, std::size_t end) {
    return {samples.begin() + static_cast<std::ptrdiff_t>(start), samples.begin() + static_cast<std::ptrdiff_t>(end)};
}

/// Returns the output of an engine for the sound `dry`, without the delay. The engine has the values of `ports` long
/// before the first sample, and receives the values of `later` before block `changeBlock`.
Samples filtered(const Values& ports, double rate, const Samples& dry, std::size_t changeBlock = SIZE_MAX / 2,
                 const Values& later = {}) {
    FourBandEqualizer engine(rate);
    engine.setParameters(mapped(ports).data());
    Samples stream(2 * Block);
    stream.insert(stream.end(), dry.begin(), dry.end());
    stream.resize((stream.size() / Block + 2) * Block);
    for (std::size_t block = 0; block < stream.size() / Block; ++block) {
        if (block - 2 == changeBlock) engine.setParameters(mapped(later).data());
        engine.process(&stream[block * Block], &stream[block * Block], BlockSize, 0);
    }
    return part(stream, 3 * Block, 3 * Block + dry.size());
}

/// Returns a sound with the plug-in's delay, cut to the original length.
Samples delayed(Samples sound) {
    sound.insert(sound.begin(), Block, 0.0F);
    sound.resize(sound.size() - Block);
    return sound;
}

} // namespace

TEST(Lv2, WorksAtRatesFrom8000To768000HzOnly) {
    const auto descriptor = library().find<LV2_Descriptor_Function>("lv2_descriptor");
    for (std::uint32_t i = 0; i < 2; ++i) {
        const LV2_Descriptor* const plugin = descriptor(i);
        for (const double rate : {0.0, -44100.0, 7999.0, 768001.0, std::nan(""), HUGE_VAL})
            EXPECT_EQ(plugin->instantiate(plugin, rate, "", nullptr), nullptr) << rate;
        for (const double rate : {8000.0, 768000.0}) {
            const LV2_Handle instance = plugin->instantiate(plugin, rate, "", nullptr);
            EXPECT_NE(instance, nullptr) << rate;
            plugin->cleanup(instance);
        }
    }
    EXPECT_EQ(descriptor(2), nullptr);
}

TEST(Lv2, AppliesItsSettingsFromTheFirstSampleInAnyCombinationOfBuffers) {
    std::mt19937 random(1);
    constexpr std::size_t Frames = 30000;
    const Stereo dry = noise(Frames);
    for (const double rate : {44100.0, 96000.0}) {
        const Stereo expected = {delayed(filtered(Loud, rate, dry[0])), delayed(filtered(Loud, rate, dry[1]))};
        for (std::size_t combination = 0; combination < 16; ++combination) {
            const std::size_t left = combination / 4;
            const std::size_t right = combination % 4;
            if (left == right) continue;
            SCOPED_TRACE(testing::Message() << rate << " Hz, outputs in buffers " << left << " and " << right);
            Lv2Instance instance(library(), 2, rate);
            // Some hosts ask for the latency before they set the values.
            instance.run(0);
            EXPECT_EQ(instance.latency, 2048);
            instance.values = Loud;
            // The inputs are the first two buffers.
            std::vector<Samples> buffers = {dry[0], dry[1], Samples(Frames), Samples(Frames)};
            for (std::size_t done = 0; done < Frames;) {
                const std::size_t count = std::min<std::size_t>(random() % 8193, Frames - done);
                std::uint32_t port = 0;
                for (const std::size_t i : {std::size_t{0}, std::size_t{1}, left, right})
                    instance.connect(port++, buffers[i].data() + done);
                instance.run(count);
                done += count;
            }
            EXPECT_TRUE(sameBits({buffers[left], buffers[right]}, expected));
        }
    }
}

TEST(Lv2, CrossfadesOverExactlyTheBlockInWhichEnabledChanges) {
    constexpr std::size_t Blocks = 14;
    constexpr std::size_t Frames = Blocks * Block;
    std::mt19937 random(1);
    const Samples dry = noise(random, Frames);
    const Samples wet = filtered(Loud, 48000, dry, 9, Quiet);
    for (const std::size_t size : {std::size_t{1}, std::size_t{64}, std::size_t{1000}, Block, std::size_t{5000}}) {
        SCOPED_TRACE(testing::Message() << size << " frames per call");
        Lv2Instance instance(library(), 1, 48000);
        std::vector<bool> isOn(Blocks);
        std::vector<Samples> channel = {dry};
        for (std::size_t done = 0; done < Frames; done += size) {
            const std::size_t count = std::min(size, Frames - done);
            // The plug-in is bypassed from the start, and again in the middle. During the second bypass, it is enabled
            // for an instant between two block boundaries.
            const bool isWanted = (done >= 3 * Block - 500 && done < 7 * Block + 10) || done >= 10 * Block;
            const bool isInstant = done > 8 * Block && done < 8 * Block + 900;
            instance.enabled = isWanted || isInstant ? 1 : 0;
            instance.values = done < 9 * Block ? Loud : Quiet;
            instance.run(channel, done, count);
            for (std::size_t block = done / Block; block < (done + count) / Block; ++block)
                isOn[block] = instance.enabled != 0;
        }
        Samples expected;
        for (std::size_t block = 0; block < Blocks; ++block) {
            const bool wasOn = block > 0 ? isOn[block - 1] : isOn[0];
            const Samples passed = part(dry, block * Block, (block + 1) * Block);
            const Samples equalized = part(wet, block * Block, (block + 1) * Block);
            const Samples result = isOn[block] && wasOn ? equalized
                                   : isOn[block]        ? blended(passed, equalized)
                                   : wasOn              ? blended(equalized, passed)
                                                        : passed;
            expected.insert(expected.end(), result.begin(), result.end());
        }
        EXPECT_EQ(std::ranges::count(isOn, true), size == 5000 ? 5 : 9);
        EXPECT_EQ(firstDifference(channel[0], delayed(expected)), -1);
    }
}

TEST(Lv2, LimitsValuesAndUsesDefaultsForUnconnectedPorts) {
    const auto render = [](const Values& values, const std::vector<std::uint32_t>& unconnected) {
        Lv2Instance instance(library(), 1, 44100);
        instance.values = values;
        for (const std::uint32_t index : unconnected) instance.connect(instance.parameterPort(index), nullptr);
        std::mt19937 random(1);
        std::vector<Samples> channel = {noise(random, 4 * Block)};
        instance.run(channel, 0, 4 * Block);
        return channel[0];
    };
    const auto all = [](float v, float f, float g, float q) { return Values{v, f, f, f, f, g, g, g, g, q, q, q, q}; };
    const Values defaults = {0, 20, 200, 2000, 20000, 7, 8, 9, 10, 5, 5, 5, 5};
    // Each row has the values of the ports, the parameters without a port, and the effective values.
    const std::tuple<Values, std::vector<std::uint32_t>, Values> rows[] = {
        {all(NaN, NaN, NaN, NaN), {}, all(-12, 20, -10, 1)},
        {all(-Infinity, -Infinity, -Infinity, -Infinity), {}, all(-12, 20, -10, 1)},
        {all(-1e9F, -1e9F, -1e9F, -1e9F), {}, all(-12, 20, -10, 1)},
        {all(1e9F, 1e9F, 1e9F, 1e9F), {}, all(12, 20000, 10, 10)},
        {{9, 1000, 1000, 1000, 1000, 7, 8, 9, 10, 1, 1, 1, 1}, {0, 1, 2, 3, 4, 9, 10, 11, 12}, defaults},
        {defaults, {5, 6, 7, 8, 13}, {0, 20, 200, 2000, 20000, 0, 0, 0, 0, 5, 5, 5, 5}}};
    for (const auto& [values, unconnected, effective] : rows)
        EXPECT_EQ(firstDifference(render(values, unconnected), render(effective, {})), -1) << values[0];
}

// Two badly behaved hosts run in two threads. The sanitizers report faults, and the sound must be right at the end.
TEST(Lv2, SurvivesBadlyBehavedHosts) {
    const auto play = [](unsigned seed) {
        std::mt19937 random(seed);
        for (const double rate : {8000, 44100, 192000, 768000}) {
            const std::uint32_t channels = 1 + seed % 2;
            Lv2Instance instance(library(), channels, rate);
            std::vector<Samples> buffers(2 * channels, Samples(8192));
            for (int call = 0; call < 150; ++call) {
                instance.values = randomValues(random);
                instance.enabled = std::array{0.0F, 1.0F, -1.0F, NaN}[random() % 4];
                if (random() % 10 == 0) instance.activate();
                if (random() % 10 == 0) instance.deactivate();
                for (std::uint32_t port = 0; port < 2 * channels; ++port)
                    instance.connect(port, random() % 20 == 0 ? nullptr : buffers[random() % buffers.size()].data());
                for (Samples& buffer : buffers) buffer[random() % 8192] = random() % 50 == 0 ? Infinity : 1;
                instance.connect(999, nullptr);
                instance.run(random() % 8193);
            }
            instance.values = Loud;
            instance.enabled = 1;
            instance.activate();
            const Samples dry = noise(random, 5 * Block);
            std::vector<Samples> sound(channels, dry);
            Samples expected = filtered(Loud, rate, dry);
            const Samples faded = blended(part(expected, 2 * Block, 3 * Block), part(dry, 2 * Block, 3 * Block));
            std::ranges::copy(dry.begin() + 3 * BlockSize, dry.end(), expected.begin() + 3 * BlockSize);
            std::ranges::copy(faded, expected.begin() + 2 * BlockSize);
            expected = delayed(expected);
            instance.run(sound, 0, 2 * Block);
            instance.enabled = 0;
            instance.run(sound, 2 * Block, 3 * Block);
            EXPECT_EQ(firstDifference(sound[0], expected), -1) << rate << " Hz";
        }
    };
    std::thread other([&] { play(1); });
    play(2);
    other.join();
}

} // namespace eq
