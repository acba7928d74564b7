#pragma once

#include "plugin/base/AEffect.h"
#include "tests/stress/Choices.h"
#include "tests/stress/HostWindows.h"
#include "tests/support/EqualizerReference.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

namespace eq {

/// The number of actions of each kind.
struct Counts {
    std::atomic<std::uint64_t> blocks, samples, editors, loads, brokenFiles;
};
inline Counts counts{};

/// Ends the program with a status. A fuzz target calls std::abort instead, so that the fuzzer keeps the input.
inline void (*endProgram)(int status) = std::_Exit;

/// The largest number of samples of one call.
inline int32 longestCall = 100000;

/// Prints the violation and ends the program.
[[noreturn]] inline void violation(const std::string& what, int status = 1) {
    std::cout << "VIOLATION: " << what << std::endl;
    endProgram(status);
    std::abort();
}

inline void require(bool holds, const char* what) {
    if (!holds) violation(what);
}

/// Sends a command and checks its result.
inline void dispatch(AEffect* effect, int32 opcode, intptr answer, int32 index = 0, intptr value = 0,
                     void* ptr = nullptr, float opt = 0.0f) {
    const intptr found = effect->dispatcher(effect, opcode, index, value, ptr, opt);
    if (found != answer) violation("opcode " + std::to_string(opcode) + " was answered with " + std::to_string(found));
}

inline bool isParameter(int32 index) {
    return index >= 0 && index < ParameterCount;
}

/// Returns the text for an opcode, and checks its buffer. The longest text has 27 characters and a terminator.
inline std::string textOf(AEffect* effect, int32 opcode, int32 index) {
    const std::string untouched(64, '#');
    std::string text = untouched;
    dispatch(effect, opcode, 0, index, 0, text.data());
    const std::size_t length = text.find('\0');
    require(isParameter(index) ? length < 28 && text.ends_with(untouched.substr(28)) : text == untouched,
            "a text is too long, or the text of an unknown parameter was written");
    return text.substr(0, length);
}

/// The host callback of the effects. The callback returns unusual values, and sometimes calls the effect.
inline intptr hostileCallback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    require(value == 0 && ptr == nullptr, "a call to the host has arguments that it must not have");
    if (opcode == audioMasterVersion) return INT32_MIN;
    // A value of an editor may be outside 0 to 1, because positions may be beyond the ends of a slider.
    require(opcode == audioMasterAutomate && effect && isParameter(index) && std::abs(opt) <= 1e7f,
            "an effect calls its host for another reason than a change");
    require(!effect->user, "an editor changed a parameter without an action of the user");
    const std::size_t turn = below(16);
    if (turn == 0) dispatch(effect, effEditClose, 0);
    if (turn == 1) dispatch(effect, effEditIdle, 0);
    if (turn == 2) effect->setParameter(effect, index, 0.5f);
    textOf(effect, effGetParamDisplay, index);
    return INT32_MAX;
}

/// A host: the entry function of the library, and functions for windows.
struct Host {
    const EffectMainProc main;
    const HostWindows& windows;

    [[nodiscard]] AEffect* make() const { return main(hostileCallback); }

    /// Creates an effect, sets its parameters to any values, reads its texts, and closes it. Returns whether an effect
    /// was created.
    bool tryEffect() const {
        AEffect* const effect = make();
        if (!effect) return false;
        for (int32 i = 0; i < ParameterCount; ++i) {
            const float value = number();
            effect->setParameter(effect, i, value);
            const float kept = effect->getParameter(effect, i);
            require(std::isnan(value) ? std::isnan(kept) : kept == value,
                    "a parameter does not have the value that was set");
            textOf(effect, effGetParamDisplay, i);
        }
        dispatch(effect, effClose, 1);
        return true;
    }
};

