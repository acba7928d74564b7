#pragma once

#include "plugin/base/AEffect.h"

// The five functions behind the pointers of the record. They find the effect that owns the record and call the
// operation of the same name. Nothing is validated: `effect` must be a record that is in use.

namespace eq {

/// `effClose` ends the effect's life, and the record's with it, and gives 1.
intptr dispatchGlue(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) noexcept;
void processGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept;
void processReplacingGlue(AEffect* effect, float** inputs, float** outputs, int32 sampleFrames) noexcept;
void setParameterGlue(AEffect* effect, int32 index, float value) noexcept;
float getParameterGlue(AEffect* effect, int32 index) noexcept;

} // namespace eq
