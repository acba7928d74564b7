#pragma once

#include "engine/FourBandEqualizer.h"

/// What `first.process` and then `second.process` do with the first and the second of the inputs and outputs, to the
/// last sample, in less time: blocks that complete on both at once are run at once.
///
/// Any of the arrays may overlap, but for those of one engine as told there.
void processPair(FourBandEqualizer& first, FourBandEqualizer& second, const float* const* inputs, float* const* outputs,
                 int sampleCount, int mode) noexcept;
