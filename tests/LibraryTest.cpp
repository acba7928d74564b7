#include "plugin/AEffect.h"

#include "tests/support/EqualizerReference.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr Values Audible = {0.25f, 0.7f, 0.5f, 0.3f, 0.1f, 0.0f, 1.0f, 0.2f, 0.9f, 0.5f, 0.1f, 0.9f, 0.4f};

/// The built library, or the one that the environment names.
EffectMainProc libraryMain() {
    const char* const path = std::getenv("EQ_LIBRARY_PATH");
    static const LoadedLibrary library(path ? path : EQ_LIBRARY_PATH);
    return library.find<EffectMainProc>("main");
}

struct Closer {
    void operator()(AEffect* effect) const { effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0f); }
};
using EffectOwner = std::unique_ptr<AEffect, Closer>;

EffectOwner makeEffect() {
    return EffectOwner(libraryMain()(ScriptedHost::callback));
}

void setAll(AEffect* effect, const Values& parameters) {
    for (int32 i = 0; i < effect->numParams; ++i)
        effect->setParameter(effect, i, parameters[static_cast<std::size_t>(i)]);
}

/// Runs the frames from `start` on, in place or added to `output`.
void run(AEffect* effect, Stereo& input, Stereo& output, std::size_t start, std::size_t frames, bool replacing) {
    float* inputs[] = {input[0].data() + start, input[1].data() + start};
    float* outputs[] = {output[0].data() + start, output[1].data() + start};
    (replacing ? effect->processReplacing : effect->process)(effect, inputs, outputs, static_cast<int32>(frames));
}

class Library : public testing::Test {
protected:
    ScriptedHost host{2400};
};

TEST_F(Library, WantsAHostThatKnowsItsVersion) {
    const ScriptedHost refusing(0);
    EXPECT_EQ(libraryMain()(ScriptedHost::callback), nullptr);
    EXPECT_EQ(refusing.calls(), (std::vector<HostCall>{{nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f}}));
}

#if UINTPTR_MAX == UINT32_MAX
TEST_F(Library, LaysItsRecordOutAsA32BitHostReadsIt) {
    const EffectOwner effect = makeEffect();
    const char* const bytes = reinterpret_cast<const char*>(effect.get());
    const auto wordAt = [bytes](std::size_t offset) {
        int32 word;
        std::memcpy(&word, bytes + offset, sizeof word);
        return word;
    };
    const std::pair<std::size_t, int32> words[] = {
        {0, 0x56737450}, {20, 1}, {24, 13}, {28, 2},          {32, 2}, {36, 0x19},       {40, 0}, {44, 0},
        {48, 2048},      {52, 0}, {56, 0},  {60, 0x3F800000}, {68, 0}, {72, 0x4D68567A}, {76, 1},
    };
    for (const auto& [offset, value] : words) EXPECT_EQ(wordAt(offset), value) << "at " << offset;
    for (const std::size_t pointer : {4, 8, 12, 16, 64, 80}) EXPECT_NE(wordAt(pointer), 0) << "at " << pointer;
    for (std::size_t offset = 84; offset < 144; ++offset) EXPECT_EQ(bytes[offset], 0);
}
#else
TEST_F(Library, GivesAFilledRecord) {
    const EffectOwner effect = makeEffect();
    ASSERT_NE(effect, nullptr);
    EXPECT_EQ(host.calls().size(), 1u);
    const std::array<int32, 8> fields = {effect->magic,        effect->numPrograms, effect->numParams,
                                         effect->numInputs,    effect->numOutputs,  effect->flags,
                                         effect->initialDelay, effect->version};
    EXPECT_EQ(fields, (std::array<int32, 8>{0x56737450, 1, 13, 2, 2, 0x19, 2048, 1}));
    EXPECT_EQ(effect->ioRatio, 1.0f);
    EXPECT_NE(effect->object, nullptr);
    EXPECT_EQ(std::memcmp(&effect->uniqueID, "zVhM", 4), 0);
}
#endif

