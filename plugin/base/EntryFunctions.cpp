#include "plugin/base/EntryFunctions.h"

#include "plugin/base/AudioEffect.h"
#include "plugin/base/ExceptionBarrier.h"

namespace eq {

namespace {

AudioEffect* ownerOf(const AEffect* effect) noexcept {
    return static_cast<AudioEffect*>(effect->object);
}

} // namespace

intptr dispatchGlue(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) noexcept {
    AudioEffect* const owner = ownerOf(effect);
    const intptr result = withExceptionBarrier([&] { return owner->dispatcher(opcode, index, value, ptr, opt); });
    if (opcode != effClose) return result;
    delete owner;
    return 1;
}

void processGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept {
    withExceptionBarrier([&] { ownerOf(effect)->process(inputs, outputs, sampleFrames); });
}

void processReplacingGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept {
    withExceptionBarrier([&] { ownerOf(effect)->processReplacing(inputs, outputs, sampleFrames); });
}

void setParameterGlue(AEffect* effect, int32 index, float value) noexcept {
    withExceptionBarrier([&] { ownerOf(effect)->setParameter(index, value); });
}

float getParameterGlue(AEffect* effect, int32 index) noexcept {
    return withExceptionBarrier([&] { return ownerOf(effect)->getParameter(index); });
}

} // namespace eq
