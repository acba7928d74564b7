#pragma once

#include "engine/FilterDesign.h"
#include "engine/ParameterHandover.h"
#include "engine/kernels/BlockKernel.h"

#include <cstdint>

namespace eq {

/// The signal path of one audio channel: an output gain and four peak sections in series. It processes blocks of 2048
/// samples, and delays the sound by exactly 2048 samples.
///
/// A call of `process` accepts any number of samples, and outputs the same number:
///
///     input --> inputBlock (being collected) --run when complete--> outputBlock (being read out) --> output
///
/// A parameter change takes effect in the next block that completes. This block is filtered with the old and with the
/// new design, and the results are crossfaded over the whole block.
///
/// The filters are designed for one sampling rate, by default 44100 Hz. If the sound has another rate, all frequencies
/// are scaled by the rate of the sound divided by the design rate.
///
/// Only one thread at a time may call `process`, which takes no lock, allocates nothing and never throws. Any number of
/// threads may call `setParameters` at the same time.
class FourBandEqualizer {
public:
    /// Samples per block; also the delay and the length of a crossfade.
    static constexpr int BlockSize = BlockKernel::BlockSize;

    /// How `process` treats a completed block. With any other number, `process` passes the block unfiltered, designs no
    /// filters, and leaves the state unchanged.
    enum Mode : int {
        Process = 0, ///< filtered; a pending parameter change is crossfaded in
        FadeIn = 1,  ///< crossfaded from the unfiltered to the filtered block
        FadeOut = 2, ///< crossfaded from the filtered to the unfiltered block
    };

    /// Creates a flat engine, which passes its input unchanged until the first `setParameters`, 2048 samples later.
    /// `designRate` is in Hz, above 0.
    explicit FourBandEqualizer(double designRate = FilterDesign::DefaultRate) noexcept;
    /// Creates an engine with the given kernel instead of the fastest kernel. All kernels compute the same samples.
    explicit FourBandEqualizer(const BlockKernel& kernel, double designRate = FilterDesign::DefaultRate) noexcept;
    virtual ~FourBandEqualizer() = default;

    FourBandEqualizer(const FourBandEqualizer&) = delete;
    FourBandEqualizer& operator=(const FourBandEqualizer&) = delete;

    /// Resets the engine to the state of a new one. No other thread may call `process` at the same time.
    void reset() noexcept;

    /// Stores 13 values, which take effect at the next block boundary. They have the order and the units of
    /// FilterDesign::of. The new values replace any values that wait for this boundary.
    void setParameters(const float* values) noexcept;

    /// `announceChange` and the second `setParameters` pass on values that several threads change. Each thread stores
    /// its change, calls `announceChange`, reads all 13 values, and passes them on with the number that
    /// `announceChange` returned. Values with a lower number never replace values with a higher one, so that no change
    /// is lost.
    [[nodiscard]] std::uint32_t announceChange() noexcept { return handover.announce(); }
    void setParameters(const float* values, std::uint32_t change) noexcept;

    /// Reads `sampleCount` (0 or more) samples from `input` and writes as many to `output`. Both may be the same array,
    /// but must not overlap in any other way.
    void process(const float* input, float* output, int sampleCount, int mode) noexcept;

    /// Returns the delay from input to output, in samples.
    [[nodiscard]] int latency() const noexcept { return BlockSize; }

private:
    friend class ChannelPair;

    /// The two state variables of a section, for the running filter and for the run that fades in a new design.
    struct BandState {
        double currentState[2];
        double nextState[2];
    };

    /// Returns whether values wait for the next block boundary.
    [[nodiscard]] bool parametersChanged() const noexcept { return handover.pending(); }
    void design() noexcept;
    void exchange(const float* input, float* output, int count) noexcept;
    void completeBlock(int mode) noexcept;
    void runChangeBlock() noexcept;
    [[nodiscard]] FilterRun currentRun(const FilterDesign& filter) noexcept;
    [[nodiscard]] FilterRun nextRun() noexcept;

    const BlockKernel* kernel;
    float parameters[ParameterCount] = {};
    float inputBlock[BlockSize];
    float outputBlock[BlockSize];
    BandState bandState[BandCount];
    FilterDesign coefficients;
    int samplesToFill;
    ParameterHandover handover; // from setParameters to the next design
    double rate;                // of the design, in Hz
};

} // namespace eq
