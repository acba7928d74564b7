#include "engine/FilterDesign.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace eq {

namespace {

/// Returns the angle per sample of a frequency of one hertz. The design uses the rate only here.
constexpr double radiansPerHertz(double rate) noexcept {
    return 2.0 * std::numbers::pi / rate;
}
static_assert(radiansPerHertz(FilterDesign::DefaultRate) == 0.00014247585730565955);

/// The highest angle of a centre. It is below half the rate, so that every section is stable.
constexpr double HighestAngle = FrequencyRange.highest * radiansPerHertz(FilterDesign::DefaultRate);

/// Returns `value` limited to `range`. A NaN fails both comparisons and becomes the lowest value.
double limited(double value, ValueRange range) noexcept {
    if (value > range.highest) return range.highest;
    return value >= range.lowest ? value : range.lowest;
}

double linearFromDecibels(double decibels) noexcept {
    return std::pow(10.0, decibels * 0.05);
}

} // namespace

FilterDesign FilterDesign::flat() noexcept {
    // Centre angles: 2 pi f / 44100 for f = 100, 200, 400 and 800 Hz. Half bandwidths: these angles divided by twice a
    // Q of 1.4. All constants are exact to the last bit.
    constexpr double CentreAngles[BandCount] = {0.014247585730565955, 0.02849517146113191, 0.05699034292226382,
                                                0.11398068584452764};
    constexpr double HalfBandwidthAngles[BandCount] = {0.005088423475202127, 0.010176846950404253, 0.020353693900808507,
                                                       0.040707387801617013};

    FilterDesign design{};
    design.outputGain = 1.0;
    for (int i = 0; i < BandCount; ++i) {
        const double t = std::tan(HalfBandwidthAngles[i]);
        design.centreCoefficient[i] = -std::cos(CentreAngles[i]);
        design.bandwidthCoefficient[i] = (t - 1.0) / (t + 1.0);
        design.bandGain[i] = 1.0;
    }
    return design;
}

FilterDesign FilterDesign::of(const float (&values)[ParameterCount], double rate) noexcept {
    const double anglePerHertz = radiansPerHertz(rate);
    FilterDesign design{};
    design.outputGain = linearFromDecibels(limited(values[VolumeIndex], VolumeRange));
    for (int i = 0; i < BandCount; ++i) {
        const double G = linearFromDecibels(limited(values[gainIndex(i)], GainRange));
        // For a cut, H divides t by the gain. The wider allpass makes the cut the mirror image of the boost.
        const double H = G <= 1.0 ? G : 1.0;
        const double f = limited(values[frequencyIndex(i)], FrequencyRange);
        const double q = limited(values[qIndex(i)], QRange);
        // The angle is not prewarped: f and f/q are the centre and the bandwidth of the digital response.
        const double w = std::min(f * anglePerHertz, HighestAngle);
        const double t = std::tan((w * 0.5) / q);
        design.centreCoefficient[i] = -std::cos(w);
        design.bandwidthCoefficient[i] = (t - H) / (t + H);
        design.bandGain[i] = G;
    }
    return design;
}

} // namespace eq