TEST_F(Library, KeepsTheParametersOfEachEffectApart) {
    const EffectOwner first = makeEffect();
    const EffectOwner second = makeEffect();
    setAll(first.get(), Audible);
    for (int32 i = 0; i < 13; ++i) {
        EXPECT_EQ(first->getParameter(first.get(), i), Audible[static_cast<std::size_t>(i)]);
        EXPECT_EQ(second->getParameter(second.get(), i), DefaultParameters[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(first->getParameter(first.get(), 13), 0.0f);
}

TEST_F(Library, FiltersAsTheEnginesDoWhateverTheBlockSizes) {
    const Stereo input = noise(30000);
    const Stereo present = noise(30000, 7);
    for (const bool replacing : {true, false}) {
        for (const auto& sizes : {std::vector<std::size_t>{30000}, {1, 0, 700}, {64}, {2048}, {5000, 1, 441, 3000}}) {
            SCOPED_TRACE(testing::Message() << (replacing ? "in place, " : "added, ") << sizes[0]);
            const EffectOwner effect = makeEffect();
            setAll(effect.get(), Audible);
            Stereo source = input;
            Stereo sum = present;
            Stereo& output = replacing ? source : sum;
            std::size_t done = 0;
            for (std::size_t call = 0; done < 30000; ++call) {
                const std::size_t frames = std::min(sizes[call % sizes.size()], 30000 - done);
                run(effect.get(), source, output, done, frames, replacing);
                done += frames;
            }
            ReferencePair reference(engineValues(Audible));
            Stereo expected = reference.render(input);
            if (!replacing)
                for (std::size_t c = 0; c < 2; ++c)
                    for (std::size_t i = 0; i < 30000; ++i) expected[c][i] = present[c][i] + expected[c][i];
            EXPECT_TRUE(sameBits(output, expected));
        }
    }
}

#ifdef __i386__
/// Calls a function of the interface with the stack pointer `skew` bytes below a multiple of 16.
int32 callSkewed(const void* function, std::array<std::uintptr_t, 6> arguments, std::uintptr_t skew) {
    int32 result;
    asm volatile("movl %%esp, %%ebx\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl %[skew], %%esp\n\t"
                 "pushl 20(%[arguments])\n\t"
                 "pushl 16(%[arguments])\n\t"
                 "pushl 12(%[arguments])\n\t"
                 "pushl 8(%[arguments])\n\t"
                 "pushl 4(%[arguments])\n\t"
                 "pushl (%[arguments])\n\t"
                 "call *%[function]\n\t"
                 "movl %%ebx, %%esp"
                 : "=a"(result), [skew] "+d"(skew)
                 : [arguments] "S"(arguments.data()), [function] "D"(function)
                 : "ebx", "ecx", "memory", "cc");
    return result;
}

TEST_F(Library, TakesAStackThatIsAlignedToFourBytesOnly) {
    const auto word = [](auto value) { return std::bit_cast<std::uintptr_t>(value); };
    for (const std::uintptr_t skew : {0u, 4u, 8u, 12u}) {
        const auto call = [&](auto function, std::array<std::uintptr_t, 6> arguments) {
            return callSkewed(reinterpret_cast<const void*>(function), arguments, skew);
        };
        auto* const effect =
            reinterpret_cast<AEffect*>(call(libraryMain(), {word(&ScriptedHost::callback), 0, 0, 0, 0, 0}));
        ASSERT_NE(effect, nullptr);
        for (std::uintptr_t i = 0; i < 13; ++i)
            call(effect->setParameter, {word(effect), i, word(Audible[i]), 0, 0, 0});
        Stereo input = noise(5000);
        Stereo output = silence(5000);
        float* inputs[] = {input[0].data(), input[1].data()};
        float* outputs[] = {output[0].data(), output[1].data()};
        ReferencePair reference(engineValues(Audible));
        const Stereo first = reference.render(input);
        const Stereo second = reference.render(input);
        call(effect->process, {word(effect), word(&inputs[0]), word(&outputs[0]), 5000, 0, 0});
        EXPECT_TRUE(sameBits(output, first));
        call(effect->processReplacing, {word(effect), word(&inputs[0]), word(&outputs[0]), 5000, 0, 0});
        EXPECT_TRUE(sameBits(output, second));
        EXPECT_EQ(call(effect->dispatcher, {word(effect), effGetVstVersion, 0, 0, 0, 0}), 2);
        EXPECT_EQ(call(effect->dispatcher, {word(effect), effClose, 0, 0, 0, 0}), 1);
    }
}
#endif

} // namespace
