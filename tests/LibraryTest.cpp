#include "plugin/base/AEffect.h"

#include "tests/support/EqualizerReference.h"
#include "tests/support/LibraryCopy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace eq {

namespace {

#ifdef EQ_HAS_EDITOR
constexpr int32 Flags = 0x19;
#else
constexpr int32 Flags = 0x18;
#endif

struct Library : testing::Test {
    static EffectMainProc main() {
        static const LoadedLibrary library(EQ_LIBRARY_PATH);
        return library.find<EffectMainProc>("main");
    }
    static AEffect* make() { return main()(ScriptedHost::callback); }

    ScriptedHost host{2400};
};

TEST_F(Library, RefusesAHostThatReportsNoVersion) {
    host = ScriptedHost(0);
    EXPECT_EQ(make(), nullptr);
    EXPECT_EQ(host.calls(), (std::vector<HostCall>{{nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f}}));
}

TEST_F(Library, ReturnsAFilledRecord) {
    const HostedEffect owner(make());
    const AEffect* const effect = owner.record;
    EXPECT_EQ(host.calls().size(), 1u);
    const std::array<intptr, 12> fields = {effect->magic,         effect->numPrograms,  effect->numParams,
                                           effect->numInputs,     effect->numOutputs,   effect->flags,
                                           effect->resvd1,        effect->resvd2,       effect->initialDelay,
                                           effect->realQualities, effect->offQualities, effect->version};
    EXPECT_EQ(fields, (std::array<intptr, 12>{0x56737450, 1, 13, 2, 2, Flags, 0, 0, 2048, 0, 0, 1}));
    EXPECT_EQ(effect->ioRatio, 1.0f);
    EXPECT_EQ(effect->user, nullptr);
    EXPECT_EQ(std::memcmp(&effect->uniqueID, "zVhM", 4), 0);
    EXPECT_TRUE(std::ranges::all_of(effect->future, [](char c) { return c == 0; }));
}

TEST_F(Library, AnswersEachCommandOfTheInterface) {
    const HostedEffect effect(make());
    std::string all; // each opcode whose answer is not 0, or which changes the text
    for (int32 opcode = -1; opcode < 61; ++opcode) {
        if (opcode == effClose || (opcode >= effEditGetRect && opcode <= effEditIdle)) continue;
        std::string text = "old" + std::string(64, '\0');
        const intptr answer = effect.dispatch(opcode, text.data(), 12, 1);
        text.resize(text.find('\0'));
        if (answer != 0 || text != "old") all += std::to_string(opcode) + "=" + std::to_string(answer) + text + " ";
    }
    EXPECT_EQ(all, "4=0 5=0Parametric Equalizer 6=0 7=05.0 8=0Q(4) 22=1316373862old 26=1old 28=1old 31=1old 32=1old "
                   "43=1old 57=1old 58=2old ");
}

TEST_F(Library, FiltersLikeTheEnginesForAnyBlockSizes) {
    const Stereo input = noise(30000);
    for (const auto& sizes : {std::vector<std::size_t>{30000}, {1, 0, 700}, {2048}, {5000, 1, 441, 3000}}) {
        SCOPED_TRACE(sizes[0]);
        const HostedEffect effect(make());
        effect.setAll(Audible);
        Stereo audio = input;
        std::size_t done = 0;
        for (std::size_t call = 0; done < 30000; ++call) {
            const std::size_t frames = std::min(sizes[call % sizes.size()], 30000 - done);
            float* channels[] = {audio[0].data() + done, audio[1].data() + done};
            effect.record->processReplacing(effect.record, channels, channels, static_cast<int32>(frames));
            done += frames;
        }
        EXPECT_TRUE(sameBits(audio, ReferencePair(engineValues(Audible)).render(input)));
    }
}

TEST_F(Library, ShowsTheUnitsOfTheLanguageFileInItsFolder) {
    const LibraryCopy copy("Dezibel", 1031);
    copy.write(1033, "IDS_DB = decibels");
    const HostedEffect effect(copy.make());
    effect.set(7, 0.325F);
    EXPECT_EQ(effect.display(7), "+3.5 Dezibel");
}

TEST_F(Library, ReturnsNoEffectWhileALanguageFileIsBroken) {
    const LibraryCopy copy;
    copy.write(1033, "no equals sign");
    EXPECT_EQ(copy.make(), nullptr);
    copy.write(1033, "IDS_DB = dB");
    EXPECT_NE(HostedEffect(copy.make()).record, nullptr);
}

#ifndef _WIN32
TEST_F(Library, ReportsOnStandardErrorThatThereAreNoLanguageFiles) {
    const LibraryCopy copy;
    std::filesystem::remove(copy.folder.path("Texts1033.lng"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(HostedEffect(copy.make()).display(0), "+0.0 IDS_DB");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: LNG0001:  No language files were found.\n");
}

TEST_F(Library, LoadsNoGraphicsLibraryWithoutTheEditor) {
    const HostedEffect effect(make());
    EXPECT_EQ(effect.display(0), "+0.0 dB");
    for (const char* const library : {"libpango-1.0.so.0", "libcairo.so.2", "libxcb.so.1"})
        EXPECT_EQ(dlopen(library, RTLD_LAZY | RTLD_NOLOAD), nullptr) << library;
}
#endif

#ifdef __i386__
/// Calls a function of the interface with a stack pointer that is `skew` bytes below a multiple of 16.
int32 callSkewed(const void* function, std::array<std::uintptr_t, 6> arguments, std::uintptr_t skew) {
    int32 result;
    asm volatile("movl %%esp, %%ebx\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl %[skew], %%esp\n\t"
                 "pushl 20(%[arguments]); pushl 16(%[arguments]); pushl 12(%[arguments])\n\t"
                 "pushl 8(%[arguments]); pushl 4(%[arguments]); pushl (%[arguments])\n\t"
                 "call *%[function]\n\t"
                 "movl %%ebx, %%esp"
                 : "=a"(result), [skew] "+d"(skew)
                 : [arguments] "S"(arguments.data()), [function] "D"(function)
                 : "ebx", "ecx", "memory", "cc");
    return result;
}

TEST_F(Library, AcceptsAStackThatIsAlignedToFourBytesOnly) {
    const auto word = [](auto value) { return std::bit_cast<std::uintptr_t>(value); };
    for (const std::uintptr_t skew : {0u, 4u, 8u, 12u}) {
        const auto call = [&](auto function, std::array<std::uintptr_t, 6> arguments) {
            return callSkewed(reinterpret_cast<const void*>(function), arguments, skew);
        };
        const int32 made = call(main(), {word(&ScriptedHost::callback)});
        ASSERT_NE(made, 0);
        auto* const effect = std::bit_cast<AEffect*>(made);
        call(effect->setParameter, {word(effect), 0, word(Audible[0])});
        Values parameters = DefaultParameters;
        parameters[0] = Audible[0];
        Stereo audio = noise(5000);
        const Stereo expected = ReferencePair(engineValues(parameters)).render(audio);
        float* channels[] = {audio[0].data(), audio[1].data()};
        call(effect->processReplacing, {word(effect), word(&channels[0]), word(&channels[0]), 5000});
        EXPECT_TRUE(sameBits(audio, expected));
        call(effect->process, {word(effect), word(&channels[0]), word(&channels[0]), 5000});
        EXPECT_EQ(call(effect->dispatcher, {word(effect), effGetVstVersion}), 2);
        EXPECT_EQ(call(effect->dispatcher, {word(effect), effClose}), 1);
    }
}
#endif

} // namespace

} // namespace eq
