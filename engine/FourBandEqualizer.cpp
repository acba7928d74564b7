#include "engine/FourBandEqualizer.h"

#include <algorithm>

FourBandEqualizer::FourBandEqualizer() noexcept {
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
    handover.put(values);
}

void FourBandEqualizer::process(const float* input, float* output, int sampleCount, int mode) noexcept {
    while (sampleCount >= samplesToFill) {
        const int c = samplesToFill;
        const int p = BlockSize - c;
        // Input is read before output is written, since the two may be one array.
        std::copy_n(input, c, inputBlock + p);
        std::copy_n(outputBlock + p, c, output);
        runBlock(mode);
        std::copy_n(inputBlock, BlockSize, outputBlock);
        input += c;
        output += c;
        sampleCount -= c;
        samplesToFill = BlockSize;
    }
    const int p = BlockSize - samplesToFill;
    std::copy_n(input, sampleCount, inputBlock + p);
    std::copy_n(outputBlock + p, sampleCount, output);
    samplesToFill -= sampleCount;
}

void FourBandEqualizer::runBlock(int mode) noexcept {
    switch (mode) {
    case Process:
        if (handover.pending()) {
            runChangeBlock();
        } else {
            filterBlock(inputBlock, BlockSize, coefficients, bandState, &BandState::currentState);
        }
        break;
    case FadeIn:
    case FadeOut:
        runFadeBlock(mode);
        break;
    default:
        break;
    }
}

// The new run starts from the state in which the last change block ended, and so with a transient of its own, where
// the crossfade gives it a weight near 0.
void FourBandEqualizer::runChangeBlock() noexcept {
    float alternateBlock[BlockSize];
    std::copy_n(inputBlock, BlockSize, alternateBlock);
    filterBlock(inputBlock, BlockSize, coefficients, bandState, &BandState::currentState);
    design();
    filterBlock(alternateBlock, BlockSize, coefficients, bandState, &BandState::nextState);
    for (BandState& band : bandState) std::copy_n(band.nextState, 2, band.currentState);
    crossfade(inputBlock, alternateBlock, BlockSize);
}

void FourBandEqualizer::runFadeBlock(int mode) noexcept {
    float alternateBlock[BlockSize];
    design();
    std::copy_n(inputBlock, BlockSize, alternateBlock);
    float* const filtered = mode == FadeIn ? alternateBlock : inputBlock;
    filterBlock(filtered, BlockSize, coefficients, bandState, &BandState::currentState);
    crossfade(inputBlock, alternateBlock, BlockSize);
}

// Designs the array that waits, if any: the newest that any thread has completed.
void FourBandEqualizer::design() noexcept {
    if (handover.take(parameters)) coefficients = FilterDesign::of(parameters);
}
