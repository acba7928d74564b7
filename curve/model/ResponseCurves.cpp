#include "curve/model/ResponseCurves.h"

#include "curve/model/PlotAxes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace eq {

namespace {

double decibelsOf(double power) noexcept {
    return 10.0 * std::log10(power);
}

bool sameBand(const FilterDesign& a, const FilterDesign& b, int i) noexcept {
    return a.bandwidthCoefficient[i] == b.bandwidthCoefficient[i] && a.centreCoefficient[i] == b.centreCoefficient[i] &&
           a.bandGain[i] == b.bandGain[i];
}

} // namespace

void ResponseCurves::resize(int places) {
    const auto count = static_cast<std::size_t>(std::max(places, 2));
    const FrequencyAxis axis{0.0, static_cast<double>(count - 1)};
    delays.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        delays[i] = std::polar(1.0, -2.0 * std::numbers::pi * axis.hertzAt(static_cast<double>(i)) / rate);
    for (auto& band : bands) band.resize(count);
    total.resize(count);
    shown.reset();
}

void ResponseCurves::update(const float (&values)[ParameterCount]) {
    const FilterDesign design = FilterDesign::of(values, rate);
    bool isChanged = !shown || shown->outputGain != design.outputGain;
    for (int i = 0; i < BandCount; ++i) {
        if (shown && sameBand(*shown, design, i)) continue;
        computeBand(design, i);
        isChanged = true;
    }
    if (!isChanged) return;
    shown = design;
    const double volume = decibelsOf(design.outputGain * design.outputGain);
    for (std::size_t i = 0; i < total.size(); ++i) {
        total[i] = volume;
        for (const auto& band : bands) total[i] += band[i];
    }
}

double ResponseCurves::largest() const noexcept {
    double most = 0.0;
    for (const double decibels : total) most = std::max(most, std::fabs(decibels));
    return most;
}

void ResponseCurves::computeBand(const FilterDesign& design, int number) {
    // The transfer function of FilterDesign.h with one denominator: H = (d + h(d - n)) / d, where A = n / d. The
    // complex products are written out, because the slower products of std::complex test for infinities.
    const double k = design.bandwidthCoefficient[number];
    const double middle = design.centreCoefficient[number] * (1.0 - k);
    const double h = (design.bandGain[number] - 1.0) / 2.0;
    std::vector<double>& band = bands[static_cast<std::size_t>(number)];
    for (std::size_t i = 0; i < delays.size(); ++i) {
        const double re = delays[i].real();
        const double im = delays[i].imag();
        const double re2 = re * re - im * im; // z^-2
        const double im2 = 2.0 * re * im;
        const double nRe = -k + middle * re + re2;
        const double nIm = middle * im + im2;
        const double dRe = 1.0 + middle * re - k * re2;
        const double dIm = middle * im - k * im2;
        const double hRe = dRe + h * (dRe - nRe);
        const double hIm = dIm + h * (dIm - nIm);
        band[i] = decibelsOf((hRe * hRe + hIm * hIm) / (dRe * dRe + dIm * dIm));
    }
}

} // namespace eq