/// An effect with a window for its editor.
class Instance {
public:
    /// A steady effect keeps its parameters. Its output must equal the output of a twin, which only processes audio and
    /// is switched off and on.
    Instance(const Host& owner, bool isSteady) : host(owner), twin(isSteady ? host.make() : nullptr) {
        if (!twin) return;
        effect->user = this; // marks a steady effect for the callback
        for (int32 i = 0; i < ParameterCount; ++i) {
            const float value = std::abs(sample());
            for (AEffect* const each : {effect, twin}) each->setParameter(each, i, value);
        }
    }
    /// Closes the effect, whether its editor is open or not.
    ~Instance() {
        dispatch(effect, effClose, 1);
        requireEditors(0);
        host.windows.destroy(window);
        if (twin) dispatch(twin, effClose, 1);
    }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    // A host calls the next three functions at the same time. It calls the first two on one thread each, and the last
    // one on any number of threads.

    /// Processes a block and checks all results. The outputs are separate arrays or the inputs. The effect replaces the
    /// outputs or adds to them.
    void processBlock() {
        constexpr float Sizes[] = {1.0f, 1.0f, 0.0f, 1e-38f, FLT_MAX, INFINITY, NAN};
        const float size = Sizes[below(isModerate ? 4 : 7)];
        const int32 lengths[] = {between(0, 64), between(1, 5) * BlockSize + between(-2, 2), between(0, longestCall)};
        const auto length = static_cast<std::size_t>(oneOf(lengths));
        // The two inputs and the two outputs have any alignment. The effect must not write to the samples around them.
        const std::size_t stride = length + 16 + below(16);
        Samples memory(4 * stride + 16);
        static const Samples sounds = noise(1 << 19)[0];
        const auto sound = sounds.begin() + between(0, 1 << 16);
        std::transform(sound, sound + std::ssize(memory), memory.begin(), [size](float x) { return x * size; });
        float* channels[4];
        for (std::size_t i = 0; i < 4; ++i) channels[i] = &memory[(i + 1) * stride - length];
        float** const outputs = oneIn(2) ? channels : channels + 2;
        const auto stereo = [&](float** from) {
            return Stereo{Samples(from[0], from[0] + length), Samples(from[1], from[1] + length)};
        };

        const Samples before = memory;
        const Stereo input = stereo(channels);
        const Stereo present = stereo(outputs);
        const bool adds = oneIn(3);
        call(adds ? effect->process : effect->processReplacing, effect, channels, outputs, length);
        const Stereo result = stereo(outputs);
        for (std::size_t i = 0; i < 2; ++i) std::ranges::copy(present[i], outputs[i]);
        require(firstDifference(memory, before) == -1, "the effect wrote outside its outputs");
        for (const Samples& channel : result)
            require(!isModerate || std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }),
                    "an output is not finite");
        if (!twin) return;
        Stereo expected = render(twin, input);
        for (std::size_t i = 0; adds && i < 2; ++i)
            std::ranges::transform(present[i], expected[i], expected[i].begin(), std::plus<>());
        require(sameBits(result, expected), "the output of an effect differs from the output of its twin");
    }

    /// Uses editors or sends a command. For the main thread only.
    void command() {
        host.windows.pump();
        const std::size_t action = below(13);
        if (action < 3) return openEditor();
        if (action < 6) return dispatch(effect, effEditIdle, 0);
        if (action < 8) return sendAny();
        if (action == 8) return measure();
        if (action == 9) {
            host.windows.destroy(window); // the editor may be open in this window
            window = host.windows.make();
        }
        dispatch(effect, effEditClose, 0);
        requireEditors(0);
    }

    void useParameters() {
        const int32 index = oneIn(8) ? integer() : between(-1, ParameterCount);
        const float value = oneIn(4) ? number() : sample();
        if (!twin && oneIn(3)) return effect->setParameter(effect, index, value);
        const float found = effect->getParameter(effect, index);
        require(isParameter(index) || found == 0.0f, "an unknown parameter has a value");
        require(!twin || found == twin->getParameter(twin, index), "a parameter lost the value that was set");
        for (const int32 opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay}) {
            const std::string text = textOf(effect, opcode, index);
            require(!twin || text == textOf(twin, opcode, index), "two effects show a value in different ways");
        }
    }

    // A host calls the next two functions while it makes no other call.

    /// Switches the effect off and on, which must erase all earlier audio.
    void switchOff() {
        const Stereo silence = {Samples(BlockSize), Samples(BlockSize)};
        for (AEffect* const each : {effect, twin}) {
            if (!each) continue;
            dispatch(each, effMainsChanged, 0, integer(), 0);
            dispatch(each, effMainsChanged, 0, 0, integer() | 1);
            require(sameBits(render(each, noise(BlockSize)), silence),
                    "the effect kept audio after it was switched off");
        }
        isModerate = oneIn(2);
    }

    /// Sets valid and invalid block sizes. In 32-bit processes, one of the sizes exceeds the memory.
    void changeBlockSize() {
        constexpr int32 Sizes[] = {INT32_MIN, -1, 0, 1, 7, 2048, 65536, 1 << 22, sizeof(void*) == 4 ? INT32_MAX : 1};
        dispatch(effect, effSetBlockSize, 0, integer(), oneOf(Sizes));
        dispatch(effect, effSetBlockSizeAndSampleRate, 1, 0, oneOf(Sizes), nullptr, number());
    }

