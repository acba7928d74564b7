#pragma once

#include "engine/FilterDesign.h"

namespace eq {

/// One pass of a block through the output gain and the four peak sections.
struct FilterRun {
    const float* input; ///< BlockKernel::BlockSize samples
    const FilterDesign& design;
    double* states[BandCount]; ///< s1 and s2 of each section; the pass updates both
};

/// The functions that process a block, for one instruction set. Every kernel computes the same samples and the same
/// states as the plain kernel, bit for bit, except the sign and the payload of a NaN.
///
/// Each output has BlockSize samples and overlaps no input and no other output. Two runs never share a state.
struct BlockKernel {
    /// The number of samples per block.
    static constexpr int BlockSize = 2048;

    const char* name;
    /// Filters one block.
    void (*filter)(const FilterRun& run, float* output) noexcept;
    /// Filters two independent blocks, in less time than two calls of `filter`.
    void (*filterTwo)(const FilterRun& first, float* firstOutput, const FilterRun& second,
                      float* secondOutput) noexcept;
    /// Filters the block of each run and crossfades from the result of `before` to the result of `after`.
    void (*change)(const FilterRun& before, const FilterRun& after, float* output) noexcept;
    /// Crossfades from the unfiltered to the filtered block.
    void (*fadeIn)(const FilterRun& run, float* output) noexcept;
    /// Crossfades from the filtered to the unfiltered block.
    void (*fadeOut)(const FilterRun& run, float* output) noexcept;
};

} // namespace eq
