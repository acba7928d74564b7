#pragma once

#include "engine/kernels/BlockKernel.h"

// The arithmetic of the numeric contract. Samples are rounded to float after the gain, after each section and after the
// crossfade, and nowhere else. Everything else is double, and each operation is rounded separately.

namespace eq {

/// Multiplies `count` samples by `gain`, in place.
void applyGain(float* buffer, float gain, int count) noexcept;

/// Runs one peak section over `count` (1 or more) samples in place, and advances the state in `s1` and `s2`. The
/// allpass is a two-multiplier lattice.
void runPeakSection(float* buffer, int count, double c, double k, double G, double* s1, double* s2) noexcept;

/// Runs one section of a run over `count` (1 or more) samples in place.
void runBand(float* buffer, int count, const FilterRun& run, int band) noexcept;

/// Blends `source` into `target` with a weight that rises linearly from half a step above 0 to half a step below 1.
void crossfade(float* target, const float* source, int count) noexcept;

enum class Fade {
    In, ///< from the unfiltered to the filtered block
    Out,
};

/// Runs the sections over a block one after the other. This kernel needs no extension of the processor, and is the
/// reference for every other kernel.
extern const BlockKernel PlainKernel;

} // namespace eq
