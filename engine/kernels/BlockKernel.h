#pragma once

#include "engine/FilterDesign.h"

/// The two state variables of a section, for two runs: the one that goes on, and the one that fades in a new design.
struct BandState {
    double currentState[2];
    double nextState[2];
};

/// One of the two pairs of BandState.
using StatePair = double (BandState::*)[2];

/// A block on its way through the output gain and then the four sections, which advances one pair of each section's
/// states.
struct FilterRun {
    const float* input; ///< BlockKernel::BlockSize samples
    const FilterDesign& design;
    BandState (&bands)[BandCount];
    StatePair pair;
};

/// All that is done to the samples of a block, as one instruction set does it best. Every kernel gives the same bits,
/// those of the plain one (but for the sign and payload of a NaN), in samples and in states.
///
/// An output is BlockSize samples long and overlaps no input and no other output. No two runs share a pair of states.
struct BlockKernel {
    /// Samples a block.
    static constexpr int BlockSize = 2048;

    const char* name;
    /// Filters a block.
    void (*filter)(const FilterRun& run, float* output) noexcept;
    /// Filters two blocks that have nothing to do with each other.
    void (*filterTwo)(const FilterRun& first, float* firstOutput, const FilterRun& second,
                      float* secondOutput) noexcept;
    /// Crossfades from one run to another.
    void (*change)(const FilterRun& before, const FilterRun& after, float* output) noexcept;
    /// Crossfades from the unfiltered to the filtered block.
    void (*fadeIn)(const FilterRun& run, float* output) noexcept;
    /// Crossfades from the filtered to the unfiltered block.
    void (*fadeOut)(const FilterRun& run, float* output) noexcept;
};
