#include "tests/stress/Guarded.h"
#include "tests/stress/Host.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

// What the threads of a host do in a step.

namespace {

Instance& anyInstance(Host& host, Choices& choices) {
    return choices.of(host.instances);
}

int32 anyIndex(Choices& choices) {
    return choices.oneIn(8) ? choices.integer() : choices.between(-1, ParameterCount);
}

// ---- audio

constexpr int32 LongestBlock = 100000;

int32 blockLength(Choices& choices) {
    switch (choices.below(4)) {
    case 0:
        return choices.between(0, 64);
    case 1:
        return choices.between(1, 5) * BlockSize + choices.between(-2, 2);
    case 2:
        return choices.between(0, 5000);
    default:
        return choices.between(0, LongestBlock);
    }
}

enum class Content { Silence, Noise, Denormals, Huge, Broken };

Content blockContent(Choices& choices) {
    constexpr Content Rare[] = {Content::Silence, Content::Denormals, Content::Huge, Content::Broken};
    return choices.oneIn(4) ? choices.of(Rare) : Content::Noise;
}

float sampleOf(Content content, Choices& choices) {
    switch (content) {
    case Content::Silence:
        return 0.0f;
    case Content::Denormals:
        return choices.sample() * 1e-38f;
    case Content::Huge:
        return choices.sample() * std::numeric_limits<float>::max();
    case Content::Broken:
        return choices.oneIn(50) ? choices.number() : choices.sample();
    case Content::Noise:
        break;
    }
    return choices.sample();
}

using Channels = std::array<GuardedSamples, 2>;
using Pointers = std::array<float*, 2>;

Channels makeChannels(int32 length, Choices& choices, Content content) {
    const auto size = static_cast<std::size_t>(length);
    Channels channels{GuardedSamples(size, choices.below(16)), GuardedSamples(size, choices.below(16))};
    for (GuardedSamples& channel : channels)
        std::generate_n(channel.data(), size, [&] { return sampleOf(content, choices); });
    return channels;
}

Samples copyOf(GuardedSamples& channel) {
    return {channel.data(), channel.data() + channel.size()};
}

void call(AEffectProcessProc process, AEffect* effect, Pointers inputs, Pointers outputs, int32 length) {
    const Pointers inputsBefore = inputs;
    const Pointers outputsBefore = outputs;
    process(effect, inputs.data(), outputs.data(), length);
    require(inputs == inputsBefore && outputs == outputsBefore, "the arrays of channels were written to");
    ++counts.blocks;
    counts.samples += static_cast<std::uint64_t>(length);
}

/// The twin's output, in calls of other lengths.
Stereo renderTwin(AEffect* twin, Stereo input, Choices& choices) {
    Stereo output = silence(input[0].size());
    const auto length = static_cast<int32>(input[0].size());
    for (int32 done = 0; done < length;) {
        const int32 count = std::min(length - done, std::max(1, blockLength(choices)));
        call(twin->processReplacing, twin, {input[0].data() + done, input[1].data() + done},
             {output[0].data() + done, output[1].data() + done}, count);
        done += count;
    }
    return output;
}

/// Runs a block through an instance, separate or in place, replacing or adding, and looks at all that came of it.
void processBlock(Instance& instance, Choices& choices) {
    const int32 length = blockLength(choices);
    const Content content = blockContent(choices);
    const bool adds = choices.oneIn(3);
    const bool isInPlace = !adds && choices.oneIn(2);
    const bool isMono = !isInPlace && choices.oneIn(4);
    Channels input = makeChannels(length, choices, content);
    Channels present = makeChannels(length, choices, adds ? Content::Noise : Content::Silence);
    Channels& output = isInPlace ? input : present;
    GuardedSamples& right = isMono ? input[0] : input[1];
    const Stereo given = {copyOf(input[0]), copyOf(right)};
    const Stereo sum = {copyOf(present[0]), copyOf(present[1])};
    if (content == Content::Huge || content == Content::Broken) instance.isModerate = false;

    AEffect* const effect = instance.effect;
    call(adds ? effect->process : effect->processReplacing, effect, {input[0].data(), right.data()},
         {output[0].data(), output[1].data()}, length);

    for (const Channels& channels : {std::cref(input), std::cref(present)})
        for (const GuardedSamples& channel : channels) channel.check();
    if (!isInPlace) require(sameBits({copyOf(input[0]), copyOf(right)}, given), "an input was written to");
    const Stereo result = {copyOf(output[0]), copyOf(output[1])};
    if (instance.isModerate)
        for (const Samples& channel : result)
            require(std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }), "an output is not finite");
    if (!instance.isSteady()) return;
    Stereo expected = renderTwin(instance.twin, given, choices);
    if (adds)
        for (std::size_t c = 0; c < 2; ++c)
            std::ranges::transform(sum[c], expected[c], expected[c].begin(), std::plus<>());
    require(sameBits(result, expected), "an instance does not sound like its quiet twin");
    ++counts.compared;
}

