#pragma once

#include "engine/FourBandEqualizer.h"

namespace eq {

/// Runs the engines of two channels together. Where a block completes on both channels, one pass filters both blocks.
class ChannelPair {
public:
    ChannelPair(FourBandEqualizer& firstEngine, FourBandEqualizer& secondEngine) noexcept
        : first(firstEngine), second(secondEngine) {}

    /// Writes the same samples as a call of `process` on the first engine and then on the second engine, in less time.
    /// The arrays of different channels may overlap in any way.
    void process(const float* const* inputs, float* const* outputs, int sampleCount, int mode) noexcept;

private:
    void completeBlocks(int mode) noexcept;

    FourBandEqualizer& first;
    FourBandEqualizer& second;
};

} // namespace eq
