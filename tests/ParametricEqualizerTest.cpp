#include "plugin/ParametricEqualizer.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/EqualizerReference.h"
#include "tests/support/HostedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <functional>
#include <string>
#include <utility>

extern "C" AEffect* pluginMain(audioMasterCallback audioMaster);

namespace eq {

namespace {

void setAll(ParametricEqualizer& effect, const Values& parameters) {
    for (int32 i = 0; i < ParameterCount; ++i) effect.setParameter(i, parameters[static_cast<std::size_t>(i)]);
}

Stereo render(ParametricEqualizer& effect, Stereo audio) {
    float* channels[] = {audio[0].data(), audio[1].data()};
    effect.processReplacing(channels, channels, static_cast<int32>(audio[0].size()));
    return audio;
}

void expectTheSoundOf(const Values& engineeringValues, ParametricEqualizer& effect) {
    const Stereo audio = noise(3 * BlockSize, 2);
    EXPECT_TRUE(sameBits(render(effect, audio), ReferencePair(engineeringValues).render(audio)));
}

TEST(ParametricEqualizer, StartsWithTheDefaults) {
    ParametricEqualizer effect(nullptr);
    const std::uint32_t bits[] = {0x3F000000, 0x3F800000, 0x3F2AAAAB, 0x3EAAAAAB, 0x00000000, 0x3F000000, 0x3F000000,
                                  0x3F000000, 0x3F000000, 0x3F0E38E4, 0x3F0E38E4, 0x3F0E38E4, 0x3F0E38E4};
    for (int32 i = 0; i < 13; ++i) EXPECT_EQ(std::bit_cast<std::uint32_t>(effect.getParameter(i)), bits[i]);
}

TEST(ParametricEqualizer, MapsParametersToEngineeringUnitsAndKeepsTheirBits) {
    const Values given = {0.0f, Infinity, 2.0f / 3.0f, 1.0f / 3.0f, -3.0f, -Infinity, 0.75f,
                          1.0f, NaN,      5.0f / 9.0f, 7.0f,        0.5f,  0.0f};
    ParametricEqualizer effect(nullptr);
    setAll(effect, given);
    for (int32 i = 0; i < ParameterCount; ++i)
        EXPECT_EQ(std::bit_cast<int32>(effect.getParameter(i)),
                  std::bit_cast<int32>(given[static_cast<std::size_t>(i)]));
    expectTheSoundOf(
        {12.0f, 20.0f, 199.99997f, 1999.9999f, 20000.0f, 10.0f, -5.0f, -10.0f, -10.0f, 5.0f, 1.0f, 5.5f, 10.0f},
        effect);
}

TEST(ParametricEqualizer, HandsOverTheValuesAtEachSet) {
    ParametricEqualizer effect(nullptr);
    setAll(effect, Audible);
    ReferencePair reference(engineValues(Audible));
    // A repeated value and a value for an unknown index count as changes, too: each causes a crossfade.
    for (const int32 index : {3, 13, -1}) {
        effect.setParameter(index, Audible[3]);
        reference.set(engineValues(Audible));
        const Stereo audio = noise(3 * BlockSize);
        EXPECT_TRUE(sameBits(render(effect, audio), reference.render(audio)));
    }
}

TEST(ParametricEqualizer, NamesItsParameters) {
    ParametricEqualizer effect(nullptr);
    std::string all;
    for (int32 i = 0; i < 13; ++i) {
        char name[32], label[32];
        effect.getParameterName(i, name);
        effect.getParameterLabel(i, label);
        all += std::string(name) + ' ' + label + ',';
    }
    for (const int32 i : {-1, 13}) {
        char text[] = "as it was";
        effect.getParameterName(i, text);
        effect.getParameterLabel(i, text);
        all += text;
    }
    EXPECT_EQ(all, "Volume dB,Frequency(1) Hz,Frequency(2) Hz,Frequency(3) Hz,Frequency(4) Hz,"
                   "Gain(1) dB,Gain(2) dB,Gain(3) dB,Gain(4) dB,Q(1) ,Q(2) ,Q(3) ,Q(4) ,as it wasas it was");
}

TEST(ParametricEqualizer, AllocatesOnlyToGrow) {
    ParametricEqualizer effect(nullptr);
    Stereo audio = noise(4096);
    float* channels[] = {audio[0].data(), audio[1].data()};
    using allocations::askedBy;
    const auto adding = [&](int32 frames) { return askedBy([&] { effect.process(channels, channels, frames); }); };
    const auto arrays = [](std::size_t frames) { return 2 * frames * sizeof(float); };

    EXPECT_EQ(adding(1024), 0u);
    EXPECT_EQ(adding(1025), arrays(1025));
    EXPECT_EQ(adding(1025), 0u);
    for (const int32 size : {1, 64})
        EXPECT_EQ(askedBy([&] { effect.setBlockSize(size); }), arrays(static_cast<std::size_t>(size)));
    EXPECT_EQ(adding(65), arrays(65));
    for (const int32 size : {0, INT32_MIN}) EXPECT_EQ(askedBy([&] { effect.setBlockSize(size); }), 0u);
    EXPECT_EQ(effect.getBlockSize(), 65);
    EXPECT_EQ(askedBy([&] { effect.setBlockSizeAndSampleRate(4096, 48000.0f); }), 0u);
    EXPECT_EQ(adding(65), 0u);
}

TEST(ParametricEqualizer, AddsToTheOutputInPiecesWhenMemoryIsShort) {
    ParametricEqualizer effect(nullptr);
    ReferencePair reference(engineValues(DefaultParameters));
    effect.setBlockSize(100);
    Stereo input = noise(5050);
    // There is memory for no array, for one of the arrays, or for both arrays.
    for (const auto& [granted, refused] : {std::pair(0L, LONG_MAX), {0, 1}, {1, LONG_MAX}, {2, LONG_MAX}}) {
        Stereo expected = reference.render(input);
        Stereo output = noise(5050, 7);
        for (std::size_t c = 0; c < 2; ++c)
            std::ranges::transform(output[c], expected[c], expected[c].begin(), std::plus<>());
        float* inputs[] = {input[0].data(), input[1].data()};
        float* outputs[] = {output[0].data(), output[1].data()};
        {
            const allocations::Shortage shortage(granted, refused);
            effect.process(inputs, outputs, 5050);
        }
        EXPECT_TRUE(sameBits(output, expected));
    }
}

TEST(ParametricEqualizer, DiscardsTheAudioAtSuspendAndKeepsTheParameters) {
    // There is memory for both engines, for no engine, or for one of the engines.
    for (const auto& [granted, refused] : {std::pair(-1L, 0L), {0, LONG_MAX}, {0, 1}, {1, LONG_MAX}}) {
        SCOPED_TRACE(granted);
        ParametricEqualizer effect(nullptr);
        setAll(effect, Audible);
        ReferencePair running(engineValues(Audible));
        for (int i = 0; i < 2; ++i) {
            effect.resume(); // without `suspend`, it discards no audio
            EXPECT_TRUE(sameBits(render(effect, noise(3000)), running.render(noise(3000))));
        }
        {
            const allocations::Shortage shortage(granted, refused);
            effect.suspend();
        }
        expectTheSoundOf(engineValues(Audible), effect);
    }
}

// If one allocation of the constructor fails, the constructor releases all others.
TEST(ParametricEqualizer, LeaksNoMemoryIfAnAllocationFails) {
    const long before = allocations::live;
    bool made = false;
    for (long granted = 0; !made; ++granted) {
        const allocations::Shortage shortage(granted, 1);
        try {
            const ParametricEqualizer effect(nullptr);
            made = true;
            // The two scratch arrays and the two engines exist. The allocation of the editor has failed.
            EXPECT_EQ(granted, 4);
            EXPECT_TRUE(editorCreationFailed.exchange(false));
        } catch (const std::bad_alloc&) {
        }
        EXPECT_EQ(allocations::live, before);
    }
}

TEST(PluginMain, ReturnsNoEffectAfterTheCreationOfAnEditorHasFailed) {
    const auto host = [](AEffect*, int32, int32, intptr, void*, float) -> intptr { return 2400; };
    {
        // The effect, its two scratch arrays and its two engines exist. The allocation of the editor fails.
        const allocations::Shortage shortage(5, 1);
        EXPECT_EQ(pluginMain(host), nullptr);
    }
    EXPECT_EQ(pluginMain(host), nullptr);
    EXPECT_TRUE(editorCreationFailed.exchange(false));
    EXPECT_NO_THROW(HostedEffect(pluginMain(host)));
}

TEST(ParametricEqualizer, LosesNoChangeThatInterruptsAnotherChange) {
    // Sets a parameter after the effect has read all values and before it hands them over, as another thread could.
    struct Interrupted : ParametricEqualizer {
        using ParametricEqualizer::ParametricEqualizer;
        float getParameter(int32 index) override {
            const float value = ParametricEqualizer::getParameter(index);
            if (index == 12 && std::exchange(armed, false)) setParameter(0, 0.0f);
            return value;
        }
        bool armed = false;
    };
    Interrupted effect(nullptr);
    setAll(effect, Audible);
    effect.armed = true;
    effect.setParameter(1, 1.0f);
    Values last = Audible;
    last[0] = 0.0f;
    last[1] = 1.0f;
    expectTheSoundOf(engineValues(last), effect);
}

} // namespace

} // namespace eq
