#include "plugin/ParametricEqualizer.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/EqualizerReference.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

// Every band audible, and the volume off its middle.
constexpr Values Audible = {0.25f, 0.7f, 0.5f, 0.3f, 0.1f, 0.0f, 1.0f, 0.2f, 0.9f, 0.5f, 0.1f, 0.9f, 0.4f};

void setAll(ParametricEqualizer& effect, const Values& parameters) {
    for (int32 i = 0; i < ParameterCount; ++i) effect.setParameter(i, parameters[static_cast<std::size_t>(i)]);
}

Stereo render(ParametricEqualizer& effect, Stereo audio) {
    float* channels[] = {audio[0].data(), audio[1].data()};
    effect.processReplacing(channels, channels, static_cast<int32>(audio[0].size()));
    return audio;
}

Stereo sum(Stereo a, const Stereo& b) {
    for (std::size_t c = 0; c < 2; ++c)
        for (std::size_t i = 0; i < a[c].size(); ++i) a[c][i] += b[c][i];
    return a;
}

TEST(ParametricEqualizer, StartsWithTheDefaults) {
    ParametricEqualizer effect(nullptr);
    const std::uint32_t bits[] = {0x3F000000, 0x3F800000, 0x3F2AAAAB, 0x3EAAAAAB, 0x00000000, 0x3F000000, 0x3F000000,
                                  0x3F000000, 0x3F000000, 0x3F0E38E4, 0x3F0E38E4, 0x3F0E38E4, 0x3F0E38E4};
    for (int32 i = 0; i < 13; ++i) EXPECT_EQ(std::bit_cast<std::uint32_t>(effect.getParameter(i)), bits[i]);
}

TEST(ParametricEqualizer, MapsParametersToEngineeringUnits) {
    const struct {
        std::size_t index;
        float p;
        float value;
    } rows[] = {
        {0, 0.0f, 12.0f},
        {0, NaN, -12.0f},
        {1, 1.0f, 20.0f},
        {2, 2.0f / 3.0f, 199.99997f},
        {3, 1.0f / 3.0f, 1999.9999f},
        {2, Infinity, 20.0f},
        {4, -3.0f, 20000.0f},
        {7, 0.75f, -5.0f},
        {8, 1.0f, -10.0f},
        {5, -Infinity, 10.0f},
        {10, 5.0f / 9.0f, 5.0f},
        {12, 7.0f, 1.0f},
    };
    const Stereo audio = noise(3 * BlockSize);
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.index << " at " << row.p);
        ParametricEqualizer effect(nullptr);
        setAll(effect, Audible);
        effect.setParameter(static_cast<int32>(row.index), row.p);
        Values values = engineValues(Audible);
        values[row.index] = row.value;
        ReferencePair reference(values);
        EXPECT_TRUE(sameBits(render(effect, audio), reference.render(audio)));
    }
}

TEST(ParametricEqualizer, KeepsParametersAsTheyAreGiven) {
    ParametricEqualizer effect(nullptr);
    for (const float value : {1.5f, Infinity}) {
        effect.setParameter(7, value);
        EXPECT_EQ(effect.getParameter(7), value);
    }
    for (const int32 index : {-1, 13, INT32_MIN, INT32_MAX}) {
        effect.setParameter(index, 0.75f);
        EXPECT_EQ(effect.getParameter(index), 0.0f);
    }
}

TEST(ParametricEqualizer, HandsTheValuesOverAtEverySet) {
    struct Editor : AEffEditor {
        using AEffEditor::AEffEditor;
        void update() override { ++updates; }
        int updates = 0;
    };
    struct Effect : ParametricEqualizer {
        using ParametricEqualizer::ParametricEqualizer;
        std::unique_ptr<AEffEditor> madeEditor{editor}; // an editor that is replaced is nobody's
    };
    Effect effect(nullptr);
    auto* const editor = new Editor(&effect);
    effect.setEditor(editor);
    setAll(effect, Audible);
    ReferencePair reference(engineValues(Audible));
    int updates = 0;
    // A repeated value counts as a change, and so does one that is stored nowhere: a crossfade tells.
    for (const int32 index : {3, 13, -1}) {
        effect.setParameter(index, Audible[3]);
        reference.set(engineValues(Audible));
        const Stereo audio = noise(3 * BlockSize);
        EXPECT_TRUE(sameBits(render(effect, audio), reference.render(audio)));
        editor->idle();
        EXPECT_EQ(editor->updates, ++updates);
    }
}

TEST(ParametricEqualizer, NamesItsParameters) {
    const char* const names[] = {"Volume",  "Frequency(1)", "Frequency(2)", "Frequency(3)", "Frequency(4)",
                                 "Gain(1)", "Gain(2)",      "Gain(3)",      "Gain(4)",      "Q(1)",
                                 "Q(2)",    "Q(3)",         "Q(4)"};
    const char* const labels[] = {"dB", "Hz", "Hz", "Hz", "Hz", "dB", "dB", "dB", "dB", "", "", "", ""};
    ParametricEqualizer effect(nullptr);
    for (int32 i = -1; i <= 13; ++i) {
        char name[32] = "as it was";
        char label[32] = "as it was";
        effect.getParameterName(i, name);
        effect.getParameterLabel(i, label);
        const bool exists = i >= 0 && i < 13;
        EXPECT_STREQ(name, exists ? names[i] : "as it was");
        EXPECT_STREQ(label, exists ? labels[i] : "as it was");
    }
}

