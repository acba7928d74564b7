#include "engine/ChannelPair.h"

#include <algorithm>
#include <cstdint>

namespace eq {

namespace {

bool overlap(const float* a, const float* b, int count) noexcept {
    const auto addressA = reinterpret_cast<std::uintptr_t>(a);
    const auto addressB = reinterpret_cast<std::uintptr_t>(b);
    const std::uintptr_t distance = addressA < addressB ? addressB - addressA : addressA - addressB;
    return distance < static_cast<std::uintptr_t>(count) * sizeof(float);
}

/// Returns whether the output depends on which channel is processed first.
bool orderShows(const float* const* inputs, float* const* outputs, int count) noexcept {
    return overlap(outputs[0], inputs[1], count) || overlap(outputs[1], inputs[0], count) ||
           overlap(outputs[0], outputs[1], count);
}

} // namespace

void ChannelPair::process(const float* const* inputs, float* const* outputs, int sampleCount, int mode) noexcept {
    if (first.samplesToFill != second.samplesToFill || orderShows(inputs, outputs, sampleCount)) {
        first.process(inputs[0], outputs[0], sampleCount, mode);
        second.process(inputs[1], outputs[1], sampleCount, mode);
        return;
    }
    for (int done = 0; done < sampleCount;) {
        const int count = std::min(sampleCount - done, first.samplesToFill);
        first.exchange(inputs[0] + done, outputs[0] + done, count);
        second.exchange(inputs[1] + done, outputs[1] + done, count);
        if (first.samplesToFill == 0) completeBlocks(mode);
        done += count;
    }
}

// Filters the two blocks together if neither has a parameter change. Other blocks are rare, and are completed one after
// the other.
void ChannelPair::completeBlocks(int mode) noexcept {
    const bool isOrdinary =
        mode == FourBandEqualizer::Process && !first.parametersChanged() && !second.parametersChanged();
    if (!isOrdinary || first.kernel != second.kernel) {
        first.completeBlock(mode);
        second.completeBlock(mode);
        return;
    }
    first.samplesToFill = FourBandEqualizer::BlockSize;
    second.samplesToFill = FourBandEqualizer::BlockSize;
    first.kernel->filterTwo(first.currentRun(first.coefficients), first.outputBlock,
                            second.currentRun(second.coefficients), second.outputBlock);
}

} // namespace eq
