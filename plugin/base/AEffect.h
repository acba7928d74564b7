#pragma once

// The VST 2 interface of a host and an effect: the record, the host callback and the numbers. A host needs no other
// header, and this header includes no other header of the project.
//
// The record has 144 bytes in 32-bit processes and 192 bytes in 64-bit processes. In 64-bit processes its pointers and
// its two reserved words are wider, and so are `value` and the results of the dispatcher and the host callback. Hosts
// read the record at fixed offsets, which are asserted below for both widths.

#include <cstddef>
#include <cstdint>

using int32 = std::int32_t;
using intptr = std::intptr_t;

struct AEffect;

/// The function of the host that an effect calls. `effect` is null in the only call before the effect exists.
using audioMasterCallback = intptr (*)(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt);

using AEffectDispatcherProc = intptr (*)(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr,
                                         float opt);
/// Inputs and outputs have one pointer per channel, each to `sampleFrames` floats.
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, int32 index, float value);
using AEffectGetParameterProc = float (*)(AEffect* effect, int32 index);

/// The library's only export, named "main". Returns a new effect's record, or null on failure.
using EffectMainProc = AEffect* (*)(audioMasterCallback audioMaster);

struct AEffect {
    int32 magic;                          ///< EffectMagic
    AEffectDispatcherProc dispatcher;     ///< commands by opcode
    AEffectProcessProc process;           ///< adds its result to the outputs
    AEffectSetParameterProc setParameter; ///< value 0.0 to 1.0
    AEffectGetParameterProc getParameter;
    int32 numPrograms;
    int32 numParams;
    int32 numInputs;    ///< channels
    int32 numOutputs;   ///< channels
    int32 flags;        ///< effFlags...
    intptr resvd1;      ///< 0
    intptr resvd2;      ///< 0
    int32 initialDelay; ///< samples from input to output
    int32 realQualities;
    int32 offQualities;
    float ioRatio;
    void* object;                        ///< the C++ object that implements the effect
    void* user;                          ///< unused; free for the effect
    int32 uniqueID;                      ///< the effect's id, four characters as a number
    int32 version;                       ///< the effect's version
    AEffectProcessProc processReplacing; ///< overwrites the outputs
    char future[60];                     ///< zeros
};

/// The value of `magic`: "PtsV" in memory order.
inline constexpr int32 EffectMagic = 0x56737450;
/// The result of `effIdentify`.
inline constexpr int32 EffectIdentity = 0x4E764566;

/// Asserts the offset of a field in 32-bit and in 64-bit processes.
#define EQ_ASSERT_OFFSET(field, offset32, offset64)                                                                    \
    static_assert(offsetof(AEffect, field) == (sizeof(void*) == 4 ? (offset32) : (offset64)))
static_assert(offsetof(AEffect, magic) == 0);
EQ_ASSERT_OFFSET(dispatcher, 4, 8);
EQ_ASSERT_OFFSET(process, 8, 16);
EQ_ASSERT_OFFSET(setParameter, 12, 24);
EQ_ASSERT_OFFSET(getParameter, 16, 32);
EQ_ASSERT_OFFSET(numPrograms, 20, 40);
EQ_ASSERT_OFFSET(numParams, 24, 44);
EQ_ASSERT_OFFSET(numInputs, 28, 48);
EQ_ASSERT_OFFSET(numOutputs, 32, 52);
EQ_ASSERT_OFFSET(flags, 36, 56);
EQ_ASSERT_OFFSET(resvd1, 40, 64);
EQ_ASSERT_OFFSET(resvd2, 44, 72);
EQ_ASSERT_OFFSET(initialDelay, 48, 80);
EQ_ASSERT_OFFSET(realQualities, 52, 84);
EQ_ASSERT_OFFSET(offQualities, 56, 88);
EQ_ASSERT_OFFSET(ioRatio, 60, 92);
EQ_ASSERT_OFFSET(object, 64, 96);
EQ_ASSERT_OFFSET(user, 68, 104);
EQ_ASSERT_OFFSET(uniqueID, 72, 112);
EQ_ASSERT_OFFSET(version, 76, 116);
EQ_ASSERT_OFFSET(processReplacing, 80, 120);
EQ_ASSERT_OFFSET(future, 84, 128);
static_assert(sizeof(AEffect) == (sizeof(void*) == 4 ? 144 : 192));
#undef EQ_ASSERT_OFFSET

/// The bits of AEffect::flags.
enum EffectFlags : int32 {
    effFlagsHasEditor = 1,
    effFlagsHasClip = 2,
    effFlagsHasVu = 4,
    effFlagsCanMono = 8,
    effFlagsCanReplacing = 16,
    effFlagsProgramChunks = 32,
    effFlagsIsSynth = 256,
    effFlagsNoSoundInStop = 512,
    effFlagsExtIsAsync = 1024,
    effFlagsExtHasBuffer = 2048,
};

/// The commands of a host to an effect: the opcodes of AEffect::dispatcher.
enum EffectOpcode : int32 {
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,
    effGetProgram = 3,
    effSetProgramName = 4,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effGetVu = 9,
    effSetSampleRate = 10,
    effSetBlockSize = 11,
    effMainsChanged = 12,
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditDraw = 16,
    effEditMouse = 17,
    effEditKey = 18,
    effEditIdle = 19,
    effEditTop = 20,
    effEditSleep = 21,
    effIdentify = 22,
    effGetChunk = 23,
    effSetChunk = 24,
    effProcessEvents = 25,
    effCanBeAutomated = 26,
    effString2Parameter = 27,
    effGetNumProgramCategories = 28,
    effGetProgramNameIndexed = 29,
    effCopyProgram = 30,
    effConnectInput = 31,
    effConnectOutput = 32,
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effGetCurrentPosition = 36,
    effGetDestinationBuffer = 37,
    effOfflineNotify = 38,
    effOfflinePrepare = 39,
    effOfflineRun = 40,
    effProcessVarIo = 41,
    effSetSpeakerArrangement = 42,
    effSetBlockSizeAndSampleRate = 43,
    effSetBypass = 44,
    effGetEffectName = 45,
    effGetErrorText = 46,
    effGetVendorString = 47,
    effGetProductString = 48,
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51,
    effGetTailSize = 52,
    effIdle = 53,
    effGetIcon = 54,
    effSetViewPosition = 55,
    effGetParameterProperties = 56,
    effKeysRequired = 57,
    effGetVstVersion = 58,
};

/// The requests of an effect to its host: the opcodes of audioMasterCallback.
enum HostOpcode : int32 {
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterProcessEvents = 8,
    audioMasterTempoAt = 10,
    audioMasterGetNumAutomatableParameters = 11,
    audioMasterGetParameterQuantization = 12,
    audioMasterIOChanged = 13,
    audioMasterNeedIdle = 14,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetInputLatency = 18,
    audioMasterGetOutputLatency = 19,
    audioMasterGetPreviousPlug = 20,
    audioMasterGetNextPlug = 21,
    audioMasterWillReplaceOrAccumulate = 22,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterOfflineStart = 25,
    audioMasterOfflineRead = 26,
    audioMasterOfflineWrite = 27,
    audioMasterOfflineGetCurrentPass = 28,
    audioMasterOfflineGetCurrentMetaPass = 29,
    audioMasterSetOutputSampleRate = 30,
    audioMasterGetSpeakerArrangement = 31,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterVendorSpecific = 35,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterOpenWindow = 39,
    audioMasterCloseWindow = 40,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
};

/// The size of an editor in pixels.
struct ERect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};