/// Switches off and on, which must leave nothing of the audio before.
void switchOff(Instance& instance, Choices& choices) {
    const intptr on = choices.oneIn(2) ? 1 : choices.integer() | 1;
    for (AEffect* const effect : {instance.effect, instance.twin}) {
        if (!effect) continue;
        require(dispatch(effect, effMainsChanged, choices.integer(), 0) == 0, "effMainsChanged did not give 0");
        dispatch(effect, effMainsChanged, 0, on);
        Stereo audio = noise(BlockSize);
        const Pointers channels = {audio[0].data(), audio[1].data()};
        call(effect->processReplacing, effect, channels, channels, BlockSize);
        require(sameBits(audio, silence(BlockSize)), "audio outlived the switching off");
    }
    instance.isModerate = true;
}

// ---- the main thread

bool changesAudioMemory(int32 opcode, intptr value) {
    return (opcode == effMainsChanged && value == 0) || opcode == effSetBlockSize ||
           opcode == effSetBlockSizeAndSampleRate;
}

intptr expectedAnswer(int32 opcode, int32 program) {
    switch (opcode) {
    case effIdentify:
        return EffectIdentity;
    case effGetProgram:
        return program;
    case effGetVstVersion:
        return 2;
    case effCanBeAutomated:
    case effConnectInput:
    case effConnectOutput:
    case effGetNumProgramCategories:
    case effSetBlockSizeAndSampleRate:
    case effKeysRequired:
        return 1;
    default:
        return 0;
    }
}

/// Sizes that the machine has the memory for, and those that none has.
int32 blockSize(Choices& choices) {
    constexpr int32 Sizes[] = {std::numeric_limits<int32>::min(), -1, 0, 1, 7, 2048, 65536, 1 << 22};
    if (sizeof(void*) == 4 && choices.oneIn(8)) return std::numeric_limits<int32>::max();
    return choices.of(Sizes);
}

/// Any opcode but those that end the instance, have to do with its window or fill a buffer.
int32 anyOpcode(Choices& choices) {
    constexpr int32 Apart[] = {effClose,           effSetProgramName, effGetProgramName, effGetParamLabel,
                               effGetParamDisplay, effGetParamName,   effEditGetRect,    effEditOpen,
                               effEditClose,       effEditIdle};
    for (;;) {
        const int32 opcode = choices.oneIn(8) ? choices.integer() : choices.between(-2, 70);
        if (std::ranges::find(Apart, opcode) == std::end(Apart)) return opcode;
    }
}

