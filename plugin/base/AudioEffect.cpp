#include "plugin/base/AudioEffect.h"

#include "plugin/base/EntryFunctions.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace eq {

namespace {

constexpr int TextWidth = 8;

char lastDigit(double number) {
    return static_cast<char>('0' + static_cast<int>(std::fmod(number, 10.0)));
}

} // namespace

AudioEffect::AudioEffect(audioMasterCallback hostCallback, int32 programCount, int32 parameterCount) noexcept
    : audioMaster(hostCallback), numPrograms(programCount), numParams(parameterCount) {
    cEffect.magic = EffectMagic;
    cEffect.dispatcher = dispatchGlue;
    cEffect.process = processGlue;
    cEffect.setParameter = setParameterGlue;
    cEffect.getParameter = getParameterGlue;
    cEffect.numPrograms = programCount;
    cEffect.numParams = parameterCount;
    cEffect.numInputs = 1;
    cEffect.numOutputs = 2;
    cEffect.ioRatio = 1.0f;
    cEffect.object = this;
    cEffect.uniqueID = 0x4E6F4566; // the id of an effect that sets no other id
    cEffect.version = 1;
    cEffect.processReplacing = processReplacingGlue;
}

AudioEffect::~AudioEffect() {
    delete editor;
}

void AudioEffect::setParameterAutomated(int32 index, float value) {
    setParameter(index, value);
    callHost(audioMasterAutomate, index, 0, nullptr, value);
}

intptr AudioEffect::dispatcher(int32 opCode, int32 index, intptr value, void* ptr, float opt) {
    char* const text = static_cast<char*>(ptr);
    const int32 number = static_cast<int32>(value);
    // clang-format off
    switch (opCode) {
    case effOpen:            open(); return 0;
    case effClose:           close(); return 0;
    case effSetProgram:      if (number < numPrograms) setProgram(number); return 0;
    case effGetProgram:      return getProgram();
    case effSetProgramName:  setProgramName(text); return 0;
    case effGetProgramName:  getProgramName(text); return 0;
    case effGetParamLabel:   getParameterLabel(index, text); return 0;
    case effGetParamDisplay: getParameterDisplay(index, text); return 0;
    case effGetParamName:    getParameterName(index, text); return 0;
    case effGetVu:           return static_cast<int32>(getVu() * 32767.0);
    case effSetSampleRate:   setSampleRate(opt); return 0;
    case effSetBlockSize:    setBlockSize(number); return 0;
    case effMainsChanged:    value == 0 ? suspend() : resume(); return 0;
    case effEditGetRect:     return editor ? editor->getRect(static_cast<ERect**>(ptr)) : 0;
    case effEditOpen:        return editor ? editor->open(ptr) : 0;
    case effEditClose:       if (editor) editor->close(); return 0;
    case effEditIdle:        if (editor) editor->idle(); return 0;
    case effIdentify:        return EffectIdentity;
    case effGetChunk:        return getChunk(static_cast<void**>(ptr), index != 0);
    case effSetChunk:        return setChunk(ptr, number, index != 0);
    default:                 return 0;
    }
    // clang-format on
}

int32 AudioEffect::getMasterVersion() {
    const intptr version = callHost(audioMasterVersion);
    return version == 0 ? 1 : static_cast<int32>(version);
}

int32 AudioEffect::getCurrentUniqueId() {
    return static_cast<int32>(callHost(audioMasterCurrentId));
}

void AudioEffect::masterIdle() {
    callHost(audioMasterIdle);
}

bool AudioEffect::isInputConnected(int32 input) {
    return callHost(audioMasterPinConnected, input, 0) == 0;
}

bool AudioEffect::isOutputConnected(int32 output) {
    return callHost(audioMasterPinConnected, output, 1) == 0;
}

void AudioEffect::dB2string(float value, char* text) {
    if (value <= 0.0f)
        std::strcpy(text, "  -oo   ");
    else
        float2string(static_cast<float>(20.0 * std::log10(static_cast<double>(value))), text);
}

void AudioEffect::Hz2string(float samples, char* text) {
    float2string(samples == 0.0f ? 0.0f : getSampleRate() / samples, text);
}

void AudioEffect::ms2string(float samples, char* text) {
    float2string(static_cast<float>(samples * 1000.0 / getSampleRate()), text);
}

void AudioEffect::float2string(float value, char* text) {
    const bool negative = value < 0.0f;
    const double magnitude = negative ? -static_cast<double>(value) : static_cast<double>(value);
    const bool inRange = magnitude <= (negative ? 9999999.0 : 99999999.0);
    if (!inRange) return;

    char whole[TextWidth]; // the digits before the point, and the point; filled from the end
    char* first = whole + TextWidth;
    *--first = '.';
    double rest = std::floor(magnitude);
    char* const leftmost = negative ? whole + 1 : whole;
    do {
        *--first = lastDigit(rest);
        rest *= 0.1;
    } while (rest >= 1.0 && first > leftmost);
    if (negative) *--first = '-';
    char* end = std::copy(first, whole + TextWidth, text);

    const auto decimals = TextWidth - (end - text);
    double fraction = std::fmod(magnitude, 1.0);
    double scale = 1.0;
    for (auto i = decimals; i > 0; --i) scale *= 10.0;
    fraction *= scale;
    for (auto i = decimals; i > 0; --i) {
        end[i - 1] = lastDigit(fraction);
        fraction *= 0.1;
    }
    text[TextWidth] = '\0';
}

void AudioEffect::long2string(int32 value, char* text) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%7d", value);
    digits[TextWidth] = '\0';
    std::strcpy(text, value >= 100000000 ? " Huge!  " : digits);
}

} // namespace eq
