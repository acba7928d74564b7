#pragma once

#include "engine/FilterDesign.h"

// What is done to the samples of a block. A faster kernel may take the place of these functions as long as it gives
// the same bits: samples are rounded to float after the gain, after each section and after the crossfade, and nowhere
// else; all else is double, and each operation is rounded by itself.

/// The two state variables of a section, for two runs: the one that goes on, and the one that fades in a new design.
struct BandState {
    double currentState[2];
    double nextState[2];
};

/// One of the two pairs of BandState.
using StatePair = double (BandState::*)[2];

/// Multiplies `count` samples by `gain`, in place.
void applyGain(float* buffer, float gain, int count) noexcept;

/// Runs one peak section over `count` (1 or more) samples in place, from the state in `s1` and `s2`, which it
/// advances. The allpass is a two-multiplier lattice.
void runPeakSection(float* buffer, int count, double c, double k, double G, double* s1, double* s2) noexcept;

/// Blends `source` into `target` with a weight that rises linearly from half a step above 0 to half a step below 1.
void crossfade(float* target, const float* source, int count) noexcept;

/// Runs the output gain and then the four sections over `count` (1 or more) samples in place, advancing one pair of
/// each section's states.
void filterBlock(float* block, int count, const FilterDesign& design, BandState (&bands)[BandCount],
                 StatePair pair) noexcept;