TEST(ParametricEqualizer, AllocatesForGrowingAlone) {
    ParametricEqualizer effect(nullptr);
    Stereo audio = noise(4096);
    float* channels[] = {audio[0].data(), audio[1].data()};
    const auto asked = [](const auto& action) {
        const std::size_t before = allocations::asked;
        action();
        return allocations::asked - before;
    };
    const auto adding = [&](int32 frames) { return asked([&] { effect.process(channels, channels, frames); }); };
    const auto arrays = [](std::size_t frames) { return 2 * frames * sizeof(float); };

    EXPECT_EQ(adding(1024), 0u);
    EXPECT_EQ(adding(1025), arrays(1025));
    EXPECT_EQ(adding(1025), 0u);
    EXPECT_EQ(asked([&] { effect.setBlockSize(64); }), arrays(64));
    EXPECT_EQ(adding(65), arrays(65));
    for (const int32 size : {0, -1, INT32_MIN}) EXPECT_EQ(asked([&] { effect.setBlockSize(size); }), 0u);
    EXPECT_EQ(effect.getBlockSize(), 65);
    EXPECT_EQ(asked([&] { effect.setBlockSizeAndSampleRate(4096, 48000.0f); }), 0u);
    EXPECT_EQ(adding(65), 0u);
    EXPECT_EQ(asked([&] { effect.processReplacing(channels, channels, 4096); }), 0u);
    EXPECT_EQ(asked([&] { effect.setParameter(1, 0.5f); }), 0u);
}

TEST(ParametricEqualizer, AddsToTheOutputInPiecesWhenMemoryIsShort) {
    ParametricEqualizer effect(nullptr);
    ReferencePair reference(engineValues(DefaultParameters));
    effect.setBlockSize(100);
    const Stereo input = noise(5050);
    const Stereo present = noise(5050, 7);
    for (const long granted : {0, 1, 2}) { // none of the two arrays, one of them, both
        const Stereo expected = sum(present, reference.render(input));
        Stereo source = input;
        Stereo output = present;
        float* inputs[] = {source[0].data(), source[1].data()};
        float* outputs[] = {output[0].data(), output[1].data()};
        {
            const allocations::Shortage shortage(granted);
            effect.process(inputs, outputs, 5050);
        }
        EXPECT_TRUE(sameBits(output, expected));
    }
}

TEST(ParametricEqualizer, SuspendForgetsTheAudioAndKeepsTheParameters) {
    for (const long granted : {-1, 0, 1}) { // memory for both engines, for none, for one
        SCOPED_TRACE(granted);
        ParametricEqualizer effect(nullptr);
        setAll(effect, Audible);
        ReferencePair running(engineValues(Audible));
        for (int i = 0; i < 2; ++i) {
            effect.resume(); // alone, it forgets nothing
            EXPECT_TRUE(sameBits(render(effect, noise(3000)), running.render(noise(3000))));
        }
        {
            const allocations::Shortage shortage(granted);
            effect.suspend();
        }
        effect.resume();
        for (int32 i = 0; i < 13; ++i) EXPECT_EQ(effect.getParameter(i), Audible[static_cast<std::size_t>(i)]);
        ReferencePair reference(engineValues(Audible));
        const Stereo audio = noise(3 * BlockSize, 2);
        EXPECT_TRUE(sameBits(render(effect, audio), reference.render(audio)));
    }
}

TEST(ParametricEqualizer, LeavesNoMemoryBehind) {
    const long before = allocations::live;
    for (int i = 0; i < 100; ++i) {
        AEffect* const record = (new ParametricEqualizer(nullptr))->getAeffect();
        record->dispatcher(record, effMainsChanged, 0, 0, nullptr, 0.0f);
        record->dispatcher(record, effSetBlockSize, 0, 4096, nullptr, 0.0f);
        record->dispatcher(record, effClose, 0, 0, nullptr, 0.0f);
    }
    EXPECT_EQ(allocations::live, before);

    // Whichever allocation of the construction fails, the others are given back.
    for (long granted = 0;; ++granted) {
        std::unique_ptr<ParametricEqualizer> effect;
        {
            const allocations::Shortage shortage(granted, 1);
            try {
                effect = std::make_unique<ParametricEqualizer>(nullptr);
            } catch (const std::bad_alloc&) {
            }
        }
        if (effect) {
            // The effect, two arrays and two engines are there, and only the editor is not.
            EXPECT_EQ(granted, 5);
            EXPECT_TRUE(editorCreationFailed.exchange(false));
            break;
        }
        EXPECT_EQ(allocations::live, before);
    }
}

TEST(ParametricEqualizer, LosesNoChangeThatComesInTheMidstOfAnother) {
    // What another thread would do between the reading of the values and their hand-over.
    class Interrupted : public ParametricEqualizer {
    public:
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
    EXPECT_FALSE(effect.armed);

    Values last = Audible;
    last[0] = 0.0f;
    last[1] = 1.0f;
    ReferencePair reference(engineValues(last));
    const Stereo audio = noise(2 * BlockSize);
    EXPECT_TRUE(sameBits(render(effect, audio), reference.render(audio)));
}

} // namespace
