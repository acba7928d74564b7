#pragma once

#include "plugin/base/AEffect.h"

// The five functions whose pointers are in the record. Each function calls the matching operation of the effect that
// owns the record. The functions check no argument: `effect` must be a record that is in use.

namespace eq {

/// Returns the result of a command. `effClose` deletes the effect and its record, and returns 1.
intptr dispatchGlue(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) noexcept;
void processGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept;
void processReplacingGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept;
void setParameterGlue(AEffect* effect, int32 index, float value) noexcept;
float getParameterGlue(AEffect* effect, int32 index) noexcept;

} // namespace eq
