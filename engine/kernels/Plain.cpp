#include "engine/kernels/Plain.h"

#include <algorithm>

namespace eq {

void applyGain(float* buffer, float gain, int count) noexcept {
    for (int i = 0; i < count; ++i) buffer[i] = gain * buffer[i];
}

void runPeakSection(float* buffer, int count, double c, double k, double G, double* firstState,
                    double* secondState) noexcept {
    const double h = (G - 1.0) * 0.5;
    double s1 = *firstState;
    double s2 = *secondState;
    for (int n = 0; n < count; ++n) {
        const double x = buffer[n];
        const double a = x + k * s2;
        const double b = a - c * s1;
        const double e = s2 - k * a; // the output of the allpass for x
        const double u = x - e;
        buffer[n] = static_cast<float>(u * h + x);
        s2 = s1 + c * b;
        s1 = b;
    }
    *firstState = s1;
    *secondState = s2;
}

void runBand(float* buffer, int count, const FilterRun& run, int band) noexcept {
    const FilterDesign& design = run.design;
    runPeakSection(buffer, count, design.centreCoefficient[band], design.bandwidthCoefficient[band],
                   design.bandGain[band], &run.states[band][0], &run.states[band][1]);
}

void crossfade(float* target, const float* source, int count) noexcept {
    if (count <= 0) return;
    const double step = 1.0 / count;
    const float increment = static_cast<float>(step);
    double r = step * 0.5;
    for (int i = 0; i < count; ++i) {
        target[i] = static_cast<float>((1.0 - r) * target[i] + r * source[i]);
        r = r + increment;
    }
}

namespace {

constexpr int BlockSize = BlockKernel::BlockSize;

void filter(const FilterRun& run, float* output) noexcept {
    std::copy_n(run.input, BlockSize, output);
    applyGain(output, static_cast<float>(run.design.outputGain), BlockSize);
    for (int band = 0; band < BandCount; ++band) runBand(output, BlockSize, run, band);
}

void filterTwo(const FilterRun& first, float* firstOutput, const FilterRun& second, float* secondOutput) noexcept {
    filter(first, firstOutput);
    filter(second, secondOutput);
}

void change(const FilterRun& before, const FilterRun& after, float* output) noexcept {
    float alternateBlock[BlockSize];
    filter(before, output);
    filter(after, alternateBlock);
    crossfade(output, alternateBlock, BlockSize);
}

template <Fade Direction>
void fade(const FilterRun& run, float* output) noexcept {
    float filtered[BlockSize];
    filter(run, filtered);
    const bool in = Direction == Fade::In;
    std::copy_n(in ? run.input : filtered, BlockSize, output);
    crossfade(output, in ? filtered : run.input, BlockSize);
}

} // namespace

const BlockKernel PlainKernel = {"plain", filter, filterTwo, change, fade<Fade::In>, fade<Fade::Out>};

} // namespace eq
