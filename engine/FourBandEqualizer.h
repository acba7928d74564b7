#pragma once

#include "engine/FilterDesign.h"
#include "engine/ParameterHandover.h"
#include "engine/kernels/BlockKernel.h"

#include <cstdint>

namespace eq {

/// The signal path of one audio channel: an output gain and four peak sections in series, run over fixed blocks of
/// 2048 samples, with a delay of exactly that many samples.
///
/// A call takes any number of samples, and returns as many:
///
///     input --> inputBlock (being collected) --run when complete--> outputBlock (being read out) --> output
///
/// A parameter change is absorbed at a block boundary: that block is run with the old and with the new design, and
/// the results are crossfaded over the whole block.
///
/// The filters are designed for one rate, 44100 Hz if no other is given. In sound of another rate r each frequency is r
/// divided by the design rate times as high as its setting.
///
/// `process` belongs to one thread at a time; it takes no lock, allocates nothing and never throws. `setParameters`
/// may be called from any number of threads meanwhile.
class FourBandEqualizer {
public:
    /// Samples per block; also the delay and the length of a crossfade.
    static constexpr int BlockSize = BlockKernel::BlockSize;

    /// How `process` treats a completed block. Any other number passes the block unfiltered, without a design, and
    /// leaves the state as it is.
    enum Mode : int {
        Process = 0, ///< filtered; a pending parameter change is crossfaded in
        FadeIn = 1,  ///< crossfaded from the unfiltered to the filtered block
        FadeOut = 2, ///< crossfaded from the filtered to the unfiltered block
    };

    /// A flat engine for filters of a design rate above 0 Hz. Until the first `setParameters` it passes its input
    /// unchanged, 2048 samples later.
    explicit FourBandEqualizer(double designRate = FilterDesign::DefaultRate) noexcept;
    /// An engine with a given kernel instead of the fastest. All kernels sound alike.
    explicit FourBandEqualizer(const BlockKernel& kernel, double designRate = FilterDesign::DefaultRate) noexcept;
    virtual ~FourBandEqualizer() = default;

    FourBandEqualizer(const FourBandEqualizer&) = delete;
    FourBandEqualizer& operator=(const FourBandEqualizer&) = delete;

    /// Resets the engine to the state of a new one. No other thread may be in `process` meanwhile.
    void reset() noexcept;

    /// Hands the 13 values of FilterDesign::of to the next block boundary. They replace any values that wait there.
    void setParameters(const float* values) noexcept;

    /// Hands over values that several threads change. Each thread stores its change, calls `announceChange`, reads
    /// all 13 values, and passes them on with the number that `announceChange` returned. Values with a lower number
    /// never replace values with a higher one, so that no change is lost.
    [[nodiscard]] std::uint32_t announceChange() noexcept { return handover.announce(); }
    void setParameters(const float* values, std::uint32_t change) noexcept;

    /// Reads `sampleCount` (0 or more) samples from `input` and writes as many to `output`. Both may be the same array,
    /// but must not overlap in any other way.
    void process(const float* input, float* output, int sampleCount, int mode) noexcept;

    /// Samples from input to output.
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
