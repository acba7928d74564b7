#pragma once

#include "engine/kernels/BlockKernel.h"

// The arithmetic of the numeric contract (docs/ARCHITECTURE.md). A sample is rounded to float after the gain, after
// each section and after the crossfade, and nowhere else. All other values are double, and each operation is rounded
// separately.

namespace eq {

/// Multiplies `count` samples by `gain`, in place.
void applyGain(float* buffer, float gain, int count) noexcept;

/// Runs one peak section over `count` (1 or more) samples in place, and updates the state in `s1` and `s2`. `c`, `k`
/// and `G` (linear) are the coefficients of FilterDesign. The allpass is a two-multiplier lattice.
void runPeakSection(float* buffer, int count, double c, double k, double G, double* s1, double* s2) noexcept;

/// Runs the section of `band` (0 to 3) over `count` (1 or more) samples in place, with the design and the states of
/// `run`.
void runBand(float* buffer, int count, const FilterRun& run, int band) noexcept;

/// Crossfades from `target` to `source` over `count` samples, and writes the result to `target`. The weight of `source`
/// rises linearly, in steps of 1 / count, from half a step above 0 to half a step below 1.
void crossfade(float* target, const float* source, int count) noexcept;

enum class Fade {
    In,  ///< from the unfiltered to the filtered block
    Out, ///< from the filtered to the unfiltered block
};

/// The kernel that runs the sections over a block one after the other. It needs no extended instruction set, and is the
/// reference for every other kernel.
extern const BlockKernel PlainKernel;

} // namespace eq
