#include "engine/BlockKernel.h"

void applyGain(float* buffer, float gain, int count) noexcept {
    for (int i = 0; i < count; ++i) buffer[i] = gain * buffer[i];
}

void runPeakSection(float* buffer, int count, double c, double k, double G, double* s1, double* s2) noexcept {
    const double h = (G - 1.0) * 0.5;
    double inner = *s1;
    double outer = *s2;
    for (int n = 0; n < count; ++n) {
        const double x = buffer[n];
        const double a = x + k * outer;
        const double b = a - c * inner;
        const double e = outer - k * a; // the allpass of x
        const double u = x - e;
        buffer[n] = static_cast<float>(u * h + x);
        outer = inner + c * b;
        inner = b;
    }
    *s1 = inner;
    *s2 = outer;
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

void filterBlock(float* block, int count, const FilterDesign& design, BandState (&bands)[BandCount],
                 StatePair pair) noexcept {
    applyGain(block, static_cast<float>(design.outputGain), count);
    for (int i = 0; i < BandCount; ++i) {
        double(&state)[2] = bands[i].*pair;
        runPeakSection(block, count, design.centreCoefficient[i], design.bandwidthCoefficient[i], design.bandGain[i],
                       &state[0], &state[1]);
    }
}
