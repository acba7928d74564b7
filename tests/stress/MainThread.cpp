#include "tests/stress/Host.h"

#include <algorithm>

// The main thread, which has the editors and sends all commands.

namespace {

/// A command with arguments of any kind; its pointer leads nowhere, and no such command follows it. Those that end the
/// instance, have to do with its window or its audio, or fill a buffer are apart.
void sendAny(Instance& instance, Choices& choices) {
    constexpr int32 Apart[] = {effClose,           effSetProgramName, effGetProgramName, effGetParamLabel,
                               effGetParamDisplay, effGetParamName,   effSetBlockSize,   effSetBlockSizeAndSampleRate,
                               effMainsChanged,    effEditGetRect,    effEditOpen,       effEditClose,
                               effEditIdle};
    constexpr int32 Answered[] = {effCanBeAutomated, effConnectInput, effConnectOutput, effGetNumProgramCategories,
                                  effKeysRequired};
    const int32 opcode = choices.oneIn(8) ? choices.integer() : choices.between(-2, 70);
    if (std::ranges::find(Apart, opcode) != std::end(Apart)) return;
    const intptr value = choices.integer();
    const intptr answer = opcode == effIdentify        ? EffectIdentity
                          : opcode == effGetProgram    ? instance.program
                          : opcode == effGetVstVersion ? 2
                                                       : std::ranges::count(Answered, opcode);
    void* const nowhere = reinterpret_cast<void*>(static_cast<std::uintptr_t>(choices.below(3)));
    dispatch(instance.effect, opcode, answer, choices.integer(), value, nowhere, choices.number());
    if (opcode == effSetProgram && value < 1) instance.program = static_cast<int32>(value);
}

/// Sizes that the machine has the memory for, and those that none has.
void changeBlockSize(AEffect* effect, Choices& choices) {
    constexpr int32 Sizes[] = {INT32_MIN, -1, 0, 1, 7, 2048, 65536, 1 << 22, sizeof(void*) == 4 ? INT32_MAX : 1};
    dispatch(effect, effSetBlockSize, 0, choices.integer(), choices.of(Sizes));
    dispatch(effect, effSetBlockSizeAndSampleRate, 1, 0, choices.of(Sizes), nullptr, choices.number());
}

void requireEditors(const Host& host, const Instance& instance, int count) {
    require(host.windows->children(instance.window) == count, "a host's window has not the editors that it should");
}

void openEditor(const Host& host, const Instance& instance, Choices& choices) {
    const bool isOrphan = choices.oneIn(8);
    dispatch(instance.effect, effEditOpen, 1, choices.integer(), choices.integer(),
             isOrphan ? nullptr : instance.window);
    requireEditors(host, instance, isOrphan ? 0 : 1);
    counts.editors += !isOrphan;
}

void closeEditor(const Host& host, const Instance& instance) {
    dispatch(instance.effect, effEditClose, 0);
    requireEditors(host, instance, 0);
}

void measure(AEffect* effect) {
    ERect* rect = nullptr;
    dispatch(effect, effEditGetRect, 1, 0, 0, &rect);
    require(rect && rect->bottom > 100 && rect->right > 100, "an editor has no size");
    require(textOf(effect, effGetProgramName, 0) == "Parametric Equalizer", "the program has another name");
}

/// Takes the window from under the editor.
void destroyWindow(const Host& host, Instance& instance) {
    host.windows->destroy(instance.window);
    instance.window = host.windows->make();
}

} // namespace

void begin(Host& host, Instance& instance, Choices& choices) {
    instance.effect = host.make();
    instance.window = host.windows->make();
    instance.isModerate = true;
    instance.program = 0;
    if (&instance != host.instances.data()) return;
    instance.twin = host.make();
    steadyEffect = instance.effect;
    for (int32 i = 0; i < ParameterCount; ++i) {
        const float value = static_cast<float>(choices.below(1001)) * 0.001f;
        instance.parameters[static_cast<std::size_t>(i)] = value;
        for (AEffect* const effect : {instance.effect, instance.twin}) effect->setParameter(effect, i, value);
    }
}

void end(Host& host, Instance& instance) {
    dispatch(instance.effect, effClose, 1);
    requireEditors(host, instance, 0);
    host.windows->destroy(instance.window);
    if (!instance.twin) return;
    steadyEffect = nullptr;
    dispatch(instance.twin, effClose, 1);
}

void stepAsMain(Host& host, Choices& choices) {
    Instance& instance = choices.of(host.instances);
    host.windows->pump();
    const std::size_t action = choices.below(16);
    if (action < 3) {
        const auto use = instance.allUsers();
        if (action == 0) return changeBlockSize(instance.effect, choices);
        if (action == 1) return switchOff(instance, choices);
        end(host, instance);
        return begin(host, instance, choices);
    }
    const std::lock_guard use(instance.users[HostMain]);
    if (action < 6) return openEditor(host, instance, choices);
    if (action < 8) return closeEditor(host, instance);
    if (action < 11) return dispatch(instance.effect, effEditIdle, 0);
    if (action == 11) return measure(instance.effect);
    if (action == 12) return destroyWindow(host, instance);
    sendAny(instance, choices);
}