/// A command with arguments of any kind; its pointer leads nowhere, and no such command follows it.
void command(Instance& instance, Choices& choices) {
    const int32 opcode = anyOpcode(choices);
    const intptr value = opcode == effSetBlockSize ? blockSize(choices) : choices.integer();
    const int32 index = choices.integer();
    void* const nowhere = reinterpret_cast<void*>(static_cast<std::uintptr_t>(choices.below(3)));
    const float opt = choices.number();
    if (changesAudioMemory(opcode, value)) {
        const std::unique_lock exclusive(instance.use);
        if (opcode == effMainsChanged) return switchOff(instance, choices);
        require(dispatch(instance.effect, opcode, index, value, nowhere, opt) == expectedAnswer(opcode, 0),
                "a change of the block size has a wrong answer");
        return;
    }
    const std::shared_lock shared(instance.use);
    const intptr answer = dispatch(instance.effect, opcode, index, value, nowhere, opt);
    if (opcode == effSetProgram && value < 1) instance.program = static_cast<int32>(value);
    if (answer != expectedAnswer(opcode, instance.program))
        violation("opcode " + std::to_string(opcode) + " was answered with " + std::to_string(answer));
}

/// The buffers of texts that only the main thread asks for.
void nameProgram(Instance& instance, Choices& choices) {
    const std::shared_lock shared(instance.use);
    require(textOf(instance.effect, effGetProgramName, choices.integer()) == "Parametric Equalizer",
            "the program has another name");
    require(textOf(instance.effect, effSetProgramName, 0).empty(), "a program's name did not come back empty");
}

void requireChildren(const Host& host, const Instance& instance, int count) {
    if (instance.window)
        require(host.windows.children(instance.window) == count, "a host's window has not the editors that it should");
}

void openEditor(Host& host, Instance& instance, Choices& choices) {
    const std::shared_lock shared(instance.use);
    const bool isOrphan = choices.oneIn(8);
    require(dispatch(instance.effect, effEditOpen, choices.integer(), choices.integer(),
                     isOrphan ? nullptr : instance.window) == 1,
            "effEditOpen did not give 1");
    instance.isEditorOpen = instance.window && !isOrphan;
    requireChildren(host, instance, instance.isEditorOpen);
    counts.editors += instance.isEditorOpen;
}

void closeEditor(Host& host, Instance& instance) {
    const std::shared_lock shared(instance.use);
    require(dispatch(instance.effect, effEditClose) == 0, "effEditClose did not give 0");
    instance.isEditorOpen = false;
    requireChildren(host, instance, 0);
}

void idle(Host& host, Instance& instance) {
    const std::shared_lock shared(instance.use);
    require(dispatch(instance.effect, effEditIdle) == 0, "effEditIdle did not give 0");
    // The host may have closed the editor when it was told of a change.
    if (!instance.isEditorOpen || instance.isSteady()) return;
    instance.isEditorOpen = host.windows.children(instance.window) != 0;
}

void measure(Instance& instance) {
    const std::shared_lock shared(instance.use);
    ERect* rect = nullptr;
    require(dispatch(instance.effect, effEditGetRect, 0, 0, &rect) == 1, "effEditGetRect did not give 1");
    require(rect && rect->top == 0 && rect->left == 0 && rect->bottom > 100 && rect->right > 100,
            "an editor has no size");
}

/// Takes the window from under the editor.
void destroyWindow(Host& host, Instance& instance) {
    const std::shared_lock shared(instance.use);
    if (!instance.window) return;
    host.windows.destroy(instance.window);
    instance.window = host.windows.make();
    instance.isEditorOpen = false;
    requireChildren(host, instance, 0);
}

void makeTwin(Host& host, Instance& instance, Choices& choices) {
    instance.twin = host.make(choices);
    steadyEffect = instance.effect;
    for (int32 i = 0; i < ParameterCount; ++i) {
        const float value = static_cast<float>(choices.below(1001)) * 0.001f;
        instance.parameters[static_cast<std::size_t>(i)] = value;
        setParameter(instance.effect, i, value);
        setParameter(instance.twin, i, value);
    }
}

void begin(Host& host, Instance& instance, Choices& choices) {
    instance.effect = host.make(choices);
    if (host.windows) instance.window = host.windows.make();
    if (&instance < &host.instances[Host::SteadyCount]) makeTwin(host, instance, choices);
}

