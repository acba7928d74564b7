#include "engine/FourBandEqualizer.h"

#include "engine/kernels/KernelChoice.h"

#include <algorithm>

namespace eq {

FourBandEqualizer::FourBandEqualizer(double designRate) noexcept
    : FourBandEqualizer(*availableKernels().back(), designRate) {}

FourBandEqualizer::FourBandEqualizer(const BlockKernel& blockKernel, double designRate) noexcept
    : kernel(&blockKernel), rate(designRate) {
    reset();
}

void FourBandEqualizer::reset() noexcept {
    handover.clear();
    std::fill_n(inputBlock, BlockSize, 0.0F);
    std::fill_n(outputBlock, BlockSize, 0.0F);
    std::fill_n(bandState, BandCount, BandState{});
    coefficients = FilterDesign::flat();
    samplesToFill = BlockSize;
}

void FourBandEqualizer::setParameters(const float* values) noexcept {
    setParameters(values, announceChange());
}

void FourBandEqualizer::setParameters(const float* values, std::uint32_t change) noexcept {
    handover.put(values, change);
}

void FourBandEqualizer::process(const float* input, float* output, int sampleCount, int mode) noexcept {
    while (sampleCount > 0) {
        const int count = std::min(sampleCount, samplesToFill);
        exchange(input, output, count);
        if (samplesToFill == 0) completeBlock(mode);
        input += count;
        output += count;
        sampleCount -= count;
    }
}

// Collects input samples, and outputs samples of the previous block.
void FourBandEqualizer::exchange(const float* input, float* output, int count) noexcept {
    const int p = BlockSize - samplesToFill;
    // Read the input before the output is written, because both may be the same array.
    std::copy_n(input, count, inputBlock + p);
    std::copy_n(outputBlock + p, count, output);
    samplesToFill -= count;
}

void FourBandEqualizer::completeBlock(int mode) noexcept {
    samplesToFill = BlockSize;
    switch (mode) {
    case Process:
        if (parametersChanged()) {
            runChangeBlock();
        } else {
            kernel->filter(currentRun(coefficients), outputBlock);
        }
        break;
    case FadeIn:
        design();
        kernel->fadeIn(currentRun(coefficients), outputBlock);
        break;
    case FadeOut:
        design();
        kernel->fadeOut(currentRun(coefficients), outputBlock);
        break;
    default:
        std::copy_n(inputBlock, BlockSize, outputBlock);
        break;
    }
}

// Filters the block with the old and with the new design, and crossfades. The new run starts from the state in which
// the last change block ended. The new run therefore starts with a transient. The crossfade hides the transient,
// because the weight of the new run is still near 0.
void FourBandEqualizer::runChangeBlock() noexcept {
    const FilterDesign before = coefficients;
    design();
    kernel->change(currentRun(before), nextRun(), outputBlock);
    for (BandState& band : bandState) std::copy_n(band.nextState, 2, band.currentState);
}

FilterRun FourBandEqualizer::currentRun(const FilterDesign& filter) noexcept {
    return {
        inputBlock,
        filter,
        {bandState[0].currentState, bandState[1].currentState, bandState[2].currentState, bandState[3].currentState}};
}

FilterRun FourBandEqualizer::nextRun() noexcept {
    return {inputBlock,
            coefficients,
            {bandState[0].nextState, bandState[1].nextState, bandState[2].nextState, bandState[3].nextState}};
}

// Designs the filters for the waiting parameter array. Keeps the present design if no array waits.
void FourBandEqualizer::design() noexcept {
    if (handover.take(parameters)) coefficients = FilterDesign::of(parameters, rate);
}

} // namespace eq
