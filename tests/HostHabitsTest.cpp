#include "plugin/base/AEffect.h"

#include "tests/support/EqualizerReference.h"
#include "tests/support/LibraryCopy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#if defined(__x86_64__) || defined(__i386__)
#include <xmmintrin.h>
#endif

#ifndef _WIN32
#include <pthread.h>
#include <sys/wait.h>
#endif

// Habits of hosts that the library must support. Each test loads its own copy of the library.

namespace eq {

namespace {

void switchOffAndOn(const HostedEffect& effect) {
    for (const intptr state : {0, 1}) EXPECT_EQ(effect.dispatch(effMainsChanged, nullptr, 0, state), 0);
}

/// Returns the output for `audio`, processed in one call. The accumulating form adds the output to silence.
Stereo render(const HostedEffect& effect, Stereo audio, bool accumulates = false) {
    const std::size_t frames = audio[0].size();
    Stereo result = {Samples(frames), Samples(frames)};
    float* inputs[] = {audio[0].data(), audio[1].data()};
    float* outputs[] = {result[0].data(), result[1].data()};
    const auto process = accumulates ? effect.record->process : effect.record->processReplacing;
    process(effect.record, inputs, outputs, static_cast<int32>(frames));
    return result;
}

#if defined(__x86_64__) || defined(__i386__)
/// The control words of the processor's two floating-point units, SSE and x87.
using FloatingPointMode = std::array<unsigned, 2>;

FloatingPointMode currentMode() {
    std::uint16_t x87 = 0;
    asm volatile("fnstcw %0" : "=m"(x87));
    return {_mm_getcsr() & ~0x3FU, x87}; // without the flags of past exceptions
}

void setMode(const FloatingPointMode& mode) {
    const auto x87 = static_cast<std::uint16_t>(mode[1]);
    _mm_setcsr(mode[0]);
    asm volatile("fnclex\n\tfldcw %0" : : "m"(x87));
}

/// Calls `action` in a floating-point mode. The action must not change the mode.
template <typename Action>
void in(const FloatingPointMode& mode, const Action& action) {
    const FloatingPointMode before = currentMode();
    setMode(mode);
    action();
    const FloatingPointMode after = currentMode();
    setMode(before);
    EXPECT_EQ(after, mode);
}

TEST(HostHabits, WorksInAnyFloatingPointModeAndKeepsIt) {
    constexpr FloatingPointMode WindowsHost = {0x1F80, 0x027F};
    // clang-format off
    const std::pair<const char*, FloatingPointMode> modes[] = {
        {"that of most hosts on Windows", WindowsHost}, {"denormals are zero", {0x9FC0, 0x037F}},
        {"rounded up", {0x5F80, 0x0B7F}}, {"rounded toward zero", {0x7F80, 0x0F7F}},
        {"x87 with a precision of 24 bits", {0x1F80, 0x007F}}, {"exceptions that are not masked", {0x1900, 0x0372}}};
    // clang-format on
    std::unique_ptr<LibraryCopy> copy;
    in(WindowsHost, [&] { copy = std::make_unique<LibraryCopy>(); });
    const Stereo sound = noise(5000);
    const Stereo expected = ReferencePair(engineValues(Audible)).render(sound);
    Stereo faint = sound;
    for (Samples& channel : faint)
        for (float& x : channel) x *= 1e-38F;

    for (const auto& [name, mode] : modes) {
        SCOPED_TRACE(name);
        std::unique_ptr<HostedEffect> effect;
        in(mode, [&] { effect = std::make_unique<HostedEffect>(copy->make()); });
        for (int32 i = 0; i < 13; ++i) {
            std::string text;
            in(mode, [&] { effect->set(i, Audible[static_cast<std::size_t>(i)]); });
            in(mode, [&] { text = effect->display(i); });
            EXPECT_EQ(text, effect->display(i));
        }
        // A parameter change in the default mode passes all values to the engine again.
        effect->set(0, Audible[0]);
        EXPECT_TRUE(sameBits(render(*effect, sound), expected));

        for (int call = 0; call < 8; ++call) {
            Stereo output;
            in(mode, [&] { effect->set(0, Audible[0]); });
            in(mode, [&] { output = render(*effect, call < 4 ? sound : faint, call % 2 == 0); });
            for (const Samples& channel : output)
                EXPECT_TRUE(std::ranges::all_of(channel, [](float x) { return std::abs(x) < 100; }));
        }
        in(mode, [&] { switchOffAndOn(*effect); });
        switchOffAndOn(*effect);
        EXPECT_TRUE(sameBits(render(*effect, sound), expected));
        in(mode, [&] { effect.reset(); });
    }
    in(WindowsHost, [&] { copy.reset(); });
}
#endif

#ifndef _WIN32
TEST(HostHabits, ShowsAPointInALocaleWithADecimalComma) {
    const LibraryCopy copy;
    const HostedEffect effect(copy.make());
    effect.setAll(Audible);
    const std::string command = "cd '" EQ_LOCALE_SOURCES_DIR
                                "' && localedef -c -f ./ascii.charmap -i ./decimal-comma '" +
                                copy.folder.path("decimal-comma") + "' 2>/dev/null";
    // localedef also fails if it only warns, and it warns because the locale lacks most categories. localedef writes
    // the locale unless its exit code is 4 or more.
    ASSERT_LT(std::system(command.c_str()) / 256, 4);
    EnvironmentVariable path("LOCPATH");
    path.set(copy.folder.path().string());
    ASSERT_NE(std::setlocale(LC_ALL, "decimal-comma"), nullptr);
    const std::string witness = std::to_string(1.5);
    const std::string texts = effect.display(0) + "; " + effect.display(2) + "; " + effect.display(9);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(witness, "1,500000");
    EXPECT_EQ(texts, "+6.0 dB; 632 IDS_Hz; 5.5");
}
#endif

TEST(HostHabits, TwoCopiesOfTheLibraryShareNothing) {
    const LibraryCopy first("one");
    LibraryCopy second("two");
    const HostedEffect effect(first.make());
    {
        const HostedEffect other(second.make());
        EXPECT_EQ(effect.display(0) + other.display(0), "+0.0 one+0.0 two");
        const std::vector<float> before = effect.all();
        other.setAll(Audible);
        render(other, noise(3000, 2));
        EXPECT_EQ(effect.all(), before);

        // A host saves the values of one copy and restores them in the other.
        for (int32 i = 0; i < 13; ++i) effect.set(i, other.get(i));
        switchOffAndOn(other);
        const Stereo sound = noise(7000);
        const Stereo expected = ReferencePair(engineValues(Audible)).render(sound);
        EXPECT_TRUE(sameBits(render(other, sound), expected));
        EXPECT_TRUE(sameBits(render(effect, sound), expected));
    }
    second.library.reset();
    switchOffAndOn(effect);
    EXPECT_EQ(render(effect, noise(100))[0], Samples(100));
    EXPECT_EQ(effect.display(5), "+10.0 one");
}

/// Calls `work` on a new thread that has 64 KiB of stack left. Under Wine a new stack has at least 1 MiB, so this
/// function uses up the rest of the stack first.
template <typename Work>
void onSmallStack(const Work& work) {
    std::thread([&work] {
#ifdef _WIN32
        MEMORY_BASIC_INFORMATION stack;
        VirtualQuery(__builtin_frame_address(0), &stack, sizeof stack);
        void* const end = stack.AllocationBase;
#else
        pthread_attr_t attributes;
        void* end = nullptr;
        std::size_t size = 0;
        pthread_getattr_np(pthread_self(), &attributes);
        pthread_attr_getstack(&attributes, &end, &size);
        pthread_attr_destroy(&attributes);
#endif
        const auto left = static_cast<char*>(__builtin_frame_address(0)) - static_cast<char*>(end);
        void* const rest = __builtin_alloca(static_cast<std::size_t>(left) - 65536);
        asm volatile("" : : "r"(rest) : "memory");
        work();
    }).join();
}

TEST(HostHabits, RunsEachBlockOnANewThreadWithASmallStack) {
    const LibraryCopy copy;
    const HostedEffect effect(copy.make());
    ReferencePair reference(engineValues(DefaultParameters));
    for (unsigned block = 0; block < 12; ++block) {
        const Stereo input = noise(1500, block);
        Stereo output, expected;
        onSmallStack([&] {
            if (block % 4 == 0) effect.setAll(Audible);
            output = render(effect, input, block % 2 == 0);
            // The reference runs on this thread, too, because a new thread may have another floating-point mode than
            // the first thread.
            if (block % 4 == 0) reference.set(engineValues(Audible));
            expected = reference.render(input);
        });
        EXPECT_TRUE(sameBits(output, expected));
    }
}

TEST(HostHabits, AcceptsCallsInTheWrongOrderAndOnAnotherThread) {
    const LibraryCopy copy;
    auto effect = std::make_unique<HostedEffect>(copy.make());
    const auto command = [&](int32 opcode, intptr value = 0, float opt = 0.0F) {
        EXPECT_EQ(effect->record->dispatcher(effect->record, opcode, 0, value, nullptr, opt), 0);
    };
    // These calls come before the effect is opened or switched on.
    for (const int32 opcode : {effEditClose, effEditIdle}) command(opcode);
    render(*effect, noise(3000), true);
    // These calls come while the effect is switched off.
    for (int i = 0; i < 2; ++i) command(effMainsChanged, 0);
    effect->setAll(Audible);
    command(effSetBlockSize, 1);
    ReferencePair reference(engineValues(Audible));
    for (unsigned block = 0; block < 8; ++block) {
        const Stereo input = noise(1500, block);
        EXPECT_TRUE(sameBits(render(*effect, input, block % 2 == 0), reference.render(input)));
        // These commands come between two blocks, which is too late.
        for (const intptr size : {-1, 0, 100}) command(effSetBlockSize, size);
        command(effSetSampleRate, 0, 96000.0F);
        for (const int32 opcode : {effMainsChanged, effOpen, effEditIdle, effEditClose}) command(opcode, 1);
    }
    std::thread([&] { effect.reset(); }).join();
    EXPECT_EQ(HostedEffect(copy.make()).get(0), 0.5F);
}

} // namespace

} // namespace eq