/// Ends an instance, be its editor open or not.
void end(Host& host, Instance& instance) {
    close(instance.effect);
    requireChildren(host, instance, 0);
    if (instance.window) host.windows.destroy(instance.window);
    if (instance.twin) {
        steadyEffect = nullptr;
        close(instance.twin);
    }
    instance.effect = instance.twin = nullptr;
    instance.window = nullptr;
    instance.isEditorOpen = false;
    instance.isModerate = true;
    instance.program = 0;
}

void replace(Host& host, Instance& instance, Choices& choices) {
    const std::unique_lock exclusive(instance.use);
    end(host, instance);
    begin(host, instance, choices);
}

// ---- threads that set and read

/// An instance of this thread's own, from its beginning to its end.
void useOne(Host& host, Choices& choices) {
    AEffect* const effect = host.make(choices);
    for (int32 i = 0; i < ParameterCount; ++i) {
        const float value = choices.number();
        setParameter(effect, i, value);
        const float kept = effect->getParameter(effect, i);
        require(kept == value || (std::isnan(kept) && std::isnan(value)), "a parameter is not what was set");
        textOf(effect, effGetParamDisplay, i);
    }
    close(effect);
}

void askForTexts(Instance& instance, int32 index) {
    AEffect* const effect = instance.effect;
    textOf(effect, effGetParamName, index);
    textOf(effect, effGetParamLabel, index);
    const std::string first = textOf(effect, effGetParamDisplay, index);
    if (!instance.isSteady()) return;
    require(textOf(effect, effGetParamDisplay, index) == first, "a text changes by itself");
    require(textOf(instance.twin, effGetParamDisplay, index) == first, "two instances show a value in different ways");
}

} // namespace

void stepAsAudio(Host& host, Choices& choices) {
    Instance& instance = anyInstance(host, choices);
    const bool wantsSwitchOff = choices.oneIn(3);
    {
        const std::shared_lock shared(instance.use);
        if (!instance.effect) return;
        const std::lock_guard oneAtATime(instance.audio);
        processBlock(instance, choices);
        if (instance.isModerate || !wantsSwitchOff) return;
    }
    const std::unique_lock exclusive(instance.use);
    if (instance.effect) switchOff(instance, choices);
}

void stepAsControl(Host& host, Choices& choices) {
    if (choices.oneIn(40)) return useOne(host, choices);
    Instance& instance = anyInstance(host, choices);
    const std::shared_lock shared(instance.use);
    if (!instance.effect) return;
    for (std::size_t i = choices.below(50); i > 0; --i) {
        const int32 index = anyIndex(choices);
        switch (choices.below(3)) {
        case 0:
            if (!instance.isSteady()) setParameter(instance.effect, index, parameterValue(choices));
            break;
        case 1:
            readParameter(instance, index);
            break;
        default:
            askForTexts(instance, index);
            break;
        }
    }
}

void stepAsMain(Host& host, Choices& choices) {
    Instance& instance = anyInstance(host, choices);
    if (host.windows) host.windows.pump();
    switch (choices.below(16)) {
    case 0:
    case 1:
    case 2:
        return openEditor(host, instance, choices);
    case 3:
    case 4:
        return closeEditor(host, instance);
    case 5:
    case 6:
    case 7:
    case 8:
        return idle(host, instance);
    case 9:
        return measure(instance);
    case 10:
        return nameProgram(instance, choices);
    case 11:
        return choices.oneIn(3) ? destroyWindow(host, instance) : replace(host, instance, choices);
    default:
        return command(instance, choices);
    }
}

void fill(Host& host, Choices& choices) {
    for (Instance& instance : host.instances) {
        const std::unique_lock exclusive(instance.use);
        begin(host, instance, choices);
    }
}

void clear(Host& host) {
    for (Instance& instance : host.instances) end(host, instance);
}
