#pragma once

#include "engine/kernels/BlockKernel.h"

// The contract's arithmetic, word for word: samples are rounded to float after the gain, after each section and after
// the crossfade, and nowhere else; all else is double, and each operation is rounded by itself.

/// Multiplies `count` samples by `gain`, in place.
void applyGain(float* buffer, float gain, int count) noexcept;

/// Runs one peak section over `count` (1 or more) samples in place, from the state in `s1` and `s2`, which it
/// advances. The allpass is a two-multiplier lattice.
void runPeakSection(float* buffer, int count, double c, double k, double G, double* s1, double* s2) noexcept;

/// Runs one of a run's sections over `count` (1 or more) samples in place.
void runBand(float* buffer, int count, const FilterRun& run, int band) noexcept;

/// Blends `source` into `target` with a weight that rises linearly from half a step above 0 to half a step below 1.
void crossfade(float* target, const float* source, int count) noexcept;

/// Runs over a block one section after the other. It needs no extension of the processor, and is the reference for
/// every other kernel.
extern const BlockKernel plainKernel;
