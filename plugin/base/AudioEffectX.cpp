#include "plugin/base/AudioEffectX.h"

namespace eq {

namespace {

// Some requests pass or return a pointer as a number.
intptr asValue(void* pointer) {
    return reinterpret_cast<intptr>(pointer);
}
void* asPointer(intptr value) {
    return reinterpret_cast<void*>(value); // NOLINT(performance-no-int-to-ptr): part of the interface
}

} // namespace

intptr AudioEffectX::dispatcher(int32 opCode, int32 index, intptr value, void* ptr, float opt) {
    char* const text = static_cast<char*>(ptr);
    const int32 number = static_cast<int32>(value);
    // clang-format off
    switch (opCode) {
    case effProcessEvents:             return processEvents(ptr);
    case effCanBeAutomated:            return canParameterBeAutomated(index);
    case effString2Parameter:          return string2parameter(index, text);
    case effGetNumProgramCategories:   return getNumCategories();
    case effGetProgramNameIndexed:     return getProgramNameIndexed(number, index, text);
    case effCopyProgram:               return copyProgram(index);
    case effConnectInput:              inputConnected(index, value != 0); return 1;
    case effConnectOutput:             outputConnected(index, value != 0); return 1;
    case effGetInputProperties:        return getInputProperties(index, ptr);
    case effGetOutputProperties:       return getOutputProperties(index, ptr);
    case effGetPlugCategory:           return getPlugCategory();
    case effGetCurrentPosition:        return reportCurrentPosition();
    case effGetDestinationBuffer:      return reportDestinationBuffer();
    case effOfflineNotify:             return offlineNotify(ptr, number, index != 0);
    case effOfflinePrepare:            return offlinePrepare(ptr, number);
    case effOfflineRun:                return offlineRun(ptr, number);
    case effProcessVarIo:              return processVariableIo(ptr);
    case effSetSpeakerArrangement:     return setSpeakerArrangement(asPointer(value), ptr);
    case effSetBlockSizeAndSampleRate: setBlockSizeAndSampleRate(number, opt); return 1;
    case effSetBypass:                 return setBypass(value != 0);
    case effGetEffectName:             return getEffectName(text);
    case effGetErrorText:              return getErrorText(text);
    case effGetVendorString:           return getVendorString(text);
    case effGetProductString:          return getProductString(text);
    case effGetVendorVersion:          return getVendorVersion();
    case effVendorSpecific:            return vendorSpecific(index, number, ptr, opt);
    case effCanDo:                     return canDo(text);
    case effGetTailSize:               return getGetTailSize();
    case effIdle:                      return fxIdle();
    case effGetIcon:                   return getIcon();
    case effSetViewPosition:           return setViewPosition(index, number);
    case effGetParameterProperties:    return getParameterProperties(index, ptr);
    case effKeysRequired:              return !keysRequired();
    case effGetVstVersion:             return getVstVersion();
    default:                           return AudioEffect::dispatcher(opCode, index, value, ptr, opt);
    }
    // clang-format on
}

bool AudioEffectX::sendVstEventsToHost(void* events) {
    return callHost(audioMasterProcessEvents, 0, 0, events) == 1;
}

void AudioEffectX::wantEvents(int32 filter) {
    callHost(audioMasterWantMidi, 0, filter);
}

void* AudioEffectX::getTimeInfo(int32 filter) {
    return asPointer(callHost(audioMasterGetTime, 0, filter));
}

int32 AudioEffectX::tempoAt(int32 pos) {
    return static_cast<int32>(callHost(audioMasterTempoAt, 0, pos));
}

int32 AudioEffectX::getNumAutomatableParameters() {
    return static_cast<int32>(callHost(audioMasterGetNumAutomatableParameters));
}

int32 AudioEffectX::getParameterQuantization() {
    return static_cast<int32>(callHost(audioMasterGetParameterQuantization));
}

bool AudioEffectX::ioChanged() {
    return callHost(audioMasterIOChanged) != 0;
}

bool AudioEffectX::needIdle() {
    return callHost(audioMasterNeedIdle) != 0;
}

bool AudioEffectX::sizeWindow(int32 width, int32 height) {
    return callHost(audioMasterSizeWindow, width, height) != 0;
}

float AudioEffectX::updateSampleRate() {
    callHost(audioMasterGetSampleRate);
    return sampleRate;
}

int32 AudioEffectX::updateBlockSize() {
    callHost(audioMasterGetBlockSize);
    return blockSize;
}

int32 AudioEffectX::getInputLatency() {
    return static_cast<int32>(callHost(audioMasterGetInputLatency));
}

int32 AudioEffectX::getOutputLatency() {
    return static_cast<int32>(callHost(audioMasterGetOutputLatency));
}

void* AudioEffectX::getPreviousPlug(int32 /*input*/) {
    return asPointer(callHost(audioMasterGetPreviousPlug));
}

void* AudioEffectX::getNextPlug(int32 /*output*/) {
    return asPointer(callHost(audioMasterGetNextPlug));
}

int32 AudioEffectX::willProcessReplacing() {
    return static_cast<int32>(callHost(audioMasterWillReplaceOrAccumulate));
}

int32 AudioEffectX::getCurrentProcessLevel() {
    return static_cast<int32>(callHost(audioMasterGetCurrentProcessLevel));
}

int32 AudioEffectX::getAutomationState() {
    return static_cast<int32>(callHost(audioMasterGetAutomationState));
}

bool AudioEffectX::offlineRead(void* offline, int32 option, bool readSource) {
    return callHost(audioMasterOfflineRead, readSource, option, offline) != 0;
}

bool AudioEffectX::offlineWrite(void* offline, int32 option) {
    return callHost(audioMasterOfflineWrite, 0, option, offline) != 0;
}

bool AudioEffectX::offlineStart(void* audioFiles, int32 numAudioFiles, int32 numNewAudioFiles) {
    return callHost(audioMasterOfflineStart, numNewAudioFiles, numAudioFiles, audioFiles) != 0;
}

bool AudioEffectX::offlineGetCurrentPass() {
    return callHost(audioMasterOfflineGetCurrentPass) != 0;
}

bool AudioEffectX::offlineGetCurrentMetaPass() {
    return callHost(audioMasterOfflineGetCurrentMetaPass) != 0;
}

void AudioEffectX::setOutputSamplerate(float samplerate) {
    callHost(audioMasterSetOutputSampleRate, 0, 0, nullptr, samplerate);
}

bool AudioEffectX::getSpeakerArrangement(void* pluginInput, void* pluginOutput) {
    return callHost(audioMasterGetSpeakerArrangement, 0, asValue(pluginInput), pluginOutput) != 0;
}

bool AudioEffectX::getHostVendorString(char* text) {
    return callHost(audioMasterGetVendorString, 0, 0, text) != 0;
}

bool AudioEffectX::getHostProductString(char* text) {
    return callHost(audioMasterGetProductString, 0, 0, text) != 0;
}

int32 AudioEffectX::getHostVendorVersion() {
    return static_cast<int32>(callHost(audioMasterGetVendorVersion));
}

int32 AudioEffectX::hostVendorSpecific(int32 arg1, int32 arg2, void* ptrArg, float floatArg) {
    return static_cast<int32>(callHost(audioMasterVendorSpecific, arg1, arg2, ptrArg, floatArg));
}

bool AudioEffectX::canHostDo(char* text) {
    return callHost(audioMasterCanDo, 0, 0, text) != 0;
}

int32 AudioEffectX::getHostLanguage() {
    return static_cast<int32>(callHost(audioMasterGetLanguage));
}

void* AudioEffectX::openWindow(void* window) {
    return asPointer(callHost(audioMasterOpenWindow, 0, 0, window));
}

bool AudioEffectX::closeWindow(void* window) {
    return callHost(audioMasterCloseWindow, 0, 0, window) != 0;
}

void* AudioEffectX::getDirectory() {
    return asPointer(callHost(audioMasterGetDirectory));
}

bool AudioEffectX::updateDisplay() {
    return callHost(audioMasterUpdateDisplay) != 0;
}

} // namespace eq
