#pragma once

#include "engine/FilterDesign.h"
#include "engine/ParameterHandover.h"
#include "engine/kernels/BlockKernel.h"

#include <cstdint>

/// The signal path of one audio channel: an output gain and four peak sections in series, run over fixed blocks of
/// 2048 samples, with a delay of exactly that many samples.
///
/// Any number of samples goes in per call, and as many come out:
///
///     input --> inputBlock (being collected) --run when complete--> outputBlock (being read out) --> output
///
/// A parameter change is absorbed at a block boundary: that block is run with the old and with the new design, and
/// the results are crossfaded over the whole block.
///
/// Everything is designed for 44100 Hz. At another rate r each frequency lands r/44100 times higher than asked for.
///
/// `process` belongs to one thread at a time; it takes no lock, allocates nothing and never throws. `setParameters`
/// may be called from any number of threads meanwhile.
class FourBandEqualizer {
public:
    /// Samples a block; also the delay and the length of a crossfade.
    static constexpr int BlockSize = BlockKernel::BlockSize;

    /// What a block undergoes that completes in a call of `process`. Any other number passes it unfiltered: no design
    /// is made and no state moves.
    enum Mode : int {
        Process = 0, ///< filtered; a pending parameter change is crossfaded in
        FadeIn = 1,  ///< crossfaded from the unfiltered to the filtered block
        FadeOut = 2, ///< crossfaded from the filtered to the unfiltered block
    };

    /// A flat engine: until the first `setParameters` it passes its input unchanged, 2048 samples later.
    FourBandEqualizer() noexcept;
    /// One whose blocks are run by a certain kernel, and not by the fastest. All of them sound alike.
    explicit FourBandEqualizer(const BlockKernel& kernel) noexcept;
    virtual ~FourBandEqualizer() = default;

    FourBandEqualizer(const FourBandEqualizer&) = delete;
    FourBandEqualizer& operator=(const FourBandEqualizer&) = delete;

    /// Brings the engine back to the state of a new one. Not while another thread is in `process`.
    void reset() noexcept;

    /// Hands the 13 values of FilterDesign::of to the next block boundary. They replace any values that wait there.
    void setParameters(const float* values) noexcept;

    /// Hands over values that several threads change. Each thread stores its change, calls `announceChange`, reads
    /// all 13 values, and passes them on with the number that `announceChange` returned. Values with a lower number
    /// never replace values with a higher one, so that no change is lost.
    [[nodiscard]] std::uint32_t announceChange() noexcept { return handover.announce(); }
    void setParameters(const float* values, std::uint32_t change) noexcept;

    /// Takes `sampleCount` (0 or more) samples from `input` and gives as many to `output`. The two may be the same
    /// array, but must not overlap in any other way.
    void process(const float* input, float* output, int sampleCount, int mode) noexcept;

    /// Samples from input to output.
    [[nodiscard]] int latency() const noexcept { return BlockSize; }

private:
    friend void processPair(FourBandEqualizer& first, FourBandEqualizer& second, const float* const* inputs,
                            float* const* outputs, int sampleCount, int mode) noexcept;

    /// Returns whether values wait for the next block boundary.
    [[nodiscard]] bool parametersChanged() const noexcept { return handover.pending(); }
    void design() noexcept;
    void exchange(const float* input, float* output, int count) noexcept;
    void completeBlock(int mode) noexcept;
    static void completeBlocks(FourBandEqualizer& first, FourBandEqualizer& second, int mode) noexcept;
    void runChangeBlock() noexcept;
    [[nodiscard]] FilterRun run(const FilterDesign& filter, StatePair pair) noexcept;

    const BlockKernel* kernel;
    float parameters[ParameterCount] = {};
    float inputBlock[BlockSize];
    float outputBlock[BlockSize];
    BandState bandState[BandCount];
    FilterDesign coefficients;
    int samplesToFill;
    ParameterHandover handover; // what setParameters leaves for the next design
};
