#pragma once

#include "engine/FilterDesign.h"

namespace eq {

/// A block on its way through the output gain and the four sections.
struct FilterRun {
    const float* input; ///< BlockKernel::BlockSize samples
    const FilterDesign& design;
    double* states[BandCount]; ///< s1 and s2 of each section, which the run advances
};

/// All work on the samples of a block, for one instruction set. Every kernel returns the samples and the states of the
/// plain kernel to the bit, except the sign and payload of a NaN.
///
/// An output has BlockSize samples and overlaps no input and no other output. No two runs share a state.
struct BlockKernel {
    /// Samples per block.
    static constexpr int BlockSize = 2048;

    const char* name;
    /// Filters a block.
    void (*filter)(const FilterRun& run, float* output) noexcept;
    /// Filters two independent blocks, in less time than two calls of `filter`.
    void (*filterTwo)(const FilterRun& first, float* firstOutput, const FilterRun& second,
                      float* secondOutput) noexcept;
    /// Crossfades from one run to another.
    void (*change)(const FilterRun& before, const FilterRun& after, float* output) noexcept;
    /// Crossfades from the unfiltered to the filtered block.
    void (*fadeIn)(const FilterRun& run, float* output) noexcept;
    /// Crossfades from the filtered to the unfiltered block.
    void (*fadeOut)(const FilterRun& run, float* output) noexcept;
};

} // namespace eq
