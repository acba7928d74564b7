#include "engine/FourBandEqualizer.h"

#include "engine/kernels/KernelChoice.h"

#include <algorithm>

FourBandEqualizer::FourBandEqualizer() noexcept : FourBandEqualizer(fastestKernel()) {}

FourBandEqualizer::FourBandEqualizer(const BlockKernel& blockKernel) noexcept : kernel(&blockKernel) {
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

// Collects samples, and hands out those of the block before.
void FourBandEqualizer::exchange(const float* input, float* output, int count) noexcept {
    const int p = BlockSize - samplesToFill;
    // Input is read before output is written, since the two may be one array.
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
            kernel->filter(run(coefficients, &BandState::currentState), outputBlock);
        }
        break;
    case FadeIn:
        design();
        kernel->fadeIn(run(coefficients, &BandState::currentState), outputBlock);
        break;
    case FadeOut:
        design();
        kernel->fadeOut(run(coefficients, &BandState::currentState), outputBlock);
        break;
    default:
        std::copy_n(inputBlock, BlockSize, outputBlock);
        break;
    }
}

// Ordinary blocks, at once. All others are rare.
void FourBandEqualizer::completeBlocks(FourBandEqualizer& first, FourBandEqualizer& second, int mode) noexcept {
    const bool bothOrdinary = mode == Process && !first.parametersChanged() && !second.parametersChanged();
    if (!bothOrdinary || first.kernel != second.kernel) {
        first.completeBlock(mode);
        second.completeBlock(mode);
        return;
    }
    first.samplesToFill = BlockSize;
    second.samplesToFill = BlockSize;
    first.kernel->filterTwo(first.run(first.coefficients, &BandState::currentState), first.outputBlock,
                            second.run(second.coefficients, &BandState::currentState), second.outputBlock);
}

// The new run starts from the state in which the last change block ended, and so with a transient of its own, where
// the crossfade gives it a weight near 0.
void FourBandEqualizer::runChangeBlock() noexcept {
    const FilterDesign before = coefficients;
    design();
    kernel->change(run(before, &BandState::currentState), run(coefficients, &BandState::nextState), outputBlock);
    for (BandState& band : bandState) std::copy_n(band.nextState, 2, band.currentState);
}

FilterRun FourBandEqualizer::run(const FilterDesign& filter, StatePair pair) noexcept {
    return {inputBlock, filter, bandState, pair};
}

// Designs the waiting array. Keeps the design if no array waits.
void FourBandEqualizer::design() noexcept {
    if (handover.take(parameters)) coefficients = FilterDesign::of(parameters);
}
