#include "tests/stress/Host.h"

#include <algorithm>
#include <limits>

// The main thread, which has the editors and sends all commands.

namespace {

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

} // namespace

void stepAsMain(Host& host, Choices& choices) {
    Instance& instance = choices.of(host.instances);
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