private:
    static void call(AEffectProcessProc process, AEffect* effect, float** inputs, float** outputs, std::size_t length) {
        process(effect, inputs, outputs, static_cast<int32>(length));
        ++counts.blocks;
        counts.samples += length;
    }

    /// Returns the effect's output for `audio`, which is passed in few or in many calls.
    static Stereo render(AEffect* effect, Stereo audio) {
        const std::size_t longest = oneIn(2) ? 70000 : 70;
        for (std::size_t done = 0, count = 0; done < audio[0].size(); done += count) {
            count = std::min(audio[0].size() - done, below(longest) + 1);
            float* channels[] = {&audio[0][done], &audio[1][done]};
            call(effect->processReplacing, effect, channels, channels, count);
        }
        return audio;
    }

    void requireEditors(int count) const {
        require(host.windows.children(window) == count, "a host's window has the wrong number of editors");
    }

    void openEditor() {
        const bool isOrphan = oneIn(8);
        dispatch(effect, effEditOpen, 1, integer(), integer(), isOrphan ? nullptr : window);
        requireEditors(isOrphan ? 0 : 1);
        counts.editors += !isOrphan;
    }

    void measure() {
        ERect* rect = nullptr;
        dispatch(effect, effEditGetRect, 1, 0, 0, &rect);
        require(rect && rect->bottom > 100 && rect->right > 100, "an editor has no size");
    }

    /// Sends a command with any arguments. The pointer is invalid, and these commands must not use it. Commands that
    /// close the effect, concern its window or its audio, or fill a buffer are excluded.
    void sendAny() {
        const int32 opcode = oneIn(8) ? integer() : between(-2, 70);
        if (opcode == effClose || (opcode >= effSetProgramName && opcode <= effGetParamName) ||
            (opcode >= effSetBlockSize && opcode <= effEditClose) || opcode == effSetBlockSizeAndSampleRate)
            return;
        const int32 value = integer();
        void* const nowhere = reinterpret_cast<void*>(below(3));
        dispatch(effect, opcode, answers[opcode], integer(), value, nowhere, number());
        if (opcode == effSetProgram && value < 1) answers[effGetProgram] = value;
    }

    const Host& host;
    AEffect* const effect = host.make();
    AEffect* const twin;
    void* window = host.windows.make();
    /// True if the effect has received only audio of moderate level since it was switched off. The output is then
    /// finite.
    bool isModerate = true;
    /// The results of the opcodes that do not return 0.
    std::map<int32, intptr> answers = {
        {effIdentify, EffectIdentity}, {effCanBeAutomated, 1}, {effGetNumProgramCategories, 1},
        {effConnectInput, 1},          {effConnectOutput, 1},  {effKeysRequired, 1},
        {effGetVstVersion, 2}};
};

} // namespace eq
